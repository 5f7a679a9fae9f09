#pragma once

#include "foundation/TportColor.h"
#include "foundation/TportRect.h"

#include <cstdint>
#include <initializer_list>
#include <random>

/** Random choices that a seed repeats. */
class Tdice
{
public:
    explicit Tdice(std::uint64_t seed) : fEngine(seed) {}

    /** 0 to @p count - 1. */
    unsigned below(std::size_t count)
    {
        return static_cast<unsigned>(std::uniform_int_distribution<std::size_t>(0, count - 1)(fEngine));
    }
    int between(int low, int high) { return low + static_cast<int>(below(static_cast<std::size_t>(high - low) + 1)); }
    bool flag() { return below(2) != 0; }
    /** One of few values between 0 and 1, so that equal ones in a row are frequent. */
    float value() { return 0.25f * static_cast<float>(1 + below(4)); }
    template <class T> T one(std::initializer_list<T> values) { return values.begin()[below(values.size())]; }
    TportColor colour() { return TportColor(value(), value(), value(), value()); }
    /** A rectangle that begins inside @p r, and may reach beyond it. */
    TportRect rect(const TportRect& r)
    {
        const int left = between(0, r.width());
        const int bottom = between(0, r.height());
        return TportRect(static_cast<short>(left), static_cast<short>(bottom),
                         static_cast<short>(left + between(1, 90)), static_cast<short>(bottom + between(1, 90)));
    }

private:
    std::mt19937_64 fEngine;
};
