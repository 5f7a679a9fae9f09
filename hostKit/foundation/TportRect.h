#pragma once

#include "foundation/Tarray.h"

#include <algorithm>

/**
 * A rectangle of pixels with the origin at the lower left: left and bottom belong to it, right and top do not. It is
 * empty where left is not less than right, or bottom not less than top.
 */
struct TportRect
{
    short left = 0;
    short bottom = 0;
    short right = 0;
    short top = 0;

    constexpr TportRect() = default;
    constexpr TportRect(short l, short b, short r, short t) : left(l), bottom(b), right(r), top(t) {}

    /** right - left in 16 bits: beyond 32767 it wraps around. */
    constexpr short width() const { return static_cast<short>(right - left); }
    /** top - bottom in 16 bits, as width(). */
    constexpr short height() const { return static_cast<short>(top - bottom); }
    constexpr bool isEmpty() const { return left >= right || bottom >= top; }

    /** The common area; all zero when there is none. */
    constexpr TportRect intersect(const TportRect& other) const
    {
        const TportRect common(std::max(left, other.left), std::max(bottom, other.bottom), std::min(right, other.right),
                               std::min(top, other.top));
        return common.isEmpty() ? TportRect() : common;
    }
    /** True when there is a common area; touching edges have none. */
    constexpr bool intersects(const TportRect& other) const { return !intersect(other).isEmpty(); }

    friend constexpr bool operator==(const TportRect& a, const TportRect& b)
    {
        return a.left == b.left && a.bottom == b.bottom && a.right == b.right && a.top == b.top;
    }
    friend constexpr bool operator!=(const TportRect& a, const TportRect& b) { return !(a == b); }
};

static_assert(sizeof(TportRect) == 8);

using TviewportArray = Tarray<TportRect>;
