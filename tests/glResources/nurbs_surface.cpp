// NURBS surfaces: what GLU is given, and what it draws.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TgluNurbsObject.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace {

struct GivenSurface
{
    GLUnurbs* renderer = nullptr;
    std::vector<float> sKnots;
    std::vector<float> tKnots;
    int sStride = 0;
    int tStride = 0;
    std::vector<float> control;
    int sOrder = 0;
    int tOrder = 0;
    GLenum type = 0;
};

std::vector<GivenSurface>* gGiven = nullptr;

} // namespace

// Stands before GLU's own.
extern "C" void gluNurbsSurface(GLUnurbs* renderer, GLint sKnotCount, GLfloat* sKnots, GLint tKnotCount,
                                GLfloat* tKnots, GLint sStride, GLint tStride, GLfloat* control, GLint sOrder,
                                GLint tOrder, GLenum type)
{
    if (gGiven)
        gGiven->push_back({renderer, std::vector<float>(sKnots, sKnots + sKnotCount),
                           std::vector<float>(tKnots, tKnots + tKnotCount), sStride, tStride,
                           std::vector<float>(control, control + std::ptrdiff_t(sKnotCount) * tKnotCount * 3), sOrder,
                           tOrder, type});
    static const auto real = reinterpret_cast<decltype(&gluNurbsSurface)>(dlsym(RTLD_NEXT, "gluNurbsSurface"));
    real(renderer, sKnotCount, sKnots, tKnotCount, tKnots, sStride, tStride, control, sOrder, tOrder, type);
}

namespace {

constexpr int kWidth = 80;
constexpr int kHeight = 60;
constexpr int kOrder = 4;
constexpr int kKnots = 2 * kOrder;
constexpr int kPointStride = 3;
constexpr int kRowStride = kKnots * kPointStride;

/** One cubic patch. */
struct Patch
{
    double knots[kKnots] = {0, 0, 0, 0, 1, 1, 1, 1};
    std::vector<double> control = std::vector<double>(kKnots * kRowStride, 0.0);

    double* point(int s, int t) { return &control[std::size_t(s * kRowStride + t * kPointStride)]; }
    void draw(const TgluNurbsObject& nurbs, int sStride = kRowStride, int tStride = kPointStride,
              int sOrder = kOrder, int tOrder = kOrder) const
    {
        nurbs.nurbsSurface(kKnots, knots, kKnots, knots, sStride, tStride, control.data(), sOrder, tOrder,
                           TgluNurbsObject::kVertex3);
    }
};

/** From x = 10 to 70, and from y = 10 up to an arch. */
constexpr double kLeft = 10;
constexpr double kRight = 70;
constexpr double kBottom = 10;
constexpr double kArch[kOrder] = {10, 45, 45, 10}; ///< height over the bottom, Bezier coefficients

Patch archPatch()
{
    Patch patch;
    for (int s = 0; s < kOrder; ++s) {
        for (int t = 0; t < kOrder; ++t) {
            double* p = patch.point(s, t);
            p[0] = kLeft + (kRight - kLeft) * s / 3;
            p[1] = kBottom + kArch[s] * t / 3;
            p[2] = 0;
        }
    }
    return patch;
}

double archAt(double x)
{
    const double u = (x - kLeft) / (kRight - kLeft);
    const double v = 1 - u;
    return kBottom + v * v * v * kArch[0] + 3 * u * v * v * kArch[1] + 3 * u * u * v * kArch[2] + u * u * u * kArch[3];
}

/** How far inside the arch a pixel lies, roughly; negative outside. */
double insideBy(int x, int y)
{
    return std::min({x + 0.5 - kLeft, kRight - x - 0.5, y + 0.5 - kBottom, archAt(x + 0.5) - y - 0.5});
}

class Nurbs : public testing::Test
{
protected:
    Nurbs() : fWindow(kWidth, kHeight)
    {
        EXPECT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    std::vector<bool> drawn(const std::function<void()>& draw)
    {
        T3dPort& p = port();
        p.clearColor(kCblack);
        p.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        p.depthTest(false);
        p.color(kCwhite);
        p.ortho(0, kWidth, 0, kHeight);
        p.loadIdentity();
        p.setCurrentContext();
        draw();
        EXPECT_EQ(TstringArray(), p.stateDifferences());
        std::vector<GLubyte> green(kWidth * kHeight);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, kWidth, kHeight, GL_GREEN, GL_UNSIGNED_BYTE, green.data());
        return std::vector<bool>(green.begin(), green.end());
    }

