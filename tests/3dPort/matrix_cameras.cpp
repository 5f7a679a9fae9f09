// Projections and cameras, beside what OpenGL and GLU make of the same numbers.

#include "support/PortWindow.h"

#include "3dPort/matrix_support.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

// OpenGL keeps its matrices in single precision.
constexpr double kSingle = 4e-6;

constexpr double kPi = 3.141592653589793;

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

/** A port that is current, so that OpenGL can be asked. */
class MatrixCameras : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    PortWindow<> fWindow{40, 30};
};

} // namespace

TEST_F(MatrixCameras, ModelViewOperationsAgreeWithOpenGL)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        TmatrixDice dice(seed);
        port().loadIdentity();
        const T4dDblMatrix wanted = madeByOpenGL([&] {
            for (int step = 0; step < 12; ++step) {
                const double x = dice.number(-1.5, 1.5);
                const double y = dice.number(-1.5, 1.5);
                const double z = dice.number(-1.5, 1.5);
                switch (dice.below(4)) {
                case 0:
                    port().translate(x, y, z);
                    glTranslated(x, y, z);
                    break;
                case 1:
                    port().scale(x, y, z);
                    glScaled(x, y, z);
                    break;
                case 2:
                    port().rotate(x, y, z);
                    glRotated(z * 180 / kPi, 0, 0, 1);
                    glRotated(y * 180 / kPi, 0, 1, 0);
                    glRotated(x * 180 / kPi, 1, 0, 0);
                    break;
                default: {
                    const T4dDblMatrix m = dice.affine();
                    port().multMatrix(m);
                    glMultMatrixd(m.data());
                    break;
                }
                }
            }
        });
        EXPECT_TRUE(isNear(modelViewOf(port()), wanted, 1e-3)) << "seed " << seed;
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
        {"perspective", [](T3dPort& p) { p.perspective(45, 1.5, 0.1, 100); },
         [] { gluPerspective(45, 1.5, 0.1, 100); }},
        {"narrow", [](T3dPort& p) { p.perspective(2, 0.3, 1, 1.2); }, [] { gluPerspective(2, 0.3, 1, 1.2); }},
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
    };
    for (const auto& c : cases) {
        port().loadIdentity();
        port().matrixMode(GL_PROJECTION);
        port().loadMatrix(T4dDblMatrix());
        port().scale(3, 3, 3); // the top is replaced, not multiplied into
        port().matrixMode(GL_MODELVIEW);
        const T4dDblMatrix before = modelViewOf(port());
        c.port(port());
        const bool camera = !(modelViewOf(port()) == before);
        EXPECT_TRUE(isNear(camera ? modelViewOf(port()) : projectionOf(port()), madeByOpenGL(c.openGL), kSingle))
            << c.name;
    }
}

TEST_F(MatrixCameras, ScalingAndMovingAProjectionLeaveWAlone)
{
    port().perspective(60, 1, 1, 10);
    const T4dDblMatrix before = projectionOf(port());
    port().matrixMode(GL_PROJECTION);
    port().scale(2, 3, 4);
    T4dDblMatrix wanted = before;
    wanted[0] *= 2;
    wanted[5] *= 3;
    wanted[10] *= 4;
    EXPECT_TRUE(projectionOf(port()) == wanted);
    EXPECT_EQ(-1, projectionOf(port())[11]);
    port().translate(0, 0, 5);
    wanted[14] += 5 * wanted[10];
    EXPECT_TRUE(isNear(projectionOf(port()), wanted));
    EXPECT_EQ(0, projectionOf(port())[15]) << "OpenGL would have made this -5";
}

TEST_F(MatrixCameras, DegenerateProjectionsAreHeld)
{
    const struct
    {
        double fovy, aspect, zNear, zFar;
        double e0, e5, e10, e14;
    } cases[] = {
        {1.0, 1, 1, 3, 57.28996163075943, 57.28996163075943, -2, -3},
        {-20, 2, 1, 3, 57.28996163075943 / 2, 57.28996163075943, -2, -3},
        {180, 1, 1, 3, 0.008726867790758751, 0.008726867790758751, -2, -3},
        {400, 1, 1, 3, 0.008726867790758751, 0.008726867790758751, -2, -3},
        {90, 0, 1, 3, 1e10, 1, -2, -3},
        {90, -1, 1, 3, 1e10, 1, -2, -3},
        {90, 1, 0, 0, 1, 1, -(0.1001 + 0.0001) / 0.1, -(2 * 0.1001 * 0.0001) / 0.1},
        {90, 1, -5, -4, 1, 1, -(0.1001 + 0.0001) / 0.1, -(2 * 0.1001 * 0.0001) / 0.1},
        {90, 1, 5, 2, 1, 1, -(5.1 + 5) / (5.1 - 5), -(2 * 5.1 * 5) / (5.1 - 5)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.fovy << " " << c.aspect << " " << c.zNear << " " << c.zFar);
        port().perspective(c.fovy, c.aspect, c.zNear, c.zFar);
        T4dDblMatrix wanted;
        wanted[0] = c.e0;
        wanted[5] = c.e5;
        wanted[10] = c.e10;
        wanted[11] = -1;
        wanted[14] = c.e14;
        wanted[15] = 0;
        EXPECT_TRUE(isNear(projectionOf(port()), wanted));
    }

    // An empty frustum opens to the right and upwards.
    port().perspective(2, 2, 7, 1, 0, 0);
    const T4dDblMatrix frustum = projectionOf(port());
    EXPECT_NEAR(0.0002 / 1e-6, frustum[0], 1e-4);
    EXPECT_NEAR(0.0002 / 1e-6, frustum[5], 1e-4);
    EXPECT_NEAR(4.000001 / 1e-6, frustum[8], 1e-2);
    EXPECT_NEAR(14.000001 / 1e-6, frustum[9], 1e-2);
    EXPECT_NEAR(-(0.1001 + 0.0001) / 0.1, frustum[10], 1e-12);

    port().ortho(3, 3, 0, 1, 0, 1);
    EXPECT_TRUE(std::isinf(projectionOf(port())[0]));
}

