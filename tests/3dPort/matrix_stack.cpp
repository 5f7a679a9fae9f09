// The matrix stacks: depth, products, and what a change invalidates.

#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "3dPort/matrix_support.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"
#include "foundation/TbatchGlobals.h"
#include "foundation/Tquaternion.h"
#include "foundation/TrotateXYZ.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr std::uint32_t kTransform = 0x1;
constexpr std::uint32_t kMainLoaded = 0xC;
constexpr std::uint32_t kSecondLoaded = 0x30;

T4dDblMatrix marked(double level)
{
    T4dDblMatrix m;
    m[12] = level;
    return m;
}

/** A stack with the marks 1 to @p depth, and nothing else. */
void fill(T3dPort& port, int depth)
{
    for (int level = 0; level < 16; ++level)
        port.popMatrix();
    port.loadMatrix(marked(1));
    for (int level = 2; level <= depth; ++level)
        port.pushLoadMatrix(marked(level));
}

/** Everything that can be loaded or computed is. */
void validate(T3dPort& port)
{
    T4dDblMatrix m;
    port.getTransformMatrix(m);
    for (const T3dPort::TdrawingPlanes planes : {T3dPort::kSecondPlanes, T3dPort::kMainPlanes}) {
        port.setDrawingPlanes(planes);
        port.setCurrentContext();
    }
    ASSERT_EQ(kTransform | kMainLoaded | kSecondLoaded, T3dPortProbe::matrixValid(port));
}

} // namespace

TEST(MatrixStack, PopsAllThatIsAskedForOrNothing)
{
    const struct
    {
        int depth;
        unsigned pops;
        double top; // the mark left on top
    } cases[] = {{1, 1, 1}, {1, 0, 1}, {1, 7, 1}, {2, 1, 1}, {3, 3, 3}, {3, 2, 1},
                 {3, 1, 2}, {3, 0, 3}, {3, 4000000000u, 3}, {9, 8, 1}};
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW, GL_MODELVIEW1_EXT}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << c.depth << " deep, pop " << c.pops << ", mode " << mode);
            port.matrixMode(mode);
            fill(port, c.depth);
            validate(port);
            const std::uint32_t before = T3dPortProbe::matrixValid(port);
            port.popMatrix(c.pops);
            EXPECT_EQ(c.top, port.matrix()[12]);
            EXPECT_EQ(c.top == c.depth, T3dPortProbe::matrixValid(port) == before);
        }
    }
}

TEST(MatrixStack, KeepsItsTopThroughGrowth)
{
    constexpr int kLevels = 300;
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        T3dPort port(nullptr, "stack", false);
        port.matrixMode(mode);
        fill(port, kLevels);
        for (int level = kLevels; level > 0; --level) {
            T4dDblMatrix m;
            port.getMatrix(m);
            ASSERT_EQ(level, m[12]);
            port.translate(0, 0, 1);
            ASSERT_EQ(1, port.matrix()[14]);
            port.popMatrix();
        }
        EXPECT_EQ(1, port.matrix()[12]);
    }
}

TEST(MatrixStack, OtherModesSelectNothing)
{
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.matrixMode(GL_PROJECTION);
    fill(port, 3);
    port.matrixMode(GL_MODELVIEW);
    fill(port, 3);
    validate(port);
    const std::uint32_t before = T3dPortProbe::matrixValid(port);

    for (const GLenum mode : {GLenum(GL_TEXTURE), GLenum(GL_COLOR), GLenum(0)}) {
        port.matrixMode(mode);
        port.pushMatrix();
        port.popMatrix();
        port.popMatrix(2);
        port.loadMatrix(marked(50));
        port.multMatrix(marked(50));
        port.loadIdentity();
        port.pushLoadMatrix(marked(50));
        port.stackMultMatrix(marked(50));
        port.pushMultMatrix(marked(50));
        port.scale(2, 2, 2);
        port.translate(1, 1, 1);
        port.translate(T4dDblVector(1, 1, 1));
        port.rotate(1, 2, 3);
        port.rotate(Tquaternion());
        port.unSquishMatrix(TxformMatrix::kUnSquishShear);
        EXPECT_TRUE(port.matrix().isIdentity());
        T4dDblMatrix untouched = marked(99);
        port.getMatrix(untouched);
        EXPECT_EQ(99, untouched[12]);
    }
    EXPECT_EQ(before, T3dPortProbe::matrixValid(port));
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        port.matrixMode(mode);
        EXPECT_TRUE(port.matrix() == marked(3));
        port.popMatrix(2);
        EXPECT_TRUE(port.matrix() == marked(1));
    }
}

