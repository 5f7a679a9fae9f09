#pragma once

#include "Comparison.h"

#include <functional>

class RawWindow;
class T3dPort;

/**
 * Textures: alpha stripping beside memcpy of the same source, resampling beside gluScaleImage, and an unchanged texture
 * applied, beside the calls that this takes by hand. Adds the rows whose name contains @p filter. False, with the
 * reason on the error output, when the two sides of a row do not do the same.
 */
bool addTextureRows(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                    std::vector<Row>& rows);
