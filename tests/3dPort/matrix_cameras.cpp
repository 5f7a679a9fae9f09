// Matrix operations, projections and cameras, beside what OpenGL and GLU make of the same numbers.

#include "3dPort/Calls.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

namespace {

// OpenGL keeps its matrices in single precision.
constexpr double kSingle = 2e-5;

constexpr double kDegrees = 180 / 3.141592653589793;

/** Equal element by element, within @p tolerance of the larger of the element and one. */
testing::AssertionResult isNear(const T4dDblMatrix& got, const T4dDblMatrix& wanted, double tolerance)
{
    for (int k = 0; k < 16; ++k) {
        if (!(std::abs(got[k] - wanted[k]) <= tolerance * std::max(1.0, std::abs(wanted[k]))))
            return testing::AssertionFailure() << "element " << k << " is " << got[k] << ", not " << wanted[k];
    }
    return testing::AssertionSuccess();
}

/** The matrix that OpenGL's own calls make of the identity. */
T4dDblMatrix madeByOpenGL(const std::function<void()>& calls)
{
    T4dDblMatrix m;
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glLoadIdentity();
    calls();
    glGetDoublev(GL_TEXTURE_MATRIX, m.data());
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    return m;
}

T4dDblMatrix projectionOf(const T3dPort& port)
{
    T4dDblMatrix m;
    port.getProjectionMatrix(m);
    return m;
}

T4dDblMatrix modelViewOf(const T3dPort& port)
{
    T4dDblMatrix m;
    port.getModelViewMatrix(m);
    return m;
}

class MatrixCameras : public ShownPort
{
protected:
    double number() { return std::uniform_real_distribution<double>(-1.5, 1.5)(fEngine); }

    std::mt19937 fEngine{11};
};

} // namespace

TEST_F(MatrixCameras, ModelViewOperationsAgreeWithOpenGL)
{
    for (int round = 0; round < 40; ++round) {
        T4dDblMatrix wanted;
        port().loadIdentity();
        for (int step = 0; step < 12; ++step) {
            const double x = number();
            const double y = number();
            const double z = number();
            T4dDblMatrix m;
            for (int k = 0; k < 15; ++k)
                m[k] = k % 4 == 3 ? 0 : number();
            const std::pair<std::function<void()>, std::function<void()>> operations[] = {
                {[&] { port().translate(x, y, z); }, [&] { glTranslated(x, y, z); }},
                {[&] { port().scale(x, y, z); }, [&] { glScaled(x, y, z); }},
                {[&] { port().rotate(x, y, z); },
                 [&] {
                     glRotated(z * kDegrees, 0, 0, 1);
                     glRotated(y * kDegrees, 0, 1, 0);
                     glRotated(x * kDegrees, 1, 0, 0);
                 }},
                {[&] { port().multMatrix(m); }, [&] { glMultMatrixd(m.data()); }},
                {[&] { port().pushMultMatrix(m); }, [&] { glMultMatrixd(m.data()); }},
                {[&] {
                     port().pushLoadMatrix(m); // the top has no part in the product
                     port().stackMultMatrix(m);
                 },
                 [&] { glMultMatrixd(m.data()); }},
                {[&] { port().loadMatrix(m); }, [&] { glLoadMatrixd(m.data()); }},
            };
            const auto& operation = operations[fEngine() % std::size(operations)];
            operation.first();
            wanted = madeByOpenGL([&] {
                glLoadMatrixd(wanted.data());
                operation.second();
            });
            ASSERT_TRUE(isNear(modelViewOf(port()), wanted, 1e-3)) << "round " << round << ", step " << step;
            ASSERT_EQ(TstringArray(), port().stateDifferences()) << "is loaded again";
        }
    }
}

