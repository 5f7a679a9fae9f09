#include "foundation/T4dDblMatrix.h"
#include "foundation/TrotateXYZ.h"
#include "foundation/TxformMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

class Trandom
{
public:
    double number() { return fNumbers(fEngine); }
    T4dDblMatrix matrix()
    {
        T4dDblMatrix m;
        for (int k = 0; k < 16; ++k)
            m[k] = number();
        return m;
    }
    T4dDblMatrix affine()
    {
        T4dDblMatrix m = matrix();
        m[3] = m[7] = m[11] = 0;
        m[15] = 1;
        return m;
    }

private:
    std::mt19937 fEngine{20240601};
    std::uniform_real_distribution<double> fNumbers{-3, 3};
};

T4dDblMatrix product(const T4dDblMatrix& a, const T4dDblMatrix& b)
{
    T4dDblMatrix result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            result[4 * row + column] = 0;
            for (int k = 0; k < 4; ++k)
                result[4 * row + column] += a[4 * row + k] * b[4 * k + column];
        }
    }
    return result;
}

T4dDblMatrix about(int axis, double t)
{
    const int a = (axis + 1) % 3;
    const int b = (axis + 2) % 3;
    T4dDblMatrix m;
    m[5 * a] = m[5 * b] = std::cos(t);
    m[4 * a + b] = std::sin(t);
    m[4 * b + a] = -std::sin(t);
    return m;
}

void expectNear(const T4dDblMatrix& a, const T4dDblMatrix& b, double tolerance = 1e-12)
{
    for (int k = 0; k < 16; ++k)
        EXPECT_NEAR(a[k], b[k], tolerance) << "element " << k;
}

T4dDblVector axisOf(const T4dDblMatrix& m, int i)
{
    return {m[4 * i], m[4 * i + 1], m[4 * i + 2]};
}

} // namespace

TEST(T4dDblMatrix, ProductsAgreeWithTheDefinitionAlsoInPlace)
{
    Trandom random;
    for (int i = 0; i < 100; ++i) {
        const T4dDblMatrix a = random.matrix();
        const T4dDblMatrix b = random.matrix();
        expectNear(a * b, product(a, b));
        T4dDblMatrix m = a;
        m.setToProduct(m, b);
        expectNear(m, product(a, b));
        m = b;
        m.setToProduct(a, m);
        expectNear(m, product(a, b));

        // What the last columns hold must not matter.
        T4dDblMatrix affineA = a;
        T4dDblMatrix affineB = b;
        for (T4dDblMatrix* each : {&affineA, &affineB}) {
            (*each)[3] = (*each)[7] = (*each)[11] = 0;
            (*each)[15] = 1;
        }
        m = a;
        m[7] = std::numeric_limits<double>::quiet_NaN();
        m.affineProduct(m, b);
        expectNear(m, product(affineA, affineB));
        m = b;
        m.affineProduct(a, m);
        expectNear(m, product(affineA, affineB));
        EXPECT_EQ(m[15], 1);
    }
}

TEST(T4dDblMatrix, InverseOfFullAndAffineMatrices)
{
    Trandom random;
    for (int i = 0; i < 100; ++i) {
        for (const T4dDblMatrix& m : {random.matrix(), random.affine()}) {
            T4dDblMatrix inverse = m;
            ASSERT_TRUE(inverse.fastInvertIt());
            EXPECT_EQ(inverse, m.invert());
            double largest = 1;
            for (int k = 0; k < 16; ++k)
                largest = std::max(largest, std::fabs(inverse[k]));
            expectNear(product(m, inverse), T4dDblMatrix(), 1e-12 * largest);
        }
    }
}

TEST(T4dDblMatrix, SingularMatrixIsLeftAlone)
{
    T4dDblMatrix flat;
    flat[10] = 0;
    T4dDblMatrix flatProjection = flat;
    flatProjection[3] = 1;
    T4dDblMatrix huge; // beyond what its determinant can hold
    huge[0] = huge[5] = huge[10] = 1e200;
    T4dDblMatrix endless;
    endless[12] = std::numeric_limits<double>::infinity();
    const double zeros[16] = {};
    for (const T4dDblMatrix& m : {flat, flatProjection, T4dDblMatrix(zeros), huge, endless}) {
        T4dDblMatrix inverse = m;
        EXPECT_FALSE(inverse.fastInvertIt());
        EXPECT_EQ(inverse, m);
    }
}

TEST(TrotateXYZ, EveryOrderIsTheProductOfItsAxesInTurn)
{
    Trandom random;
    for (int i = 0; i < 20; ++i) {
        const T4dDblVector t(random.number(), random.number(), random.number());
        const T4dDblMatrix x = about(0, t.x);
        const T4dDblMatrix y = about(1, t.y);
        const T4dDblMatrix z = about(2, t.z);
        const T4dDblMatrix* const orders[6][3] = {{&x, &y, &z}, {&y, &z, &x}, {&z, &x, &y},
                                                  {&x, &z, &y}, {&y, &x, &z}, {&z, &y, &x}};
        for (int order = 0; order < 6; ++order) {
            SCOPED_TRACE(order);
            const TrotateXYZ rotate{t.x, t.y, t.z, order};
            const T4dDblMatrix wanted = product(product(*orders[order][0], *orders[order][1]), *orders[order][2]);
            expectNear(static_cast<T4dDblMatrix>(rotate), wanted);
            const Tquaternion quaternion = rotate;
            expectNear(static_cast<T4dDblMatrix>(quaternion), wanted);
        }
        for (const int order : {-1, 6}) {
            expectNear(static_cast<T4dDblMatrix>(TrotateXYZ{t.x, t.y, t.z, order}),
                       static_cast<T4dDblMatrix>(TrotateXYZ{t.x, t.y, t.z, 0}), 0);
        }
    }
    EXPECT_TRUE(static_cast<T4dDblMatrix>(TrotateXYZ{}).isIdentity());
}

TEST(TxformMatrix, ScaleCorrectionKeepsDirectionsShearCorrectionMakesThemOrthonormal)
{
    Trandom random;
    for (int i = 0; i < 50; ++i) {
        const T4dDblMatrix m = random.affine();
        const T4dDblMatrix scale = product(TxformMatrix(m).unSquishMatrix(TxformMatrix::kUnSquishScale), m);
        const T4dDblMatrix shear = product(TxformMatrix(m).unSquishMatrix(TxformMatrix::kUnSquishShear), m);
        for (int axis = 0; axis < 3; ++axis) {
            const T4dDblVector own = axisOf(m, axis);
            EXPECT_LT((axisOf(scale, axis) - own * (1 / own.length())).length(), 1e-12);
            for (int other = 0; other < 3; ++other)
                EXPECT_NEAR(axisOf(shear, axis).dot(axisOf(shear, other)), axis == other ? 1 : 0, 1e-9);
        }
        EXPECT_LT((axisOf(shear, 0) - axisOf(scale, 0)).length(), 1e-12);
        const auto volume = [](const T4dDblMatrix& n) { return axisOf(n, 0).cross(axisOf(n, 1)).dot(axisOf(n, 2)); };
        EXPECT_GT(volume(m) * volume(shear), 0);
        for (int k = 12; k < 16; ++k) {
            EXPECT_NEAR(scale[k], m[k], 1e-12);
            EXPECT_NEAR(shear[k], m[k], 1e-12);
        }
    }
}
