#include "foundation/Tline.h"

T4dDblPoint Tline::closestPoint(const Tline& other) const
{
    // Relative to the directions' lengths: the sine of an angle that is no more than rounding.
    constexpr double kParallelSine = 1e-12;

    const T4dDblVector normal = direction.cross(other.direction);
    const double lengths = direction.lengthSquared() * other.direction.lengthSquared();
    if (!(normal.lengthSquared() > kParallelSine * kParallelSine * lengths))
        return point;
    const double t = (other.point - point).cross(other.direction).dot(normal) / normal.lengthSquared();
    return point + direction * t;
}
