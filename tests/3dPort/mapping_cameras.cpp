// Mapping between world and port: beside GLU's for many cameras, and where GLU has nothing to say.

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace {

/** A port without a window: nothing here reaches OpenGL. */
class PortMapping : public testing::Test
{
protected:
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(fRandom); }
    T4dDblPoint pointWithin(double r) { return {between(-r, r), between(-r, r), between(-r, r)}; }

    std::mt19937 fRandom{20};
    T3dPort fPort{nullptr, "testPort", false};
};

void expectNear(const T4dDblPoint& got, const T4dDblPoint& wanted, double tolerance = 1e-3)
{
    EXPECT_TRUE((got - wanted).length() <= tolerance && got.w == 1)
        << got.x << " " << got.y << " " << got.z << ", not " << wanted.x << " " << wanted.y << " " << wanted.z;
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
        T4dDblMatrix view, projection;
        fPort.getModelViewMatrix(view);
        fPort.getProjectionMatrix(projection);
        const GLint viewport[4] = {area.left, area.bottom, area.width(), area.height()};
        const auto mapped = [&](auto& map, const T4dDblPoint& p) {
            T4dDblPoint q;
            map(p.x, p.y, p.z, view.data(), projection.data(), viewport, &q.x, &q.y, &q.z);
            return q;
        };
        for (int i = 0; i < 60; ++i) {
            const T4dDblPoint p = pointWithin(8);
            const double w = (p * view * projection).w;
            if (std::abs(w) < 0.01)
                continue;
            T4dDblPoint got;
            const int place = fPort.worldToPort(p, got);
            const T4dDblPoint wanted = mapped(gluProject, p);
            expectNear(got, wanted);
            const bool seen = w > 0 && std::abs(wanted.z - 0.5) <= 0.5 && wanted.x >= area.left &&
                              wanted.x <= area.right && wanted.y >= area.bottom && wanted.y <= area.top;
            EXPECT_EQ(place, seen ? 0 : 151);
            inside += seen;
            if (seen)
                expectNear(mapped(gluProject, fPort.worldToDepth(p, 0.3)), {wanted.x, wanted.y, 0.3});

            const Tpoint pixel{short(between(area.left, area.right)), short(between(area.bottom, area.top))};
            T4dDblPoint point;
            T4dDblVector dir;
            fPort.portToWorld(pixel, point, dir);
            const T4dDblPoint onNear = mapped(gluUnProject, {double(pixel.x), double(pixel.y), 0});
            const T4dDblPoint onFar = mapped(gluUnProject, {double(pixel.x), double(pixel.y), 1});
            expectNear(point, onNear, 1e-6);
            EXPECT_LT((dir - (onFar - onNear).normalised()).length(), 1e-6);
        }
    }
    EXPECT_GT(inside, 1000);
}

TEST_F(PortMapping, TellsWhatLiesOutside)
{
    fPort.pushViewport(TportRect(10, 20, 210, 120));
    constexpr double kLargest = 3.4028234663852886e38;
    const std::tuple<T4dDblPoint, int, T4dDblPoint> cases[] = {
        {{1, -1, 1, 1}, 0, {210, 20, 1}},      {{-1, 1, -1, 1}, 0, {10, 120, 0}},
        {{1.5, 0, 0, 1}, 151, {260, 70, 0.5}}, {{0, 0, 0, -1}, 151, {110, 70, 0.5}},
        {{0, 0, 1e-9, 1e-9}, 0, {110, 70, 1}}, {{0, 0, 0, -1e-10}, 150, {kLargest, kLargest, kLargest / 2}}};
    for (const auto& [p, place, wanted] : cases) {
        T4dDblPoint out;
        EXPECT_EQ(fPort.worldToPort(p, out), place);
        EXPECT_EQ(out, wanted) << p.x << " " << p.w;
    }
    EXPECT_EQ(fPort.worldToDepth({1, 2, 3, 0}, 0.25), T4dDblPoint(1, 2, 3, 0));
}

