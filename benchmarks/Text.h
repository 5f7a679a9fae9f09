#pragma once

#include "Comparison.h"
#include "RawWindow.h"

class T3dPort;

/**
 * Adds the rows about text whose name contains @p filter: a frame of labels by a port, beside display lists of glyphs
 * called by hand in @p raw and beside QGLWidget::renderText; and an image of a label by the strip of a QlirnFontRaster,
 * beside drawing it with QPainter.
 *
 * The port and @p raw are as large as each other, and share one X display.
 * @param bindPort  makes @p port current
 * @return false when port and lists draw different pictures; the reason is on the error output then
 */
bool addTextRows(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                 Display* display, std::vector<Row>& rows);
