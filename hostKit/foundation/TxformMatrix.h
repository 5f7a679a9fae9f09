#pragma once

#include "foundation/T4dDblMatrix.h"

/** A transformation taken apart. */
class TxformMatrix
{
public:
    enum unSquishType {
        kUnSquishScale, ///< unit axes in their own directions
        kUnSquishShear  ///< unit axes at right angles, the first in its own direction, handedness kept
    };

    explicit TxformMatrix(const T4dDblMatrix& matrix) : fMatrix(matrix) {}

    /**
     * The correction that takes scale, or scale and shear, out of the matrix when multiplied from the left:
     * correction x matrix has the axes that @p type says and the translation of the matrix. An axis without length,
     * or with kUnSquishShear one that lies in the space of those before it, is left as it is.
     */
    T4dDblMatrix unSquishMatrix(unSquishType type) const;

private:
    T4dDblMatrix fMatrix;
};
