#pragma once

#include "foundation/T4dDblPoint.h"

/** An infinite line through a point. The direction may have any length. */
struct Tline
{
    T4dDblPoint point;
    T4dDblVector direction;

    /** The point of this line that comes closest to the other; this line's own point when they are parallel. */
    T4dDblPoint closestPoint(const Tline& other) const;
};
