// NURBS surfaces: what GLU is given, and what it draws.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TgluNurbsObject.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

struct GivenSurface
{
    std::vector<float> sKnots;
    std::vector<float> control;
};

std::vector<GivenSurface> gGiven;

} // namespace

// Stands before GLU's own.
extern "C" void gluNurbsSurface(GLUnurbs* renderer, GLint sKnotCount, GLfloat* sKnots, GLint tKnotCount,
                                GLfloat* tKnots, GLint sStride, GLint tStride, GLfloat* control, GLint sOrder,
                                GLint tOrder, GLenum type)
{
    gGiven.push_back({std::vector<float>(sKnots, sKnots + sKnotCount),
                      std::vector<float>(control, control + std::ptrdiff_t(sKnotCount) * tKnotCount * 3)});
    static const auto real = reinterpret_cast<decltype(&gluNurbsSurface)>(dlsym(RTLD_NEXT, "gluNurbsSurface"));
    real(renderer, sKnotCount, sKnots, tKnotCount, tKnots, sStride, tStride, control, sOrder, tOrder, type);
}

namespace {

constexpr int kWidth = 80;
constexpr int kHeight = 60;
constexpr int kOrder = 4;
constexpr int kKnots = 2 * kOrder;
constexpr int kRowStride = 3 * kKnots;
constexpr double kKnotValues[kKnots] = {0, 0, 0, 0, 1, 1, 1, 1};

class Nurbs : public testing::Test
{
protected:
    Nurbs() : fWindow(kWidth, kHeight), fControl(kKnots * kRowStride, 0.0)
    {
        EXPECT_TRUE(fWindow.show());
        fWindow.port().setCurrentContext();
        gGiven.clear();
        // One cubic patch from (10, 10) to (70, 40).
        for (int s = 0; s < kOrder; ++s) {
            for (int t = 0; t < kOrder; ++t) {
                fControl[std::size_t(s * kRowStride + t * 3)] = 10 + 20 * s;
                fControl[std::size_t(s * kRowStride + t * 3 + 1)] = 10 + 10 * t;
            }
        }
    }

    ~Nurbs() override { gluDeleteNurbsRenderer(fNurbs.renderer()); }

    void draw(int sStride = kRowStride, int tStride = 3, int sOrder = kOrder)
    {
        fNurbs.nurbsSurface(kKnots, kKnotValues, kKnots, kKnotValues, sStride, tStride, fControl.data(), sOrder, kOrder,
                            TgluNurbsObject::kVertex3);
    }

    PortWindow<> fWindow;
    TgluNurbsObject fNurbs{TgluNurbsObject::kFill};
    std::vector<double> fControl;
};

} // namespace

TEST_F(Nurbs, APatchReachesGluInSinglePrecisionAndCoversItsPixels)
{
    T3dPort& port = fWindow.port();
    port.clearColor(kCblack);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.depthTest(false);
    port.color(kCwhite);
    port.ortho(0, kWidth, 0, kHeight);
    port.loadIdentity();
    port.setCurrentContext();
    fControl[5] = 1.0 / 3;
    fNurbs.begin();
    draw();
    fNurbs.end();
    EXPECT_EQ(TstringArray(), port.stateDifferences());
    ASSERT_EQ(1u, gGiven.size());
    EXPECT_EQ((std::vector<float>{0, 0, 0, 0, 1, 1, 1, 1}), gGiven[0].sKnots);
    EXPECT_EQ(std::vector<float>(fControl.begin(), fControl.end()), gGiven[0].control);
    std::vector<GLubyte> green(kWidth * kHeight);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kWidth, kHeight, GL_GREEN, GL_UNSIGNED_BYTE, green.data());
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            ASSERT_EQ(x >= 10 && x < 70 && y >= 10 && y < 40, bool(green[std::size_t(y * kWidth + x)]))
                << x << ' ' << y;
}

TEST_F(Nurbs, WhatCannotBeReadIsNotGiven)
{
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    fNurbs.begin();
    const auto surface = [&](int sCount, const double* s, int tCount, const double* t, const double* points) {
        fNurbs.nurbsSurface(sCount, s, tCount, t, kRowStride, 3, points, kOrder, kOrder, TgluNurbsObject::kVertex3);
    };
    const double* const control = fControl.data();
    surface(kKnots, nullptr, kKnots, kKnotValues, control);
    surface(kKnots, kKnotValues, kKnots, nullptr, control);
    surface(kKnots, kKnotValues, kKnots, kKnotValues, nullptr);
    surface(kKnots, kKnotValues, -1, kKnotValues, control);
    surface(kLeast, kKnotValues, kLeast, kKnotValues, control);
    // Strides and orders that would take GLU out of the converted points.
    draw(1000, 3);
    draw(-kRowStride, 3);
    draw(kRowStride, -1);
    draw(kMost, kMost, kLeast);
    draw(kRowStride, 3, kKnots);
    fNurbs.end();
    EXPECT_TRUE(gGiven.empty());
}
