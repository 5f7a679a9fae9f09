// Pixel maps and copies: the right pixels in the right place, whatever the state, and the state left as it was.

#include "support/PortWindow.h"

#include "foundation/T4dDblPoint.h"
#include "foundation/TpixelMap.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace {

using Pixel = std::array<int, 3>; ///< red, green, blue

constexpr int kNone = -100000;

Pixel pattern(int x, int y)
{
    return {(37 * x + 11) & 255, (53 * y + 29) & 255, (17 * x + 71 * y + 5) & 255};
}

void fill(TpixelMap& map, int width, int height, bool rgba)
{
    ASSERT_TRUE(map.setSize(width, height));
    map.setRgba(rgba);
    std::uint8_t* at = map.pixels();
    for (int i = 0; i < width * height; ++i, at += 4) {
        const Pixel c = pattern(i % width, i / width);
        at[rgba ? 0 : 2] = std::uint8_t(c[0]);
        at[1] = std::uint8_t(c[1]);
        at[rgba ? 2 : 0] = std::uint8_t(c[2]);
        at[3] = 255;
    }
}

Pixel pixelOf(const TpixelMap& map, int x, int y)
{
    const std::uint8_t* at = map.pixels() + std::size_t(y) * map.rowBytes() + std::size_t(x) * 4;
    return {at[map.isRgba() ? 0 : 2], at[1], at[map.isRgba() ? 2 : 0]};
}