TEST(MatrixStack, ChangesInvalidateTheirOwnStackInBothPlanes)
{
    enum { kByMode, kAlwaysProjection, kAlwaysModelView, kNever };
    const struct
    {
        const char* name;
        int invalidates;
        std::function<void(T3dPort&)> run;
    } operations[] = {
        {"pushMatrix", kNever, [](T3dPort& p) { p.pushMatrix(); }},
        {"popMatrix", kByMode, [](T3dPort& p) { p.popMatrix(); }},
        {"popMatrix(2)", kByMode, [](T3dPort& p) { p.popMatrix(2); }},
        {"loadMatrix", kByMode, [](T3dPort& p) { p.loadMatrix(marked(4)); }},
        {"multMatrix", kByMode, [](T3dPort& p) { p.multMatrix(marked(4)); }},
        {"loadIdentity", kByMode, [](T3dPort& p) { p.loadIdentity(); }},
        {"pushLoadMatrix", kByMode, [](T3dPort& p) { p.pushLoadMatrix(marked(4)); }},
        {"stackMultMatrix", kByMode, [](T3dPort& p) { p.stackMultMatrix(marked(4)); }},
        {"pushMultMatrix", kByMode, [](T3dPort& p) { p.pushMultMatrix(marked(4)); }},
        {"scale", kByMode, [](T3dPort& p) { p.scale(1, 2, 3); }},
        {"translate", kByMode, [](T3dPort& p) { p.translate(1, 2, 3); }},
        {"rotate", kByMode, [](T3dPort& p) { p.rotate(1, 2, 3); }},
        {"unSquishMatrix", kByMode, [](T3dPort& p) { p.unSquishMatrix(TxformMatrix::kUnSquishShear); }},
        {"loadProjectionMatrix", kAlwaysProjection, [](T3dPort& p) { p.loadProjectionMatrix(marked(4)); }},
        {"perspective", kAlwaysProjection, [](T3dPort& p) { p.perspective(40, 1, 1, 10); }},
        {"frustum", kAlwaysProjection, [](T3dPort& p) { p.perspective(-1, 1, -1, 1, 1, 10); }},
        {"ortho", kAlwaysProjection, [](T3dPort& p) { p.ortho(-1, 1, -1, 1, -1, 1); }},
        {"ortho of four", kAlwaysProjection, [](T3dPort& p) { p.ortho(-1, 1, -1, 1); }},
        {"polarView", kAlwaysModelView, [](T3dPort& p) { p.polarView(5, 10, 20, 30); }},
        {"lookAt", kAlwaysModelView, [](T3dPort& p) { p.lookAt({1, 2, 3}, {0, 0, 0}, 0); }},
        {"beginProjMatrixOverride", kNever, [](T3dPort& p) { p.beginProjMatrixOverride(marked(4)); }},
        {"endProjMatrixOverride", kNever, [](T3dPort& p) { p.endProjMatrixOverride(); }},
    };
    constexpr std::uint32_t kAll = kTransform | kMainLoaded | kSecondLoaded;
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW, GL_MODELVIEW1_EXT}) {
        for (const auto& operation : operations) {
            SCOPED_TRACE(testing::Message() << operation.name << ", mode " << mode);
            port.matrixMode(mode);
            fill(port, 3);
            validate(port);
            operation.run(port);
            const bool projection = operation.invalidates == kAlwaysProjection ||
                                    (operation.invalidates == kByMode && mode == GL_PROJECTION);
            const std::uint32_t left = operation.invalidates == kNever ? kAll
                                       : projection                    ? kAll & ~0x2Bu
                                                                       : kAll & ~0x17u;
            EXPECT_EQ(left, T3dPortProbe::matrixValid(port));
            EXPECT_EQ(mode, port.matrixMode());
        }
    }
}