TEST_F(MatrixCameras, PopsAllThatIsAskedForOrNothing)
{
    const struct
    {
        int depth;
        unsigned pops;
        double top; // the mark left on top
    } cases[] = {{1, 1, 1}, {1, 7, 1}, {2, 1, 1}, {3, 3, 3}, {3, 2, 1}, {3, 4000000000u, 3}, {300, 299, 1}};
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        for (const auto& c : cases) {
            T3dPort stacks(nullptr, "stacks", false);
            stacks.matrixMode(mode);
            for (int level = 1; level <= c.depth; ++level) {
                T4dDblMatrix m;
                m[12] = level;
                level == 1 ? stacks.loadMatrix(m) : stacks.pushLoadMatrix(m);
            }
            stacks.popMatrix(c.pops);
            EXPECT_EQ(c.top, stacks.matrix()[12]) << c.depth << " deep, pop " << c.pops << ", mode " << mode;
        }
    }
}

TEST_F(MatrixCameras, ProjectionsAgreeWithGlu)
{
    const struct
    {
        const char* name;
        std::function<void(T3dPort&)> port;
        std::function<void()> openGL;
    } cases[] = {
        {"wide", [](T3dPort& p) { p.perspective(178, 4, 0.001, 1e5); }, [] { gluPerspective(178, 4, 0.001, 1e5); }},
        {"frustum", [](T3dPort& p) { p.perspective(-1, 2, -0.5, 3, 0.5, 20); },
         [] { glFrustum(-1, 2, -0.5, 3, 0.5, 20); }},
        {"ortho", [](T3dPort& p) { p.ortho(-1, 2, 5, -3, 0.5, 20); }, [] { glOrtho(-1, 2, 5, -3, 0.5, 20); }},
        {"ortho 2D", [](T3dPort& p) { p.ortho(0, 640, 480, 0); }, [] { gluOrtho2D(0, 640, 480, 0); }},
        {"polar view", [](T3dPort& p) { p.polarView(7, 30, -65, 12); },
         [] {
             glTranslated(0, 0, -7);
             glRotated(-12, 0, 0, 1);
             glRotated(65, 1, 0, 0);
             glRotated(-30, 0, 0, 1);
         }},
        {"look at",
         [](T3dPort& p) {
             p.lookAt({1, 2, 3}, {-2, 0.5, -1}, 0.7);
         },
         [] {
             glRotated(-0.7 * kDegrees, 0, 0, 1);
             gluLookAt(0, 0, 0, -3, -1.5, -4, 0, 1, 0);
             glTranslated(-3, 0, 0); // the eye's z goes into x
         }},
        {"pixels", [](T3dPort& p) { p.pushOrtho2D(); },
         [] {
             gluOrtho2D(0, 40, 0, 30);
             glTranslated(0.375, 0.375, 0);
         }},
    };
    for (const auto& c : cases) {
        port().loadIdentity();
        c.port(port());
        const T4dDblMatrix view = modelViewOf(port());
        EXPECT_TRUE(isNear(view.isIdentity() ? projectionOf(port()) : view, madeByOpenGL(c.openGL), kSingle)) << c.name;
        EXPECT_EQ(TstringArray(), port().stateDifferences());
    }
}

TEST_F(MatrixCameras, DegenerateProjectionsAreHeld)
{
    const struct
    {
        double fovy, aspect, zNear, zFar;
        double e0, e5, e10;
    } cases[] = {
        {-20, 2, 1, 3, 57.28996163075943 / 2, 57.28996163075943, -2},
        {400, 1, 1, 3, 0.008726867790758751, 0.008726867790758751, -2},
        {90, 0, 1, 3, 1e10, 1, -2},
        {90, 1, -5, -4, 1, 1, -(0.1001 + 0.0001) / 0.1},
        {90, 1, 5, 2, 1, 1, -(5.1 + 5) / (5.1 - 5)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.fovy << " " << c.aspect << " " << c.zNear << " " << c.zFar);
        port().perspective(c.fovy, c.aspect, c.zNear, c.zFar);
        const T4dDblMatrix got = projectionOf(port());
        EXPECT_DOUBLE_EQ(c.e0, got[0]);
        EXPECT_DOUBLE_EQ(c.e5, got[5]);
        EXPECT_NEAR(c.e10, got[10], 1e-9);
    }
    port().perspective(2, 2, 7, 1, 0, 0); // an empty frustum opens to the right
    EXPECT_NEAR(0.0002 / 1e-6, projectionOf(port())[0], 1e-4);
}
