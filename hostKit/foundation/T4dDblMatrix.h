#pragma once

#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"
#include "foundation/Tarray.h"

#include <cassert>

class TdebugOutput;

/**
 * A 4 x 4 matrix in OpenGL's memory order. Points are row vectors, p' = p x M: element 4 * row + column, the
 * translation in elements 12 to 14, and in a product A x B the points go through A first.
 */
class T4dDblMatrix
{
public:
    /** The identity. */
    constexpr T4dDblMatrix() : fElements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}
    /** Takes 16 numbers; the identity for a null pointer. */
    explicit T4dDblMatrix(const double* elements);

    /** Element @p k, from 0 to 15. */
    double& operator[](int k)
    {
        assert(k >= 0 && k < 16);
        return fElements[k];
    }
    double operator[](int k) const
    {
        assert(k >= 0 && k < 16);
        return fElements[k];
    }
    /** The 16 elements, as glLoadMatrixd takes them. */
    double* data() { return fElements; }
    const double* data() const { return fElements; }

    void setToIdentity() { *this = T4dDblMatrix(); }
    bool isIdentity() const;

    /** this = a x b; a or b may be this matrix. */
    void setToProduct(const T4dDblMatrix& a, const T4dDblMatrix& b);
    /**
     * this = a x b, for affine matrices: the last columns of both are taken as 0, 0, 0, 1, whatever they hold. a or b
     * may be this matrix.
     */
    void affineProduct(const T4dDblMatrix& a, const T4dDblMatrix& b);

    /**
     * Inverts the matrix in place. An affine one stays exactly affine.
     * @return false, with the matrix left alone, when it is singular or its inverse is not finite.
     */
    bool fastInvertIt();
    /** The inverse; a copy when there is none. */
    T4dDblMatrix invert() const;

    /** Writes the four rows, a line each after @p indent spaces. */
    void debug(TdebugOutput& out, int indent) const;

    friend T4dDblMatrix operator*(const T4dDblMatrix& a, const T4dDblMatrix& b)
    {
        T4dDblMatrix product;
        product.setToProduct(a, b);
        return product;
    }
    /** Equal element by element. */
    friend bool operator==(const T4dDblMatrix& a, const T4dDblMatrix& b);
    friend bool operator!=(const T4dDblMatrix& a, const T4dDblMatrix& b) { return !(a == b); }

private:
    double fElements[16];
};

/** All four coordinates through the matrix; w comes out as it comes. */
inline T4dDblPoint operator*(const T4dDblPoint& p, const T4dDblMatrix& matrix)
{
    const double* m = matrix.data();
    return {p.x * m[0] + p.y * m[4] + p.z * m[8] + p.w * m[12], p.x * m[1] + p.y * m[5] + p.z * m[9] + p.w * m[13],
            p.x * m[2] + p.y * m[6] + p.z * m[10] + p.w * m[14], p.x * m[3] + p.y * m[7] + p.z * m[11] + p.w * m[15]};
}

/** The direction through the upper 3 x 3 part, without the translation. */
inline T4dDblVector operator*(const T4dDblVector& v, const T4dDblMatrix& matrix)
{
    const double* m = matrix.data();
    return {v.x * m[0] + v.y * m[4] + v.z * m[8], v.x * m[1] + v.y * m[5] + v.z * m[9],
            v.x * m[2] + v.y * m[6] + v.z * m[10]};
}

using T4dDblMatrixArray = Tarray<T4dDblMatrix>;
