#pragma once

#include "foundation/T4dDblMatrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

/** Equal element by element, within @p tolerance of the larger of the element and one. */
inline testing::AssertionResult isNear(const T4dDblMatrix& got, const T4dDblMatrix& wanted, double tolerance = 1e-12)
{
    for (int k = 0; k < 16; ++k) {
        if (!(std::abs(got[k] - wanted[k]) <= tolerance * std::max(1.0, std::abs(wanted[k]))))
            return testing::AssertionFailure() << "element " << k << " is " << got[k] << ", not " << wanted[k];
    }
    return testing::AssertionSuccess();
}

/** Reproducible numbers for matrices. */
class TmatrixDice
{
public:
    explicit TmatrixDice(unsigned seed) : fEngine(seed) {}

    double number(double from, double to) { return std::uniform_real_distribution<double>(from, to)(fEngine); }
    unsigned below(unsigned count) { return std::uniform_int_distribution<unsigned>(0, count - 1)(fEngine); }

    T4dDblMatrix affine()
    {
        T4dDblMatrix m = full();
        m[3] = m[7] = m[11] = 0;
        m[15] = 1;
        return m;
    }
    T4dDblMatrix full()
    {
        T4dDblMatrix m;
        for (int k = 0; k < 16; ++k)
            m[k] = number(-2, 2);
        return m;
    }

private:
    std::mt19937 fEngine;
};