Pixel pixelAt(int x, int y)
{
    GLubyte c[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return {c[0], c[1], c[2]};
}

void clearTo(T3dPort& port, const TportColor& c)
{
    port.clearColor(c);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

} // namespace

TEST(PixelMaps, ComeBackInEveryOrderSizeAndPixelStoreAndLeaveNoTrace)
{
    PortWindow<> made(80, 60);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    port.setCurrentContext();
    const std::pair<GLenum, GLint> store[] = {
        {GL_PACK_ROW_LENGTH, 100}, {GL_PACK_SKIP_PIXELS, 5}, {GL_UNPACK_ROW_LENGTH, 100}, {GL_UNPACK_SKIP_ROWS, 3}};
    for (const auto& [name, value] : store)
        glPixelStorei(name, value);
    port.depthTest(true);
    port.depthFunc(T3dPort::kDepthNever);
    port.scissor(TportRect(2, 3, 70, 50), true);
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(3, 2), std::pair(5, 7), std::pair(33, 9)}) {
        for (const int kind : {0, 1, 2, 3}) {
            const bool rgba = kind & 1;
            const bool flip = kind & 2;
            SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + " kind " + std::to_string(kind));
            clearTo(port, kCblack);
            TpixelMap drawn, read, whole;
            fill(drawn, width, height, rgba);
            port.depthTest(true);
            port.pushOrtho2D();
            port.pixelMapDraw(4, 6, drawn, flip);
            port.popOrtho2D();
            EXPECT_TRUE(port.glContextRecord()->fDirtyBits.test(TglContext::kDepthTestOn));
            ASSERT_TRUE(read.setSize(width + 2, height + 1) && whole.setSize(80, 60));
            read.setRgba(!rgba);
            TportRect area(4, 6, short(4 + width), short(6 + height));
            ASSERT_TRUE(port.pixelMapRead(read, 0, area));
            ASSERT_TRUE(port.pixelMapRead(whole, 0));
            for (int i = 0; i < width * height; ++i) {
                const int x = i % width;
                const int y = i / width;
                const Pixel wanted = pattern(x, flip ? height - 1 - y : y);
                ASSERT_EQ(wanted, pixelOf(read, x, y)) << x << ' ' << y;
                ASSERT_EQ(wanted, pixelOf(whole, 4 + x, 6 + y)) << x << ' ' << y;
            }
            EXPECT_EQ((Pixel{}), pixelOf(read, width, 0)) << "outside the area";
            EXPECT_TRUE(glIsEnabled(GL_SCISSOR_TEST));
            EXPECT_EQ(port.stateDifferences(), TstringArray());
        }
    }
    GLfloat zoom = 0;
    glGetFloatv(GL_ZOOM_Y, &zoom);
    EXPECT_EQ(zoom, 1);
    for (const auto& [name, value] : store) {
        GLint after = 0;
        glGetIntegerv(name, &after);
        EXPECT_EQ(after, value) << name;
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(PixelMaps, LandWhereTheyAreTold)
{
    PortWindow<> made(60, 50);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    TpixelMap map;
    fill(map, 6, 5, true);
    const auto clipped = [&](double x, double y, double z) { port.pixelMapDrawClipped(T4dDblPoint{x, y, z, 1}, map); };
    const TportRect whole(0, 0, 60, 50);
    const struct
    {
        TportRect viewport;
        std::function<void()> draw;
        int x, y; ///< of the lower left pixel of the map; kNone when nothing must be drawn
    } cases[] = {
        {whole, [&] { clipped(-2, -3, 0); }, -2, -3},
        {{20, 10, 60, 50}, [&] { clipped(22, 13, 1e300); }, 22, 13},
        {whole, [&] { clipped(NAN, NAN, NAN); }, kNone, 0},
        {whole,
         [&] {
             port.pixelMapDraw(T4dDblPoint{7, 8, 0, 1}, map, false);
         },
         7, 8},
        {whole, [&] { port.writePixelMap(map, 11, 12); }, 11, 12},
        {whole, [&] { port.pixelMapDraw(TportRect(55, 45, 55, 45), map, TportRect(55, 45, 55, 45), false); }, 55, 45},
        {whole, [&] { port.pixelMapDraw(TportRect(5, 5, 5, 5), map, false); }, kNone, 0},
        {whole, [&] { port.pixelMapDraw(TportRect(60, 0, 90, 9), map, false); }, kNone, 0},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(&each - cases);
        clearTo(port, kCblack);
        port.pushViewport(each.viewport);
        port.pushOrtho2D();
        each.draw();
        port.popOrtho2D();
        EXPECT_EQ(port.stateDifferences(), TstringArray());
        port.popViewport();
        for (int i = 0; i < 60 * 50; ++i) {
            const int x = i % 60 - each.x;
            const int y = i / 60 - each.y;
            const bool inside = each.x != kNone && x >= 0 && x < 6 && y >= 0 && y < 5;
            ASSERT_EQ(inside ? pattern(x, y) : Pixel{}, pixelAt(i % 60, i / 60)) << i % 60 << ' ' << i / 60;
        }
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(SnapShotOnScreen, ReadsItsRectangleOfTheFrontBufferAndCentresAnEmptyOne)
{
    PortWindow<> made(400, 300, Buffering::kDouble);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    port.setSnapShotMode(true);
    EXPECT_EQ(port.snapShotRect(), TportRect(150, 100, 250, 200));
    port.setSnapShotRect(TportRect(3, 4, 8, 11));
    port.setSnapShotMode(false);
    EXPECT_EQ(port.snapShotRect(), TportRect(3, 4, 8, 11));

    TpixelMap drawn, shot;
    fill(drawn, 20, 20, true);
    clearTo(port, kCblack);
    port.pushOrtho2D();
    port.pixelMapDraw(0, 0, drawn, false);
    port.popOrtho2D();
    port.swapBuffers();
    clearTo(port, kCwhite);
    ASSERT_TRUE(port.snapShot(shot));
    ASSERT_EQ(shot.width(), 5);
    ASSERT_EQ(shot.height(), 7);
    for (int i = 0; i < 35; ++i)
        ASSERT_EQ(pixelOf(shot, i % 5, i / 5), pattern(3 + i % 5, 4 + i / 5));
    EXPECT_EQ(pixelAt(3, 4), (Pixel{255, 255, 255})) << "the back buffer is read again";
    port.setSnapShotRect(TportRect(-1, 0, 4, 4));
    EXPECT_FALSE(port.snapShot(shot));
    EXPECT_EQ(shot.width(), 5) << "not touched by a snapshot that failed";
    port.setSnapShotRect(TportRect(0, 0, 32767, 2000));
    EXPECT_TRUE(port.snapShot(shot)) << "larger than the screen";
    EXPECT_EQ(pixelOf(shot, 3, 4), pattern(3, 4));
    glDrawBuffer(GL_FRONT);
    clearTo(port, {0, 0, 1, 1});
    glDrawBuffer(GL_BACK);
    EXPECT_TRUE(port.snapShot(shot));
    EXPECT_EQ(pixelOf(shot, 3, 4), (Pixel{0, 0, 255})) << "drawn to the front buffer and not flushed";
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(SnapShotOnScreen, ReachesBeyondAWindowThatHasShrunk)
{
    PortWindow<> made(200, 150, Buffering::kDouble);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    TpixelMap shot;
    port.setSnapShotRect(TportRect(0, 20, 100, 140));
    clearTo(port, kCwhite);
    port.swapBuffers();
    EXPECT_TRUE(port.snapShot(shot));
    made.window().resize(60, 40);
    settle();
    EXPECT_TRUE(port.snapShot(shot)); // nothing has been drawn since
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(CopyPixels, CopiesBetweenBuffersThatExist)
{
    const Pixel red{255, 0, 0}, blue{0, 0, 255};
    PortWindow<> single(40, 30), doubled(40, 30, Buffering::kDouble);
    ASSERT_TRUE(single.show() && doubled.show());
    for (PortWindow<>* made : {&single, &doubled}) {
        T3dPort& port = made->port();
        port.setCurrentContext();
        GLint before = 0;
        glGetIntegerv(GL_DRAW_BUFFER, &before);
        const bool isDouble = made == &doubled;
        for (const int mode : {0, 1, 2, 3, 4, -1}) {
            SCOPED_TRACE(mode);
            glDrawBuffer(GL_FRONT);
            clearTo(port, {1, 0, 0, 1});
            glDrawBuffer(GLenum(before));
            if (isDouble)
                clearTo(port, {0, 0, 1, 1});
            port.depthTest(true);
            port.depthFunc(T3dPort::kDepthNever);
            port.pushViewport(TportRect(10, 8, 30, 20));
            port.copyPixels(T3dPort::TcopyMode(mode));
            EXPECT_EQ(port.stateDifferences(), TstringArray());
            port.popViewport();
            EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST) && !glIsEnabled(GL_DITHER));
            GLint after = 0;
            glGetIntegerv(GL_DRAW_BUFFER, &after);
            EXPECT_EQ(after, before);
            EXPECT_EQ(pixelAt(20, 15), mode == 0 || !isDouble ? red : blue);
            glReadBuffer(GL_FRONT);
            EXPECT_EQ(pixelAt(20, 15), mode == 1 && isDouble ? blue : red);
            glReadBuffer(GLenum(before));
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        }
    }
}

TEST(BackingStore, ErasesAnOverlayAndEndsWithAResize)
{
    PortWindow<> made(60, 50);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    TpixelMap scene;
    fill(scene, 60, 50, true);
    port.pushOrtho2D();
    port.pixelMapDraw(0, 0, scene, false);
    port.popOrtho2D();
    port.depthTest(true);
    glPixelStorei(GL_PACK_ROW_LENGTH, 7);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 4);
    for (const TportRect viewport : {TportRect(0, 0, 60, 50), TportRect(13, 9, 46, 31)}) {
        port.pushViewport(viewport);
        port.setUseBackingStore(true);
        EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
        port.restoreBackingStore(); // nothing saved yet
        port.saveBackingStore();
        port.clear(GL_COLOR_BUFFER_BIT);
        glPixelTransferf(GL_RED_SCALE, 0.5f);
        glPixelZoom(2, 2);
        port.resendState(); // the record does not trust its dithering bit from here on
        glEnable(GL_DITHER);
        port.restoreBackingStore();
        EXPECT_TRUE(glIsEnabled(GL_DITHER));
        EXPECT_EQ(port.stateDifferences(), TstringArray());
        for (int y = viewport.bottom; y < viewport.top; ++y)
            for (int x = viewport.left; x < viewport.right; ++x)
                ASSERT_EQ(pixelAt(x, y), pattern(x, y)) << x << ' ' << y;
        EXPECT_EQ(pixelAt(0, 0) == pattern(0, 0), viewport.left == 0) << "nothing but the viewport";
        port.setUseBackingStore(false);
        EXPECT_FALSE(port.isBackingSaved());
        EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
        port.popViewport();
    }
    port.depthTest(false);
    port.setUseBackingStore(true);
    port.saveBackingStore();
    made.window().resize(70, 55);
    ASSERT_TRUE(waitUntil([&] { return port.portRect() == TportRect(0, 0, 70, 55); }));
    EXPECT_FALSE(port.isBackingSaved());
    EXPECT_TRUE(port.isUsingBackingStore());
    port.setUseBackingStore(false);
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST)) << "as it was when the mode began";
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(PixelMaps, OfThreeChannelsKeepToTheirBytes)
{
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.clearColor(TportColor(1, 0.2f, 0, 1));
    port.clear(GL_COLOR_BUFFER_BIT);
    std::vector<unsigned char> bytes(7 * 5 * 3 + 64, 0xEE);
    TpixelMap map;
    ASSERT_TRUE(map.wrap(bytes.data(), 7, 5, 3));
    for (const bool rgba : {true, false}) {
        map.setRgba(rgba);
        EXPECT_TRUE(port.pixelMapRead(map, 0));
        const std::vector<int> last(bytes.begin() + 102, bytes.begin() + 106);
        EXPECT_EQ(last, rgba ? std::vector<int>({255, 51, 0, 0xEE}) : std::vector<int>({0, 51, 255, 0xEE}));
    }
}
