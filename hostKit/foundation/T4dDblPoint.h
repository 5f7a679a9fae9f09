#pragma once

#include "foundation/T4dDblVector.h"

/** A point in space, in homogeneous coordinates. */
struct T4dDblPoint
{
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 1;

    constexpr T4dDblPoint() = default;
    constexpr T4dDblPoint(double px, double py, double pz, double pw = 1) : x(px), y(py), z(pz), w(pw) {}

    /** The same point with w = 1. A point at infinity (w = 0) gets infinite or undefined (NaN) coordinates. */
    constexpr T4dDblPoint cartesian() const { return w == 1 ? *this : T4dDblPoint(x / w, y / w, z / w); }

    static const T4dDblPoint origin;

    // Sums and differences are those of the cartesian points.

    friend constexpr T4dDblPoint operator+(const T4dDblPoint& p, const T4dDblVector& v)
    {
        const T4dDblPoint c = p.cartesian();
        return {c.x + v.x, c.y + v.y, c.z + v.z};
    }
    friend constexpr T4dDblPoint operator-(const T4dDblPoint& p, const T4dDblVector& v) { return p + -v; }
    friend constexpr T4dDblVector operator-(const T4dDblPoint& p, const T4dDblPoint& q)
    {
        const T4dDblPoint a = p.cartesian();
        const T4dDblPoint b = q.cartesian();
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    /** Equal in each of the four coordinates. */
    friend constexpr bool operator==(const T4dDblPoint& a, const T4dDblPoint& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }
    friend constexpr bool operator!=(const T4dDblPoint& a, const T4dDblPoint& b) { return !(a == b); }
};

inline constexpr T4dDblPoint T4dDblPoint::origin{0, 0, 0, 1};
