#pragma once

#include "foundation/Tangle.h"

#include <cmath>

/** A direction in space. */
struct T4dDblVector
{
    double x = 0;
    double y = 0;
    double z = 0;

    constexpr T4dDblVector() = default;
    constexpr T4dDblVector(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}

    constexpr T4dDblVector& operator+=(const T4dDblVector& v) { return *this = *this + v; }
    constexpr T4dDblVector& operator-=(const T4dDblVector& v) { return *this = *this - v; }
    constexpr T4dDblVector& operator*=(double s) { return *this = *this * s; }

    constexpr double dot(const T4dDblVector& v) const { return x * v.x + y * v.y + z * v.z; }
    constexpr T4dDblVector cross(const T4dDblVector& v) const
    {
        return {y * v.z - v.y * z, z * v.x - v.z * x, x * v.y - v.x * y};
    }
    constexpr double lengthSquared() const { return dot(*this); }
    double length() const { return std::sqrt(lengthSquared()); }
    /** The unit vector of this direction. A vector of a length up to 1e-10, or close enough to 1, is left as it is. */
    T4dDblVector normalised() const
    {
        const double s = lengthSquared();
        if (!(s > 1e-20 && std::fabs(s - 1.0) > 2e-10))
            return *this;
        const double l = std::sqrt(s);
        return {x / l, y / l, z / l};
    }
    /** The angle between the directions, from 0 to 180 degrees; 0 with a null vector. */
    Tangle angleBetween(const T4dDblVector& v) const { return {std::atan2(cross(v).length(), dot(v))}; }

    friend constexpr T4dDblVector operator+(const T4dDblVector& a, const T4dDblVector& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr T4dDblVector operator-(const T4dDblVector& a, const T4dDblVector& b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr T4dDblVector operator-(const T4dDblVector& v) { return {-v.x, -v.y, -v.z}; }
    friend constexpr T4dDblVector operator*(const T4dDblVector& v, double s) { return {v.x * s, v.y * s, v.z * s}; }
    friend constexpr T4dDblVector operator*(double s, const T4dDblVector& v) { return v * s; }
    friend constexpr bool operator==(const T4dDblVector& a, const T4dDblVector& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    friend constexpr bool operator!=(const T4dDblVector& a, const T4dDblVector& b) { return !(a == b); }
};