TEST_F(PortMapping, ClipsSegments)
{
    fPort.pushViewport(TportRect(0, 0, 200, 100));
    const T4dDblPoint ends[] = {{0, 3, 0}, {0, -3, 0}, {-3, 0, 0}, {3, 0, 0}, {0, 0, 3}, {0, 0, -3}};
    const T4dDblPoint cuts[] = {{100, 100, .5}, {100, 0, .5}, {0, 50, .5}, {200, 50, .5}, {100, 50, 1}, {100, 50, 0}};
    T4dDblPoint a, b;
    for (short plane = 0; plane < 6; ++plane) {
        const T4dDblPoint& end = ends[plane];
        EXPECT_EQ(fPort.worldToPort(T4dDblPoint(), end, a, b), 0);
        EXPECT_EQ(a, T4dDblPoint(100, 50, 0.5));
        expectNear(b, cuts[plane], 1e-9);
        EXPECT_EQ(fPort.worldToPort(end, T4dDblPoint(), a, b), 0);
        expectNear(a, cuts[plane], 1e-9);
        b = a;
        EXPECT_EQ(fPort.worldToPort(end, end + T4dDblVector(0.1, 0.1, 0.1), a, b), -1);
        EXPECT_EQ(a, b) << "left alone";
    }
}

TEST_F(PortMapping, FindsTheLengthOfPixels)
{
    fPort.pushViewport(TportRect(0, 0, 800, 600));
    fPort.perspective(50, 800.0 / 600, 0.5, 100);
    fPort.translate(0, 0, -10);
    for (int i = 0; i < 200; ++i) {
        const T4dDblPoint p = pointWithin(1.5);
        const T4dDblVector v(between(0.1, 2), between(0.1, 2), between(-0.2, 0.2));
        T4dDblPoint from, to;
        fPort.worldToPort(p, from);
        fPort.worldToPort(p + v * fPort.screenLengthScale(70, p, v), to);
        EXPECT_NEAR(std::hypot(to.x - from.x, to.y - from.y), 70, 1.5);
        EXPECT_EQ(fPort.screenLengthScale(50, p, p - T4dDblPoint(0, 0, 10)), 1.0) << "away from the eye";
    }
    fPort.ortho(0, 800, 0, 600, -1, 1);
    fPort.loadIdentity();
    const std::tuple<double, T4dDblVector, double> cases[] = {{30.5, {1.5, 0, 0}, 20},
                                                              {50.5, {3, 0, -8}, 10}, // of 3 pixels and a depth of 4
                                                              {50, {0, 0, 0}, 1},
                                                              {0, {1, 0, 0}, double(1e-5f)},
                                                              {3.4e38, {1, 0, 0}, 32767 - 100}};
    for (const auto& [pixels, v, scale] : cases)
        EXPECT_NEAR(fPort.screenLengthScale(pixels, {100, 100, 0}, v), scale, 1e-9 * scale);
    for (const double odd : {-3.4e38, HUGE_VAL, std::nan("")})
        fPort.screenLengthScale(odd, {100, 100, 0, 0}, {1, 0, 0});
    fPort.pushViewport(TportRect()); // no size
    fPort.screenLengthScale(10, {0, 0, 0}, {1, 0, 0});
}

TEST_F(PortMapping, AlignsFrames)
{
    const auto row = [this](int i) {
        const T4dDblMatrix m = fPort.matrix();
        return T4dDblVector(m[4 * i], m[4 * i + 1], m[4 * i + 2]);
    };
    fPort.align({0, 0, 2}, {0, 0, 1}, {1, 2, 3});
    EXPECT_EQ(row(1), T4dDblVector()) << "up along z leaves no y axis";
    for (int i = 0; i < 50; ++i) {
        const T4dDblVector at(between(-3, 3), between(-3, 3), -8);
        fPort.loadIdentity();
        fPort.translate(at);
        fPort.rotate(between(-3, 3), between(-3, 3), between(-3, 3));
        fPort.alignToCamera();
        EXPECT_LT((row(3) - at).length(), 1e-9) << "the origin stays";
        EXPECT_LT((row(2) + at.normalised()).length(), 1e-9) << "z leads to the eye";
        EXPECT_NEAR(row(0).y, 0, 1e-9);
        EXPECT_GT(row(1).y, 0);
    }
}