    PortWindow<> fWindow;
};

/** A renderer that is not left to the end of the process. */
class PassingNurbs : public TgluNurbsObject
{
public:
    explicit PassingNurbs(TnurbsFillMode mode) : TgluNurbsObject(mode)
    {
        gluNurbsProperty(renderer(), GLU_SAMPLING_TOLERANCE, 4);
    }
    ~PassingNurbs() { gluDeleteNurbsRenderer(renderer()); }
};

} // namespace

TEST_F(Nurbs, AllValuesReachGluInSinglePrecision)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    Patch patch;
    for (std::size_t i = 0; i < patch.control.size(); ++i)
        patch.control[i] = 1.0 / 3 + double(i);
    const double tKnots[10] = {0, 0, 0, 0, 0.25, 0.5, 1, 1, 1, 1};
    std::vector<double> control(kKnots * 10 * 3);
    for (std::size_t i = 0; i < control.size(); ++i)
        control[i] = -1.0 / 7 * double(i);

    std::vector<GivenSurface> given;
    gGiven = &given;
    nurbs.begin();
    patch.draw(nurbs);
    nurbs.end();
    nurbs.begin();
    nurbs.nurbsSurface(kKnots, patch.knots, 10, tKnots, 30, 3, control.data(), 4, 4, TgluNurbsObject::kNormal);
    nurbs.end();
    gGiven = nullptr;

    ASSERT_EQ(2u, given.size());
    const auto narrowed = [](const std::vector<double>& values) {
        return std::vector<float>(values.begin(), values.end());
    };
    EXPECT_EQ(192u, given[0].control.size());
    EXPECT_EQ(narrowed(patch.control), given[0].control);
    EXPECT_EQ((std::vector<float>{0, 0, 0, 0, 1, 1, 1, 1}), given[0].sKnots);
    EXPECT_EQ(kRowStride, given[0].sStride);
    EXPECT_EQ(kPointStride, given[0].tStride);
    EXPECT_EQ(GLenum(GL_MAP2_VERTEX_3), given[0].type);
    EXPECT_EQ(nurbs.renderer(), given[0].renderer);
    EXPECT_EQ(narrowed(control), given[1].control);
    EXPECT_EQ((std::vector<float>{0, 0, 0, 0, 0.25f, 0.5f, 1, 1, 1, 1}), given[1].tKnots);
    EXPECT_EQ(30, given[1].sStride);
    EXPECT_EQ(GLenum(GL_MAP2_NORMAL), given[1].type);
}

TEST_F(Nurbs, AFilledPatchCoversItsPixels)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    const Patch patch = archPatch();
    for (int round = 0; round < 2; ++round) {
        const std::vector<bool> seen = drawn([&] {
            nurbs.begin();
            patch.draw(nurbs);
            nurbs.end();
        });
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const double inside = insideBy(x, y);
                if (std::abs(inside) > 1.5) {
                    ASSERT_EQ(inside > 0, seen[std::size_t(y * kWidth + x)]) << x << ' ' << y;
                }
            }
        }
    }
}

TEST_F(Nurbs, AnOutlineLeavesTheInsideOpen)
{
    PassingNurbs nurbs(TgluNurbsObject::kOutlinePatch);
    const Patch patch = archPatch();
    const std::vector<bool> seen = drawn([&] {
        nurbs.begin();
        patch.draw(nurbs);
        nurbs.end();
    });
    int onEdge = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool lit = seen[std::size_t(y * kWidth + x)];
            // The arch is steep at its sides: the height over a pixel is no measure there.
            if (insideBy(x, y) > 4) {
                EXPECT_FALSE(lit) << x << ' ' << y;
            }
            onEdge += lit;
        }
    }
    EXPECT_GT(onEdge, 120);
}

TEST_F(Nurbs, TheRendererTakesTrimCurves)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    Patch patch;
    for (int s = 0; s < kOrder; ++s) {
        for (int t = 0; t < kOrder; ++t) {
            patch.point(s, t)[0] = 20.0 * s;
            patch.point(s, t)[1] = 15.0 * t;
        }
    }
    // The left half, anticlockwise in the parameters.
    GLfloat loop[5][2] = {{0, 0}, {0.5f, 0}, {0.5f, 1}, {0, 1}, {0, 0}};
    const std::vector<bool> seen = drawn([&] {
        nurbs.begin();
        patch.draw(nurbs);
        gluBeginTrim(nurbs.renderer());
        gluPwlCurve(nurbs.renderer(), 5, &loop[0][0], 2, GLU_MAP1_TRIM_2);
        gluEndTrim(nurbs.renderer());
        nurbs.end();
    });
    EXPECT_TRUE(seen[20 * kWidth + 10]);
    EXPECT_TRUE(seen[20 * kWidth + 28]);
    EXPECT_FALSE(seen[20 * kWidth + 32]);
    EXPECT_FALSE(seen[20 * kWidth + 50]);
}

