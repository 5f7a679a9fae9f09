#include "foundation/TrotateXYZ.h"

namespace {

constexpr int kX = 0;
constexpr int kY = 1;
constexpr int kZ = 2;

constexpr int kAxes[6][3] = {{kX, kY, kZ}, {kY, kZ, kX}, {kZ, kX, kY}, {kX, kZ, kY}, {kY, kX, kZ}, {kZ, kY, kX}};

} // namespace

TrotateXYZ::operator Tquaternion() const
{
    const Tquaternion turns[] = {Tquaternion::fromAxisAngle({1, 0, 0}, x), Tquaternion::fromAxisAngle({0, 1, 0}, y),
                                 Tquaternion::fromAxisAngle({0, 0, 1}, z)};
    const auto& axes = kAxes[order >= 0 && order < 6 ? order : 0];
    return turns[axes[0]] * turns[axes[1]] * turns[axes[2]];
}

TrotateXYZ::operator T4dDblMatrix() const
{
    return static_cast<Tquaternion>(*this);
}
