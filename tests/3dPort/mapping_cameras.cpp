// Mapping between world and port: beside GLU's for many cameras, and where GLU has nothing to say.

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"
#include "foundation/Tpoint.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr double kLargestFloat = 3.4028234663852886e38;
constexpr double kPixel = 1e-3;

/** A port without a window: nothing here reaches OpenGL. */
class PortMapping : public testing::Test
{
protected:
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(fRandom); }
    T4dDblPoint pointWithin(double r) { return {between(-r, r), between(-r, r), between(-r, r)}; }
    T4dDblPoint mapped(const T4dDblPoint& p) const
    {
        T4dDblPoint out;
        fPort.worldToPort(p, out);
        return out;
    }

    std::mt19937 fRandom{20};
    T3dPort fPort{nullptr, "testPort", false};
};

void expectNear(const T4dDblPoint& got, double x, double y, double z, double tolerance)
{
    EXPECT_NEAR(got.x, x, tolerance);
    EXPECT_NEAR(got.y, y, tolerance);
    EXPECT_NEAR(got.z, z, tolerance);
    EXPECT_EQ(got.w, 1);
}

} // namespace

TEST_F(PortMapping, AgreesWithGluForManyCameras)
{
    int inside = 0;
    for (int camera = 0; camera < 300; ++camera) {
        const short x0 = short(between(-200, 200));
        const short y0 = short(between(-200, 200));
        const TportRect area(x0, y0, short(x0 + between(1, 3000)), short(y0 + between(1, 3000)));
        fPort.pushViewport(area);
        if (camera % 2)
            fPort.perspective(between(10, 120), between(0.5, 2), between(0.1, 1), between(20, 100));
        else
            fPort.ortho(between(-9, -1), between(1, 9), between(-9, -1), between(1, 9), between(-9, 1), between(2, 90));
        fPort.loadIdentity();
        fPort.translate(between(-1, 1), between(-1, 1), between(-12, -4));
        fPort.rotate(between(-3, 3), between(-3, 3), between(-3, 3));
        fPort.scale(between(0.3, 2), between(0.3, 2), between(0.3, 2));
        T4dDblMatrix modelView, projection;
        fPort.getModelViewMatrix(modelView);
        fPort.getProjectionMatrix(projection);
        const GLint viewport[4] = {area.left, area.bottom, area.width(), area.height()};
        const auto project = [&](const T4dDblPoint& p) {
            T4dDblPoint win;
            gluProject(p.x, p.y, p.z, modelView.data(), projection.data(), viewport, &win.x, &win.y, &win.z);
            return win;
        };

        for (int i = 0; i < 60; ++i) {
            const T4dDblPoint p = pointWithin(8);
            const T4dDblPoint c = p * modelView * projection;
            if (std::abs(c.w) < 0.01)
                continue;
            T4dDblPoint got;
            const int place = fPort.worldToPort(p, got);
            const T4dDblPoint wanted = project(p);
            expectNear(got, wanted.x, wanted.y, wanted.z, kPixel);
            const bool seen = c.w > 0 && std::abs(wanted.z - 0.5) <= 0.5 && wanted.x >= area.left &&
                              wanted.x <= area.right && wanted.y >= area.bottom && wanted.y <= area.top;
            EXPECT_EQ(place, seen ? 0 : 151);
            inside += seen;

            const Tpoint pixel{short(between(area.left, area.right)), short(between(area.bottom, area.top))};
            T4dDblPoint point;
            T4dDblVector dir;
            fPort.portToWorld(pixel, point, dir);
            EXPECT_NEAR(dir.length(), 1, 1e-9);
            T4dDblPoint onNear;
            gluUnProject(pixel.x, pixel.y, 0, modelView.data(), projection.data(), viewport, &onNear.x, &onNear.y,
                         &onNear.z);
            expectNear(point, onNear.x, onNear.y, onNear.z, 1e-6);
            const T4dDblPoint further = project(point + dir * 3);
            EXPECT_NEAR(further.x, pixel.x, kPixel);
            EXPECT_NEAR(further.y, pixel.y, kPixel);
            EXPECT_GT(further.z, 0);

            if (seen) {
                const double depth = between(0, 0.99);
                const T4dDblPoint moved = project(fPort.worldToDepth(p, depth));
                expectNear(moved, wanted.x, wanted.y, depth, kPixel);
            }
        }
    }
    EXPECT_GT(inside, 1000);
}

