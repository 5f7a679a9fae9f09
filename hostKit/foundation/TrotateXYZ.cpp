#include "foundation/TrotateXYZ.h"

#include <cmath>

namespace {

constexpr int kX = 0;
constexpr int kY = 1;
constexpr int kZ = 2;

constexpr int kAxes[6][3] = {{kX, kY, kZ}, {kY, kZ, kX}, {kZ, kX, kY}, {kX, kZ, kY}, {kY, kX, kZ}, {kZ, kY, kX}};

Tquaternion aboutAxis(int axis, double radians)
{
    const double s = std::sin(radians / 2);
    return {axis == kX ? s : 0, axis == kY ? s : 0, axis == kZ ? s : 0, std::cos(radians / 2)};
}

} // namespace

TrotateXYZ::operator Tquaternion() const
{
    const double angles[] = {x, y, z};
    Tquaternion rotation;
    for (const int axis : kAxes[order >= 0 && order < 6 ? order : 0])
        if (angles[axis] != 0)
            rotation = rotation * aboutAxis(axis, angles[axis]);
    return rotation;
}

TrotateXYZ::operator T4dDblMatrix() const
{
    return static_cast<Tquaternion>(*this);
}
