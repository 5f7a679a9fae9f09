#include "foundation/TportColor.h"

#include <algorithm>

bool TportColor::get(int model, float out[3]) const
{
    if (model == kModelRgb) {
        out[0] = r;
        out[1] = g;
        out[2] = b;
        return true;
    }
    if (model != kModelHsv)
        return false;

    // A. R. Smith, Color Gamut Transform Pairs, SIGGRAPH 1978.
    const float value = std::max({r, g, b});
    const float span = value - std::min({r, g, b});
    float hue = 0;
    if (span > 0) {
        if (value == r)
            hue = (g - b) / span;
        else if (value == g)
            hue = 2 + (b - r) / span;
        else
            hue = 4 + (r - g) / span;
        hue /= 6;
        if (hue < 0)
            hue += 1;
    }
    out[0] = hue;
    out[1] = value > 0 ? span / value : 0;
    out[2] = value;
    return true;
}
