#include "foundation/T4dFltMatrix.h"

#include "foundation/T4dDblMatrix.h"

T4dFltMatrix::T4dFltMatrix(const T4dDblMatrix& matrix)
{
    for (int k = 0; k < 16; ++k)
        fElements[k] = static_cast<float>(matrix[k]);
}
