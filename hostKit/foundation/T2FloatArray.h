#pragma once

#include "foundation/Tarray.h"

/** A pair of floats. */
struct T2Float
{
    float x = 0;
    float y = 0;

    friend bool operator==(const T2Float& a, const T2Float& b) { return a.x == b.x && a.y == b.y; }
    friend bool operator!=(const T2Float& a, const T2Float& b) { return !(a == b); }
};

static_assert(sizeof(T2Float) == 2 * sizeof(float), "pairs lie tightly packed: OpenGL reads them as they are");

/** Pairs of floats, one behind the other in memory. */
using T2FloatArray = Tarray<T2Float>;
