#pragma once

/** An angle. */
struct Tangle
{
    double radians = 0;

    constexpr double degrees() const { return radians * (180.0 / kPi); }
    static constexpr Tangle fromDegrees(double degrees) { return {degrees * (kPi / 180.0)}; }

    static constexpr double kPi = 3.14159265358979323846;
};
