#pragma once

#include <QImage>

#include <functional>

class T3dPort;

/** A picture of the guide, with the code that its page quotes. Constructed as a static object it enters itself. */
class Sample
{
public:
    Sample(const char* name, std::function<QImage()> run);

    /**
     * What @p draw draws through a port of its own, at @p fine times the size and scaled down. Notes a failure for an
     * OpenGL error and for a state that the port's record and the driver do not agree about.
     */
    static QImage drawing(const QSize& size, int fine, const std::function<void(T3dPort&)>& draw);
    /** The same for a port that has its update command already. */
    static QImage picture(T3dPort& port, const QSize& size, int fine);
    static QImage sideBySide(const QList<QImage>& pictures);
    /** Notes a failure, which ends the program with an error, unless @p good. */
    static void expect(bool good, const char* what);
};