TEST_F(MatrixCameras, LookAtTurnsLikeGluAndPutsTheEyeIntoX)
{
    TmatrixDice dice(5);
    for (int i = 0; i < 40; ++i) {
        const T4dDblVector eye(dice.number(-5, 5), dice.number(-5, 5), dice.number(-5, 5));
        const T4dDblVector centre(dice.number(-5, 5), dice.number(-5, 5), dice.number(-5, 5));
        const double twist = i < 20 ? 0 : dice.number(-3, 3);
        port().lookAt(eye, centre, twist);
        const T4dDblMatrix got = modelViewOf(port());
        const T4dDblMatrix turned = madeByOpenGL([&] {
            glRotated(-twist * 180 / kPi, 0, 0, 1);
            gluLookAt(0, 0, 0, centre.x - eye.x, centre.y - eye.y, centre.z - eye.z, 0, 1, 0);
        });
        T4dDblMatrix wanted = turned;
        for (int column = 0; column < 3; ++column)
            wanted[12 + column] = -eye.z * turned[column];
        EXPECT_TRUE(isNear(got, wanted, 2e-5));
    }
}

TEST_F(MatrixCameras, LookAtStraightUpAndDown)
{
    const struct
    {
        T4dDblVector eye, centre, seen; // seen: the direction that ends up at -z
    } cases[] = {
        {{0, 0, 0}, {0, 4, 0}, {0, 1, 0}},
        {{0, 0, 0}, {0, -4, 0}, {0, -1, 0}},
        {{1, 2, 0}, {1, 2, 0}, {0, -1, 0}},
        {{0, 0, 0}, {1e-11, 4, -1e-11}, {0, 1, 0}},
        {{0, 0, 0}, {1e-9, 0, 0}, {1, 0, 0}},
    };
    for (const auto& c : cases) {
        port().lookAt(c.eye, c.centre, 0);
        const T4dDblVector seen = c.seen * modelViewOf(port());
        EXPECT_NEAR(0, seen.x, 1e-12);
        EXPECT_NEAR(0, seen.y, 1e-12);
        EXPECT_NEAR(-1, seen.z, 1e-12);
    }
    port().lookAt({1, 2, 3}, {1, 2, 10}, 0);
    EXPECT_TRUE(isNear(T4dDblMatrix(modelViewOf(port())), [] {
        T4dDblMatrix m; // half a turn about y takes the translation with it
        m[0] = m[10] = -1;
        m[12] = 3;
        return m;
    }()));
}

TEST_F(MatrixCameras, PixelSpaceHitsPixels)
{
    port().matrixMode(GL_TEXTURE);
    const T4dDblMatrix projection = [] {
        T4dDblMatrix m;
        m[0] = 0.25;
        return m;
    }();
    port().loadProjectionMatrix(projection);
    port().polarView(5, 10, 20, 30);
    const T4dDblMatrix view = modelViewOf(port());

    port().pushOrtho2D();
    EXPECT_EQ(GLenum(GL_TEXTURE), port().matrixMode());
    port().clearColor(kCblack);
    port().clear(GL_COLOR_BUFFER_BIT);
    port().color(kCwhite);
    port().setCurrentContext();
    const struct
    {
        int x, y;
    } points[] = {{0, 0}, {39, 29}, {17, 3}};
    glBegin(GL_POINTS);
    for (const auto& point : points)
        glVertex2i(point.x, point.y);
    glEnd();
    glReadBuffer(GL_FRONT);
    std::vector<unsigned char> pixels(40 * 30);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, 40, 30, GL_RED, GL_UNSIGNED_BYTE, pixels.data());
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool lit = std::any_of(std::begin(points), std::end(points),
                                         [&](const auto& point) { return point.x == x && point.y == y; });
            EXPECT_EQ(lit ? 255 : 0, pixels[std::size_t(y * 40 + x)]) << x << ", " << y;
        }
    }

    port().pushOrtho2D(0, 4, 0, 2);
    T4dDblMatrix wanted;
    wanted[0] = 0.5;
    wanted[5] = 1;
    wanted[10] = -1;
    wanted[12] = wanted[13] = -1;
    EXPECT_TRUE(projectionOf(port()) == wanted) << "not moved to pixel centres";
    EXPECT_TRUE(modelViewOf(port()).isIdentity());
    port().popOrtho2D();
    port().popOrtho2D();
    EXPECT_TRUE(projectionOf(port()) == projection);
    EXPECT_TRUE(modelViewOf(port()) == view);
    EXPECT_EQ(GLenum(GL_TEXTURE), port().matrixMode());
}
