#pragma once

#include <cassert>

class T4dDblMatrix;

/** A 4 x 4 matrix in single precision, its elements in the order of T4dDblMatrix. */
class T4dFltMatrix
{
public:
    /** The identity. */
    constexpr T4dFltMatrix() : fElements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}
    /** The nearest elements; numbers beyond a float become infinite. */
    explicit T4dFltMatrix(const T4dDblMatrix& matrix);

    /** Element @p k, from 0 to 15. */
    float& operator[](int k)
    {
        assert(k >= 0 && k < 16);
        return fElements[k];
    }
    float operator[](int k) const
    {
        assert(k >= 0 && k < 16);
        return fElements[k];
    }
    /** The 16 elements, as glLoadMatrixf takes them. */
    float* data() { return fElements; }
    const float* data() const { return fElements; }

private:
    float fElements[16];
};
