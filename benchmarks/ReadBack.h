#pragma once

#include "Comparison.h"
#include "RawWindow.h"

/**
 * Reading 1280 x 720 pixels back into a pixel map, beside glReadPixels from a window of the same size with the same picture,
 * if the row's name contains @p filter.
 * @param host  parent of the raw window on @p display
 * @return false when the two sides read different pixels; the reason is on the error output then
 */
bool addReadBackRow(const QString& filter, Display* display, Window host, const RawWindow* shareWith,
                    std::vector<Row>& rows);
