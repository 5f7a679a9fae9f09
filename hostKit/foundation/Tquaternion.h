#pragma once

#include "foundation/T4dDblMatrix.h"

/** A rotation as a quaternion x i + y j + z k + w. It need not have unit length. */
class Tquaternion
{
public:
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 1;

    /** The rotation about @p axis, of any length, in the sense of glRotate; none about a null axis. */
    static Tquaternion fromAxisAngle(const T4dDblVector& axis, double radians);

    /** The rotation matrix; the identity for a null quaternion. */
    operator T4dDblMatrix() const;
};

/** Rotation by a, then by b: the order in which the product of their matrices turns points. */
constexpr Tquaternion operator*(const Tquaternion& a, const Tquaternion& b)
{
    return {b.w * a.x + b.x * a.w + b.y * a.z - b.z * a.y, b.w * a.y - b.x * a.z + b.y * a.w + b.z * a.x,
            b.w * a.z + b.x * a.y - b.y * a.x + b.z * a.w, b.w * a.w - b.x * a.x - b.y * a.y - b.z * a.z};
}
