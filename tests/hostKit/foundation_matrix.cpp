#include "foundation/T4dDblMatrix.h"
#include "foundation/T4dFltMatrix.h"
#include "foundation/TdebugOutput.h"
#include "foundation/Tline.h"
#include "foundation/TrotateXYZ.h"
#include "foundation/TxformMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

class Trandom
{
public:
    double number() { return fNumbers(fEngine); }
    T4dDblVector vector() { return {number(), number(), number()}; }
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

T4dDblMatrix aboutX(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    const double m[16] = {1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1};
    return T4dDblMatrix(m);
}

T4dDblMatrix aboutY(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    const double m[16] = {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1};
    return T4dDblMatrix(m);
}

T4dDblMatrix aboutZ(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    const double m[16] = {c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    return T4dDblMatrix(m);
}

void expectNear(const T4dDblMatrix& a, const T4dDblMatrix& b, double tolerance = 1e-12)
{
    for (int k = 0; k < 16; ++k)
        EXPECT_NEAR(a[k], b[k], tolerance) << "element " << k;
}

void expectNear(const T4dDblVector& a, const T4dDblVector& b, double tolerance = 1e-12)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
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
    int inverted = 0;
    for (int i = 0; i < 100; ++i) {
        for (const T4dDblMatrix& m : {random.matrix(), random.affine()}) {
            T4dDblMatrix inverse = m;
            ASSERT_TRUE(inverse.fastInvertIt());
            EXPECT_EQ(inverse, m.invert());
            double largest = 1;
            for (int k = 0; k < 16; ++k)
                largest = std::max(largest, std::fabs(inverse[k]));
            expectNear(product(m, inverse), T4dDblMatrix(), 1e-12 * largest);
            ++inverted;
        }
    }
    EXPECT_EQ(inverted, 200);
}

TEST(T4dDblMatrix, SmallScalesAndProjectionsAreInvertible)
{
    T4dDblMatrix tiny;
    tiny[0] = tiny[5] = tiny[10] = 1e-7;
    tiny[12] = 1e6;
    T4dDblMatrix perspective;
    perspective[10] = -1.0000000002;
    perspective[11] = -1;
    perspective[14] = -0.0002;
    perspective[15] = 0;
    for (const T4dDblMatrix& m : {tiny, perspective}) {
        T4dDblMatrix inverse = m;
        ASSERT_TRUE(inverse.fastInvertIt());
        expectNear(product(m, inverse), T4dDblMatrix(), 1e-9);
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

TEST(T4dDblMatrix, PointsAndVectorsAreRows)
{
    Trandom random;
    const T4dDblMatrix m = random.matrix();
    const T4dDblPoint p(1, -2, 3, 0.5);
    const double in[4] = {p.x, p.y, p.z, p.w};
    const T4dDblPoint q = p * m;
    const double out[4] = {q.x, q.y, q.z, q.w};
    for (int column = 0; column < 4; ++column) {
        double wanted = 0;
        for (int row = 0; row < 4; ++row)
            wanted += in[row] * m[4 * row + column];
        EXPECT_NEAR(out[column], wanted, 1e-12);
    }

    T4dDblMatrix move;
    move[12] = 5;
    EXPECT_EQ(T4dDblPoint::origin * move, T4dDblPoint(5, 0, 0));
    EXPECT_EQ(T4dDblVector(1, 2, 3) * move, T4dDblVector(1, 2, 3));
    EXPECT_FALSE(move.isIdentity());
    move.setToIdentity();
    EXPECT_TRUE(move.isIdentity());

    const T4dFltMatrix single(m);
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(single[k], static_cast<float>(m[k]));
}

TEST(T4dDblMatrix, DebugPrintsFourIndentedRows)
{
    T4dDblMatrix m;
    m[13] = -7.25;
    std::FILE* const file = std::tmpfile();
    ASSERT_TRUE(file);
    TdebugOutput output(file);
    m.debug(output, 2);
    std::rewind(file);
    char line[128];
    for (int row = 0; row < 4; ++row) {
        double e[4] = {};
        ASSERT_TRUE(std::fgets(line, sizeof line, file));
        EXPECT_EQ(std::string(line, 2), "  ");
        ASSERT_EQ(std::sscanf(line, "%lf %lf %lf %lf\n", e, e + 1, e + 2, e + 3), 4);
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(e[column], m[4 * row + column]);
    }
    EXPECT_FALSE(std::fgets(line, sizeof line, file));
    std::fclose(file);
}

TEST(TrotateXYZ, EveryOrderIsTheProductOfItsAxesInTurn)
{
    Trandom random;
    for (int i = 0; i < 20; ++i) {
        const T4dDblVector t = random.vector();
        const T4dDblMatrix x = aboutX(t.x);
        const T4dDblMatrix y = aboutY(t.y);
        const T4dDblMatrix z = aboutZ(t.z);
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

TEST(Tquaternion, TurnsAboutAnyAxisOfAnyLength)
{
    Trandom random;
    for (int i = 0; i < 50; ++i) {
        const T4dDblVector axis = random.vector();
        const double t = random.number();
        const T4dDblVector v = random.vector();
        // Rodrigues' formula
        const T4dDblVector n = axis * (1 / axis.length());
        const T4dDblVector wanted =
            v * std::cos(t) + n.cross(v) * std::sin(t) + n * (n.dot(v) * (1 - std::cos(t)));
        const Tquaternion q = Tquaternion::fromAxisAngle(axis, t);
        expectNear(v * static_cast<T4dDblMatrix>(q), wanted);
        const Tquaternion longer{3 * q.x, 3 * q.y, 3 * q.z, 3 * q.w};
        expectNear(v * static_cast<T4dDblMatrix>(longer), wanted);

        const Tquaternion p = Tquaternion::fromAxisAngle(random.vector(), random.number());
        expectNear(static_cast<T4dDblMatrix>(q * p),
                   product(static_cast<T4dDblMatrix>(q), static_cast<T4dDblMatrix>(p)));
    }
    EXPECT_TRUE(static_cast<T4dDblMatrix>(Tquaternion::fromAxisAngle({0, 0, 0}, 1)).isIdentity());
    EXPECT_TRUE(static_cast<T4dDblMatrix>(Tquaternion{0, 0, 0, 0}).isIdentity());
}

TEST(T4dDblVector, NormalisedLeavesTinyAndUnitVectorsAlone)
{
    expectNear(T4dDblVector(3, 0, -4).normalised(), {0.6, 0, -0.8}, 1e-15);
    expectNear(T4dDblVector(0, 2e-10, 0).normalised(), {0, 1, 0}, 1e-15);
    for (const T4dDblVector& v : {T4dDblVector(), T4dDblVector(0, 0.9e-10, 0), T4dDblVector(1 + 0.9e-10, 0, 0)})
        EXPECT_EQ(v.normalised(), v);
    EXPECT_NE(T4dDblVector(1 + 1.1e-10, 0, 0).normalised(), T4dDblVector(1 + 1.1e-10, 0, 0));
    EXPECT_EQ(T4dDblVector(1, 0, 0).cross({0, 1, 0}), T4dDblVector(0, 0, 1));
    EXPECT_NEAR(T4dDblVector(2, 0, 0).angleBetween({-3, 3, 0}).degrees(), 135, 1e-12);
    EXPECT_EQ(T4dDblVector(2, 0, 0).angleBetween({}).radians, 0);
    EXPECT_NEAR(Tangle::fromDegrees(180).radians, std::acos(-1.0), 1e-15);
}

TEST(T4dDblPoint, ArithmeticIsThatOfTheCartesianPoint)
{
    const T4dDblPoint p(2, 4, 6, 2);
    EXPECT_EQ(p + T4dDblVector(1, 1, 1), T4dDblPoint(2, 3, 4));
    EXPECT_EQ(p - T4dDblVector(1, 1, 1), T4dDblPoint(0, 1, 2));
    EXPECT_EQ(p - T4dDblPoint(1, 1, 1), T4dDblVector(0, 1, 2));
    EXPECT_TRUE(std::isinf(T4dDblPoint(1, 0, 0, 0).cartesian().x));
}

TEST(Tline, ClosestPointOfSkewCrossingAndParallelLines)
{
    Trandom random;
    for (int i = 0; i < 50; ++i) {
        const Tline a{T4dDblPoint::origin + random.vector(), random.vector()};
        const T4dDblVector across = random.vector();
        const double t = random.number();
        // The second line passes the first at the chosen point, at right angles to both directions.
        const T4dDblPoint foot = a.point + a.direction * t;
        const Tline b{foot + a.direction.cross(across) + across * 5, across};
        expectNear(a.closestPoint(b) - foot, {}, 1e-8);
    }
    const Tline x{{7, 0, 0, 1}, {1, 0, 0}};
    EXPECT_EQ(x.closestPoint({{0, 1, 0}, {0, 0, 1}}), T4dDblPoint(0, 0, 0));
    for (const T4dDblVector& direction : {T4dDblVector(-2, 0, 0), T4dDblVector()})
        EXPECT_EQ(x.closestPoint({{0, 1, 0}, direction}), x.point);
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
            expectNear(axisOf(scale, axis), own * (1 / own.length()));
            for (int other = 0; other < 3; ++other)
                EXPECT_NEAR(axisOf(shear, axis).dot(axisOf(shear, other)), axis == other ? 1 : 0, 1e-9);
        }
        expectNear(axisOf(shear, 0), axisOf(scale, 0));
        const auto volume = [](const T4dDblMatrix& n) { return axisOf(n, 0).cross(axisOf(n, 1)).dot(axisOf(n, 2)); };
        EXPECT_GT(volume(m) * volume(shear), 0);
        for (int k = 12; k < 16; ++k) {
            EXPECT_NEAR(scale[k], m[k], 1e-12);
            EXPECT_NEAR(shear[k], m[k], 1e-12);
        }
    }
}

TEST(TxformMatrix, DegenerateAxesAreLeftAlone)
{
    T4dDblMatrix m; // the second axis null, the third along the first
    m[0] = 2;
    m[5] = 0;
    m[8] = 3;
    m[10] = 0;
    for (const auto type : {TxformMatrix::kUnSquishScale, TxformMatrix::kUnSquishShear}) {
        const T4dDblMatrix corrected = product(TxformMatrix(m).unSquishMatrix(type), m);
        EXPECT_EQ(axisOf(corrected, 0), T4dDblVector(1, 0, 0));
        EXPECT_EQ(axisOf(corrected, 1), T4dDblVector());
        EXPECT_EQ(axisOf(corrected, 2), T4dDblVector(type == TxformMatrix::kUnSquishScale ? 1 : 3, 0, 0));
    }
}
