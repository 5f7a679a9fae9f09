#pragma once

#include "foundation/Tarray.h"

#include <cstring>

/** A colour: red, green, blue and opacity, from 0 to 1. */
struct TportColor
{
    float r = 0;
    float g = 0;
    float b = 0;
    float a = 1;

    /** What get() can give. */
    enum Tmodel { kModelRgb = 0, kModelHsv = 1 };

    constexpr TportColor() = default;
    constexpr TportColor(float red, float green, float blue, float alpha = 1) : r(red), g(green), b(blue), a(alpha) {}

    /**
     * The colour in a colour model: 0 red, green, blue; 1 hue, saturation, value, each from 0 to 1, with red at hue 0.
     * @return false, with @p out left alone, for another model.
     */
    bool get(int model, float out[3]) const;

    friend bool operator==(const TportColor& x, const TportColor& y)
    {
        // All four at once: drawing code compares its colour with the one in force before most primitives.
        using Lanes = float __attribute__((vector_size(16)));
        using Halves = long long __attribute__((vector_size(16)));
        Lanes a, b;
        std::memcpy(&a, &x, sizeof a);
        std::memcpy(&b, &y, sizeof b);
        const auto same = reinterpret_cast<Halves>(a == b);
        return (same[0] & same[1]) == -1;
    }
    friend bool operator!=(const TportColor& x, const TportColor& y) { return !(x == y); }
};

inline constexpr TportColor kCblack{0, 0, 0, 1};
inline constexpr TportColor kCwhite{1, 1, 1, 1};
inline constexpr TportColor kCtransparent{0, 0, 0, 0};

using TportColorArray = Tarray<TportColor>;
