#include "foundation/Tquaternion.h"

#include <cmath>

Tquaternion Tquaternion::fromAxisAngle(const T4dDblVector& axis, double radians)
{
    const double square = axis.x * axis.x + axis.y * axis.y + axis.z * axis.z;
    // The square of a very long or very short axis does not fit a double.
    const double length = square > 1e-200 && square < 1e200 ? std::sqrt(square) : std::hypot(axis.x, axis.y, axis.z);
    if (length == 0)
        return {};
    const double scale = std::sin(radians / 2) / length;
    return {axis.x * scale, axis.y * scale, axis.z * scale, std::cos(radians / 2)};
}

Tquaternion::operator T4dDblMatrix() const
{
    T4dDblMatrix m;
    const double norm = x * x + y * y + z * z + w * w;
    if (norm == 0)
        return m;
    const double s = 2 / norm;
    m[0] = 1 - s * (y * y + z * z);
    m[1] = s * (x * y + w * z);
    m[2] = s * (x * z - w * y);
    m[4] = s * (x * y - w * z);
    m[5] = 1 - s * (x * x + z * z);
    m[6] = s * (y * z + w * x);
    m[8] = s * (x * z + w * y);
    m[9] = s * (y * z - w * x);
    m[10] = 1 - s * (x * x + y * y);
    return m;
}