TEST_F(PortMapping, TellsWhatLiesOutside)
{
    fPort.pushViewport(TportRect(10, 20, 210, 120));
    const double infinite = kLargestFloat;
    const struct
    {
        T4dDblPoint p;
        int place;
        T4dDblPoint out;
    } cases[] = {
        {{1, -1, 1, 1}, 0, {210, 20, 1}},           {{-1, 1, -1, 1}, 0, {10, 120, 0}},
        {{1.5, 0, 0, 1}, 151, {260, 70, 0.5}},      {{0, 0, 0, -1}, 151, {110, 70, 0.5}},
        {{0, 0, 1e-9, 1e-9}, 0, {110, 70, 1}},      {{1, 2, 3, 0}, 150, {infinite, infinite, infinite / 2}},
        {{0, 0, 0, -1e-10}, 150, {infinite, infinite, infinite / 2}},
    };
    for (const auto& c : cases) {
        T4dDblPoint out;
        EXPECT_EQ(fPort.worldToPort(c.p, out), c.place);
        EXPECT_EQ(out, c.out) << c.p.x << " " << c.p.w;
    }
    EXPECT_EQ(fPort.worldToDepth({1, 2, 3, 0}, 0.25), T4dDblPoint(1, 2, 3, 0));
}

TEST_F(PortMapping, ClipsSegments)
{
    fPort.pushViewport(TportRect(0, 0, 200, 100));
    const T4dDblPoint ends[] = {{0, 3, 0}, {0, -3, 0}, {-3, 0, 0}, {3, 0, 0}, {0, 0, 3}, {0, 0, -3}};
    const T4dDblPoint cuts[] = {{100, 100, .5}, {100, 0, .5}, {0, 50, .5}, {200, 50, .5}, {100, 50, 1}, {100, 50, 0}};
    for (short plane = 0; plane < 6; ++plane) {
        const T4dDblPoint& end = ends[plane];
        T4dDblPoint a, b;
        EXPECT_EQ(fPort.worldToPort(T4dDblPoint(), end, a, b), 0);
        EXPECT_EQ(a, T4dDblPoint(100, 50, 0.5));
        expectNear(b, cuts[plane].x, cuts[plane].y, cuts[plane].z, 1e-9);
        EXPECT_EQ(fPort.worldToPort(end, T4dDblPoint(), a, b), 0);
        expectNear(a, cuts[plane].x, cuts[plane].y, cuts[plane].z, 1e-9);
        a = b = T4dDblPoint(7, 7, 7);
        const T4dDblPoint further(end.x + 0.1, end.y + 0.1, end.z + 0.1);
        EXPECT_EQ(fPort.worldToPort(end, further, a, b), -1);
        EXPECT_EQ(a, T4dDblPoint(7, 7, 7));
        EXPECT_EQ(b, T4dDblPoint(7, 7, 7));
        for (short other = 0; other < 6; ++other)
            EXPECT_EQ(fPort.isPointOutside(other, end), other == plane);
    }
    for (const short none : {-1, 6, 32767}) {
        EXPECT_FALSE(fPort.isPointOutside(none, ends[0]));
        EXPECT_EQ(fPort.intersection(none, ends[0], ends[1]), ends[0]);
    }
    fPort.perspective(90, 1, 1, 10);
    T4dDblPoint a, b;
    EXPECT_EQ(fPort.worldToPort({-1, 0, -5}, {5, 0, 5}, a, b), 0) << "one end is behind the eye";
    expectNear(a, 80, 50, mapped({-1, 0, -5}).z, 1e-9);
    EXPECT_NEAR(b.x, 200, 1e-9);
}

