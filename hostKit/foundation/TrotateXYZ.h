#pragma once

#include "foundation/Tquaternion.h"

/**
 * Rotations about the three axes, in radians and in the sense of glRotate, one after the other.
 * Orders: 0 x y z, 1 y z x, 2 z x y, 3 x z y, 4 y x z, 5 z y x; the axis named first turns points first. Any other
 * order is taken as 0.
 */
struct TrotateXYZ
{
    double x = 0;
    double y = 0;
    double z = 0;
    int order = 0;

    operator Tquaternion() const;
    operator T4dDblMatrix() const;
};
