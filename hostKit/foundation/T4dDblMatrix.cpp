#include "foundation/T4dDblMatrix.h"

#include "foundation/TdebugOutput.h"

#include <Eigen/Core>
#include <Eigen/LU>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Eigen's matrices are column-major and so hold the transpose of ours: a x b is the product of b's map and a's.
using TconstMap = Eigen::Map<const Eigen::Matrix4d>;

void store(const Eigen::Matrix4d& from, double* elements)
{
    Eigen::Map<Eigen::Matrix4d>{elements} = from;
}

void makeLastColumnAffine(double* m)
{
    m[3] = m[7] = m[11] = 0;
    m[15] = 1;
}

/** In whole halves of columns: a product of products reads those back, and would have to wait for single elements. */
void makeLastColumnAffine(Eigen::Matrix4d& product)
{
    using Half = long long __attribute__((vector_size(16)));
    for (int k = 0; k < 4; ++k) {
        const Half last = {0, k < 3 ? 0 : 0x3FF0000000000000};
        Half half;
        std::memcpy(&half, product.data() + 4 * k + 2, sizeof half);
        half = (half & Half{-1, 0}) | last;
        std::memcpy(product.data() + 4 * k + 2, &half, sizeof half);
    }
}

bool isAffine(const double* m)
{
    return m[3] == 0 && m[7] == 0 && m[11] == 0 && m[15] == 1;
}

// The columns of the inverse are the cross products of the rows, over the determinant.
bool invertAffine(const double* m, double* inverse)
{
    const T4dDblVector x(m[0], m[1], m[2]);
    const T4dDblVector y(m[4], m[5], m[6]);
    const T4dDblVector z(m[8], m[9], m[10]);
    const T4dDblVector translation(m[12], m[13], m[14]);
    const double determinant = x.dot(y.cross(z));
    if (determinant == 0)
        return false;
    const double scale = 1 / determinant;
    const T4dDblVector columns[3] = {y.cross(z) * scale, z.cross(x) * scale, x.cross(y) * scale};
    for (int k = 0; k < 3; ++k) {
        inverse[k] = columns[k].x;
        inverse[4 + k] = columns[k].y;
        inverse[8 + k] = columns[k].z;
        inverse[12 + k] = -translation.dot(columns[k]);
    }
    makeLastColumnAffine(inverse);
    return true;
}

bool invertGeneral(const double* m, double* inverse)
{
    Eigen::Matrix4d result;
    double determinant = 0;
    bool isInvertible = false;
    TconstMap(m).computeInverseAndDetWithCheck(result, determinant, isInvertible, 0.0);
    if (isInvertible)
        store(result, inverse);
    return isInvertible;
}

} // namespace

T4dDblMatrix::T4dDblMatrix(const double* elements) : T4dDblMatrix()
{
    if (elements)
        std::copy_n(elements, 16, fElements);
}

bool T4dDblMatrix::isIdentity() const
{
    return *this == T4dDblMatrix();
}

bool operator==(const T4dDblMatrix& a, const T4dDblMatrix& b)
{
    return std::equal(a.fElements, a.fElements + 16, b.fElements);
}

void T4dDblMatrix::setToProduct(const T4dDblMatrix& a, const T4dDblMatrix& b)
{
    const TconstMap first(a.fElements);
    const TconstMap second(b.fElements);
    Eigen::Matrix4d product;
    // By columns this is half the time of Eigen's own product of two maps.
    for (int k = 0; k < 4; ++k)
        product.col(k) = second.col(0) * first(0, k) + second.col(1) * first(1, k) + second.col(2) * first(2, k) +
                         second.col(3) * first(3, k);
    store(product, fElements);
}

void T4dDblMatrix::affineProduct(const T4dDblMatrix& a, const T4dDblMatrix& b)
{
    const TconstMap first(a.fElements);
    const TconstMap second(b.fElements);
    Eigen::Matrix4d product;
    for (int k = 0; k < 3; ++k)
        product.col(k) = second.col(0) * first(0, k) + second.col(1) * first(1, k) + second.col(2) * first(2, k);
    product.col(3) =
        second.col(0) * first(0, 3) + second.col(1) * first(1, 3) + second.col(2) * first(2, 3) + second.col(3);
    makeLastColumnAffine(product);
    store(product, fElements);
}

bool T4dDblMatrix::fastInvertIt()
{
    double inverse[16];
    if (!(isAffine(fElements) ? invertAffine(fElements, inverse) : invertGeneral(fElements, inverse)) ||
        !std::all_of(inverse, inverse + 16, [](double element) { return std::isfinite(element); }))
        return false;
    std::copy_n(inverse, 16, fElements);
    return true;
}

T4dDblMatrix T4dDblMatrix::invert() const
{
    T4dDblMatrix inverse(*this);
    inverse.fastInvertIt();
    return inverse;
}

void T4dDblMatrix::debug(TdebugOutput& out, int indent) const
{
    for (int row = 0; row < 4; ++row) {
        const double* m = fElements + 4 * row;
        out.printf("%*s%12.6f %12.6f %12.6f %12.6f\n", std::max(indent, 0), "", m[0], m[1], m[2], m[3]);
    }
}