TEST(MatrixStack, MultipliesFromTheLeft)
{
    TmatrixDice dice(11);
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        for (int i = 0; i < 50; ++i) {
            const T4dDblMatrix start = dice.affine();
            const T4dDblMatrix m = dice.affine();
            T3dPort port(nullptr, "products", false);
            port.matrixMode(mode);

            port.loadMatrix(start);
            port.stackMultMatrix(m);
            EXPECT_TRUE(port.matrix() == start) << "nothing lies below";
            port.multMatrix(m);
            EXPECT_TRUE(isNear(port.matrix(), m * start));

            port.loadMatrix(start);
            port.pushMultMatrix(m);
            EXPECT_TRUE(isNear(port.matrix(), m * start));
            port.loadMatrix(dice.affine());
            port.stackMultMatrix(m);
            EXPECT_TRUE(isNear(port.matrix(), m * start)) << "the top before has no part in it";
            port.popMatrix();
            EXPECT_TRUE(port.matrix() == start);

            const TrotateXYZ turn{dice.number(-4, 4), dice.number(-4, 4), dice.number(-4, 4), 0};
            port.rotate(turn.x, turn.y, turn.z);
            EXPECT_TRUE(isNear(port.matrix(), static_cast<T4dDblMatrix>(turn) * start));
        }
    }
}

TEST(MatrixStack, ModelViewProductsAreAffineUnlessTheHostWantsThemFull)
{
    TmatrixDice dice(12);
    const T4dDblMatrix start = dice.full();
    const T4dDblMatrix m = dice.full();
    const std::function<void(T3dPort&)> operations[] = {
        [&](T3dPort& p) { p.multMatrix(m); },
        [&](T3dPort& p) { p.pushMultMatrix(m); },
        [&](T3dPort& p) {
            p.pushMatrix();
            p.stackMultMatrix(m);
        },
    };
    for (const bool full : {false, true}) {
        TbatchGlobals::fUseNonAffineXformCalculations = full;
        for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
            for (const auto& operation : operations) {
                T3dPort port(nullptr, "affine", false);
                port.matrixMode(mode);
                port.loadMatrix(start);
                operation(port);
                T4dDblMatrix wanted = m * start;
                if (!full && mode == GL_MODELVIEW)
                    wanted.affineProduct(m, start);
                EXPECT_TRUE(isNear(port.matrix(), wanted));
            }
        }
    }
    TbatchGlobals::fUseNonAffineXformCalculations = false;
}

TEST(MatrixStack, UnSquishLeavesUnitAxes)
{
    T3dPort port(nullptr, "unsquish", false);
    port.rotate(0.3, -0.8, 1.2);
    port.scale(2, 0.25, 7);
    port.translate(3, 4, 5);
    port.unSquishMatrix(TxformMatrix::kUnSquishShear);
    const T4dDblMatrix m = port.matrix();
    for (int row = 0; row < 3; ++row) {
        const T4dDblVector axis(m[4 * row], m[4 * row + 1], m[4 * row + 2]);
        EXPECT_NEAR(1, axis.length(), 1e-12);
    }
}

TEST(MatrixStack, TheTransformFollowsBothStacks)
{
    TmatrixDice dice(13);
    T3dPort port(nullptr, "transform", false);
    for (int i = 0; i < 20; ++i) {
        const T4dDblMatrix view = dice.affine();
        const T4dDblMatrix projection = dice.full();
        port.matrixMode(GL_MODELVIEW);
        port.loadMatrix(view);
        T4dDblMatrix got;
        port.getTransformMatrix(got);
        port.loadProjectionMatrix(projection);
        port.getTransformMatrix(got);
        EXPECT_TRUE(isNear(got, view * projection));
        port.getTransformMatrix(got);
        EXPECT_TRUE(isNear(got, view * projection));
    }
}