TEST_F(PortMapping, FindsTheLengthOfPixels)
{
    fPort.pushViewport(TportRect(0, 0, 800, 600));
    fPort.perspective(50, 800.0 / 600, 0.5, 100);
    fPort.translate(0, 0, -10);
    for (int i = 0; i < 200; ++i) {
        const T4dDblPoint p = pointWithin(1.5);
        const T4dDblVector v(between(0.1, 2), between(0.1, 2), between(-0.2, 0.2));
        const double pixels = between(40, 90);
        const T4dDblPoint from = mapped(p);
        const T4dDblPoint to = mapped(p + v * fPort.screenLengthScale(pixels, p, v));
        EXPECT_NEAR(std::hypot(to.x - from.x, to.y - from.y), pixels, 1.5);
    }
    EXPECT_EQ(fPort.screenLengthScale(50, {0.5, 0, 0}, {0, 0, 0}), 1.0);
    EXPECT_EQ(fPort.screenLengthScale(50, {0, 0, 0}, {0, 0, 1}), 1.0) << "away from the eye";
    fPort.ortho(0, 800, 0, 600, -1, 1);
    fPort.loadIdentity();
    EXPECT_NEAR(fPort.screenLengthScale(30, {100, 100, 0}, {1.5, 0, 0}), 20, 1e-9);
    EXPECT_EQ(fPort.screenLengthScale(0, {100, 100, 0}, {1, 0, 0}), 9.999999747378752e-06);
    EXPECT_NEAR(fPort.screenLengthScale(3.4e38, {100, 100, 0}, {1, 0, 0}), 32767 - 100, 1e-6);
    for (const double odd : {-3.4e38, HUGE_VAL, std::nan("")})
        fPort.screenLengthScale(odd, {100, 100, 0, 0}, {1, 0, 0});
}

TEST_F(PortMapping, AlignsFrames)
{
    const auto row = [this](int i) {
        const T4dDblMatrix m = fPort.matrix();
        return T4dDblVector(m[4 * i], m[4 * i + 1], m[4 * i + 2]);
    };
    fPort.align({0, 1, 1}, {5, 0, 0}, {1, 2, 3});
    const double half = std::sqrt(0.5);
    const T4dDblVector wanted[] = {{0, half, -half}, {0, half, half}, {1, 0, 0}, {1, 2, 3}};
    for (int i = 0; i < 4; ++i)
        EXPECT_LT((row(i) - wanted[i]).length(), 1e-12) << i;
    fPort.loadIdentity();
    fPort.align({0, 0, 2}, {0, 0, 1}, {0, 0, 0});
    EXPECT_EQ(row(0), T4dDblVector());
    EXPECT_EQ(row(1), T4dDblVector());

    for (int i = 0; i < 50; ++i) {
        fPort.loadIdentity();
        fPort.translate(between(-3, 3), between(-3, 3), -8);
        fPort.rotate(between(-3, 3), between(-3, 3), between(-3, 3));
        const T4dDblVector at = row(3);
        fPort.alignToCamera();
        EXPECT_LT((row(3) - at).length(), 1e-9) << "the origin stays";
        EXPECT_LT((row(2) + at.normalised()).length(), 1e-9) << "z leads to the eye";
        EXPECT_NEAR(row(0).y, 0, 1e-9);
        EXPECT_GT(row(1).y, 0);
    }
}

TEST_F(PortMapping, ComputesOnAPortOfNoSize)
{
    fPort.pushPortRect(TportRect());
    T4dDblPoint point;
    T4dDblVector dir;
    fPort.portToWorld(Tpoint{3, 4}, point, dir);
    fPort.screenLengthScale(10, {0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(mapped({0.5, 0.5, 0}), T4dDblPoint(0, 0, 0.5));
    for (const Tpoint p : {Tpoint{5, 7}, Tpoint{-32768, -32768}, Tpoint{32767, 32767}})
        EXPECT_EQ(fPort.portToWindow(fPort.windowToPort(p)), p);
}
