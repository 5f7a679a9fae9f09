#pragma once

#include <QImage>
#include <QString>

class T3dPort;

/** What a port's update command draws at @p size in device pixels, whatever its widget's; null on failure. */
QImage drawnPicture(T3dPort& port, const QSize& size);

/** Writes a PNG file. Returns a sentence that says what went wrong; empty when nothing did. */
QString writePicture(const QImage& picture, const QString& path);
