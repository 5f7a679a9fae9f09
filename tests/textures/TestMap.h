#pragma once

#include "foundation/TpixelMap.h"

#include <array>

using Texel = std::array<int, 4>; ///< red, green, blue, alpha

/** A colour of its own for each texel of maps up to 20 on a side, and one that rounding does not hide. */
inline Texel texelAt(int x, int y)
{
    return {20 + 11 * x, 240 - 10 * y, (37 * x + 23 * y) % 200, 255};
}

/** A map of one colour, or of texelAt where none is given. */
class TestMap : public TpixelMap
{
public:
    TestMap(int width, int height, int channels = 4, bool rgba = true, const Texel* colour = nullptr, int alpha = 255)
    {
        setSize(width, height, channels);
        setRgba(rgba);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                set(x, y, colour ? *colour : texelAt(x, y), alpha);
    }

    void set(int x, int y, const Texel& colour, int alpha = 255)
    {
        std::uint8_t* const p = pixels() + (y * width() + x) * channels();
        for (int k = 0; k < 3; ++k)
            p[isRgba() ? k : 2 - k] = static_cast<std::uint8_t>(colour[std::size_t(k)]);
        if (channels() == 4)
            p[3] = static_cast<std::uint8_t>(alpha);
    }
};