TEST_F(Nurbs, AssigningSharesNoRenderer)
{
    PassingNurbs first(TgluNurbsObject::kFill);
    PassingNurbs second(TgluNurbsObject::kOutlinePolygon);
    GLUnurbs* const before = second.renderer();
    static_cast<TgluNurbsObject&>(second) = first;
    EXPECT_EQ(before, second.renderer());
    EXPECT_NE(first.renderer(), second.renderer());
    GLfloat mode = 0;
    gluGetNurbsProperty(second.renderer(), GLU_DISPLAY_MODE, &mode);
    EXPECT_EQ(GLfloat(GLU_OUTLINE_POLYGON), mode);
    gluGetNurbsProperty(first.renderer(), GLU_DISPLAY_MODE, &mode);
    EXPECT_EQ(GLfloat(GLU_FILL), mode);
}

TEST_F(Nurbs, WhatCannotBeReadIsNotGiven)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    const Patch patch = archPatch();
    const double* knots = patch.knots;
    const double* control = patch.control.data();
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    std::vector<GivenSurface> given;
    gGiven = &given;
    nurbs.begin();
    const auto surface = [&](int sCount, const double* s, int tCount, const double* t, const double* points) {
        nurbs.nurbsSurface(sCount, s, tCount, t, kRowStride, kPointStride, points, kOrder, kOrder,
                           TgluNurbsObject::kVertex3);
    };
    surface(kKnots, nullptr, kKnots, knots, control);
    surface(kKnots, knots, kKnots, nullptr, control);
    surface(kKnots, knots, kKnots, knots, nullptr);
    surface(0, knots, kKnots, knots, control);
    surface(kKnots, knots, -1, knots, control);
    surface(kLeast, knots, kLeast, knots, control);
    // Strides and orders that would take GLU out of the converted points.
    patch.draw(nurbs, 1000, kPointStride);
    patch.draw(nurbs, kRowStride, 1000);
    patch.draw(nurbs, -kRowStride, kPointStride);
    patch.draw(nurbs, kRowStride, -1);
    patch.draw(nurbs, kMost, kMost);
    patch.draw(nurbs, kMost, kMost, kLeast, kLeast);
    patch.draw(nurbs, kRowStride, kPointStride, kKnots, kOrder);
    patch.draw(nurbs, kRowStride, kPointStride, kMost, kOrder);
    EXPECT_TRUE(given.empty());
    // Four values a point need more than the three there are.
    nurbs.nurbsSurface(kKnots, knots, kKnots, knots, 60, 4, control, kOrder, kOrder, TgluNurbsObject::kVertex4);
    EXPECT_TRUE(given.empty());
    nurbs.nurbsSurface(kKnots, knots, kKnots, knots, 16, 4, control, kOrder, kOrder, TgluNurbsObject::kVertex4);
    EXPECT_EQ(1u, given.size());
    nurbs.end();
    gGiven = nullptr;
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(Nurbs, GluRefusesWhatIsNoSurface)
{
    // GLU says so through its error callback; nothing is drawn.
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    Patch falling = archPatch();
    for (int i = 0; i < kKnots; ++i)
        falling.knots[i] = -i;
    const std::vector<bool> seen = drawn([&] {
        nurbs.begin();
        falling.draw(nurbs);
        nurbs.end();
        nurbs.begin();
        archPatch().draw(nurbs, kRowStride, kPointStride, 0, kOrder);
        nurbs.end();
        nurbs.end(); // one too many
    });
    EXPECT_EQ(std::vector<bool>(kWidth * kHeight, false), seen);
}

TEST_F(Nurbs, NumbersThatAreNoneComeToAnEnd)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, 1e30}) {
        Patch moved = archPatch();
        moved.point(1, 1)[0] = bad;
        Patch torn = archPatch();
        torn.knots[5] = bad;
        for (const Patch& patch : {moved, torn}) {
            drawn([&] {
                nurbs.begin();
                patch.draw(nurbs);
                nurbs.end();
            });
        }
    }
}

TEST(NurbsWithoutAContext, DoNoHarm)
{
    PassingNurbs nurbs(TgluNurbsObject::kFill);
    nurbs.begin();
    archPatch().draw(nurbs);
    nurbs.end();
    nurbs.apply();
}
