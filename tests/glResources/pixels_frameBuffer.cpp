// Pixel blocks and the frame buffer: what is read, and what is drawn again.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using Pixel = std::array<GLubyte, 3>;

constexpr int kScene = 16; ///< side of the drawn part

Pixel sceneColor(int x, int y)
{
    return {GLubyte(15 * x + 3), GLubyte(15 * y + 5), GLubyte(7 * x + 8 * y + 1)};
}

Pixel pixelAt(int x, int y)
{
    GLubyte c[4] = {};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return {c[0], c[1], c[2]};
}

void drawScene(T3dPort& port)
{
    port.clearColor(kCblack);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.depthTest(false);
    port.pushOrtho2D();
    port.setCurrentContext();
    for (int y = 0; y < kScene; ++y) {
        for (int x = 0; x < kScene; ++x) {
            glColor3ubv(sceneColor(x, y).data());
            glRectd(x, y, x + 1, y + 1);
        }
    }
}

} // namespace

TEST(PixelTransfer, ColoursAreReadAndDrawnInEveryFormatTypeAndOddSize)
{
    PortWindow<> window(48, 40);
    ASSERT_TRUE(window.show());
    drawScene(window.port());
    const struct
    {
        TglPixels::TpixelFormat format;
        std::array<bool, 3> channels; ///< those it has
    } formats[] = {{TglPixels::kRed, {true, false, false}},  {TglPixels::kGreen, {false, true, false}},
                   {TglPixels::kBlue, {false, false, true}}, {TglPixels::kAlpha, {false, false, false}},
                   {TglPixels::kRgb, {true, true, true}},    {TglPixels::kRgba, {true, true, true}},
                   {TglPixels::kBgra, {true, true, true}}};
    for (const auto& each : formats) {
        for (const auto type :
             {TglPixels::kUnsignedByte, TglPixels::kUnsignedShort, TglPixels::kUnsignedInt, TglPixels::kFloat}) {
            for (const auto& [width, height] : {std::pair(1, 1), std::pair(3, 2), std::pair(5, 7), std::pair(7, 5)}) {
                SCOPED_TRACE(GlRecorder::enumName(each.format) + ' ' + GlRecorder::enumName(type) + ' ' +
                             std::to_string(width) + " x " + std::to_string(height));
                TglPixels block(each.format, width, height, type);
                block.read(2, 3);
                ASSERT_TRUE(block.data()->isComplete());
                const TglPixels::TglPixelsData* data = block.data();
                for (int i = data->rowBytes(false) * height; i < data->fByteSize; ++i)
                    ASSERT_EQ(0, data->fData[i]) << "behind the last pixel";
                glColor3f(1, 0, 1);
                glRectd(23, 23, 34, 34);
                block.write(24, 24);
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x) {
                        Pixel wanted = sceneColor(x + 2, y + 3);
                        for (std::size_t i = 0; i < 3; ++i)
                            wanted[i] = each.channels[i] ? wanted[i] : 0;
                        ASSERT_EQ(wanted, pixelAt(24 + x, 24 + y)) << x << ' ' << y;
                    }
                }
                EXPECT_EQ((Pixel{255, 0, 255}), pixelAt(24 + width, 24));
                EXPECT_EQ((Pixel{255, 0, 255}), pixelAt(24, 24 + height));
            }
        }
    }
}

TEST(PixelTransfer, DepthIsReadAsItWasCleared)
{
    PortWindow<> made(40, 30);
    ASSERT_TRUE(made.show());
    made.port().setCurrentContext();
    glClearDepth(0.25);
    glClear(GL_DEPTH_BUFFER_BIT);
    TglPixels ints(TglPixels::kDepth, 5, 3);
    ints.read(4, 6);
    TglPixels floats(TglPixels::kDepth, 5, 3, TglPixels::kFloat);
    floats.read(4, 6);
    ASSERT_TRUE(ints.pixels() && floats.pixels());
    for (int i = 0; i < 15; ++i) {
        EXPECT_NEAR(reinterpret_cast<const GLuint*>(ints.pixels())[i] / 4294967295.0, 0.25, 1e-6);
        EXPECT_NEAR(reinterpret_cast<const GLfloat*>(floats.pixels())[i], 0.25, 1e-6);
    }
}
