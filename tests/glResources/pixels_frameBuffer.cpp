// Pixel blocks and the frame buffer: what is read, and what is drawn again.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Format = TglPixels::TpixelFormat;
using Type = TglPixels::TpixelType;
using Pixel = std::array<GLubyte, 3>;

constexpr int kWidth = 48;
constexpr int kHeight = 40;
constexpr int kScene = 16; ///< side of the drawn part
constexpr Type kTypes[] = {TglPixels::kUnsignedByte, TglPixels::kUnsignedShort, TglPixels::kUnsignedInt,
                           TglPixels::kFloat};

Pixel sceneColor(int x, int y)
{
    return {GLubyte(15 * x + 3), GLubyte(15 * y + 5), GLubyte(7 * x + 8 * y + 1)};
}

double sceneDepth(int x, int y)
{
    return (x + 2 * y + 1) / 64.0;
}

/** Component @p i of a block's pixel, from 0 to 1. */
double component(const TglPixels& block, int x, int y, int components, int i)
{
    const std::uint8_t* row = block.data()->fData + std::ptrdiff_t(y) * block.data()->rowBytes(false);
    const int index = x * components + i;
    const auto at = [&](auto value, double most) {
        std::memcpy(&value, row + std::size_t(index) * sizeof value, sizeof value);
        return value / most;
    };
    switch (block.data()->fType) {
    case TglPixels::kUnsignedByte:
        return at(std::uint8_t(), 255.0);
    case TglPixels::kUnsignedShort:
        return at(std::uint16_t(), 65535.0);
    case TglPixels::kUnsignedInt:
        return at(std::uint32_t(), 4294967295.0);
    default:
        return at(float(), 1.0);
    }
}

class PixelTransfer : public testing::Test
{
protected:
    PixelTransfer() : fWindow(kWidth, kHeight)
    {
        EXPECT_TRUE(fWindow.show());
        T3dPort& p = port();
        p.clearColor(kCblack);
        p.depthTest(true);
        p.depthFunc(T3dPort::kDepthAlways);
        p.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        p.ortho(0, kWidth, 0, kHeight, 0, -1); // a z from 0 to 1 is a depth from 0 to 1
        p.loadIdentity();
        p.setCurrentContext();
        glBegin(GL_POINTS);
        for (int y = 0; y < kScene; ++y) {
            for (int x = 0; x < kScene; ++x) {
                glColor3ubv(sceneColor(x, y).data());
                glVertex3d(x + 0.5, y + 0.5, sceneDepth(x, y));
            }
        }
        glEnd();
    }

    T3dPort& port() { return fWindow.port(); }

    static Pixel pixelAt(int x, int y)
    {
        GLubyte c[4] = {};
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
        return {c[0], c[1], c[2]};
    }

    static double depthAt(int x, int y)
    {
        GLfloat depth = -1;
        glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
        return depth;
    }

    PortWindow<> fWindow;
};

struct ReadCase
{
    Format format;
    const char* name;
    int components;
    int channels[4]; ///< of the scene's colour; 3 reads 1
};

constexpr ReadCase kReads[] = {
    {TglPixels::kRed, "red", 1, {0, 0, 0, 0}},   {TglPixels::kGreen, "green", 1, {1, 0, 0, 0}},
    {TglPixels::kBlue, "blue", 1, {2, 0, 0, 0}}, {TglPixels::kAlpha, "alpha", 1, {3, 0, 0, 0}},
    {TglPixels::kRgb, "rgb", 3, {0, 1, 2, 0}},   {TglPixels::kRgba, "rgba", 4, {0, 1, 2, 3}},
    {TglPixels::kBgra, "bgra", 4, {2, 1, 0, 3}},
};

/** The bytes behind the last pixel, which nothing may have touched since they were allocated. */
bool isSpareUntouched(const TglPixels& block)
{
    const TglPixels::TglPixelsData* data = block.data();
    for (int i = data->rowBytes(false) * data->fHeight; i < data->fByteSize; ++i)
        if (data->fData[i] != 0)
            return false;
    return true;
}

} // namespace

TEST_F(PixelTransfer, ColoursAreReadAndDrawnInEveryFormatTypeAndOddSize)
{
    for (const ReadCase& each : kReads) {
        for (const Type type : kTypes) {
            for (const auto& [width, height] : {std::pair(1, 1), std::pair(3, 2), std::pair(5, 7), std::pair(7, 5)}) {
                SCOPED_TRACE(std::string(each.name) + ' ' + GlRecorder::enumName(type) + ' ' + std::to_string(width) +
                             " x " + std::to_string(height));
                TglPixels block(each.format, width, height, type);
                block.read(2, 3);
                ASSERT_TRUE(block.data()->isComplete());
                EXPECT_TRUE(isSpareUntouched(block));
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x) {
                        for (int i = 0; i < each.components; ++i) {
                            const int channel = each.channels[i];
                            const double wanted = channel == 3 ? 1 : sceneColor(x + 2, y + 3)[channel] / 255.0;
                            ASSERT_NEAR(wanted, component(block, x, y, each.components, i), 0.6 / 255)
                                << x << ' ' << y << ' ' << i;
                        }
                    }
                }

                port().pushOrtho2D();
                port().setCurrentContext();
                glColor3f(1, 0, 1);
                glRectd(23, 23, 34, 34);
                const TglPixels& constant = block;
                constant.write(24, 24);
                port().popOrtho2D();
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x) {
                        Pixel wanted{};
                        for (int i = 0; i < each.components; ++i)
                            if (each.channels[i] < 3)
                                wanted[each.channels[i]] = sceneColor(x + 2, y + 3)[each.channels[i]];
                        ASSERT_EQ(wanted, pixelAt(24 + x, 24 + y)) << x << ' ' << y;
                    }
                }
                EXPECT_EQ((Pixel{255, 0, 255}), pixelAt(24 + width, 24));
                EXPECT_EQ((Pixel{255, 0, 255}), pixelAt(24, 24 + height));
                EXPECT_EQ((Pixel{255, 0, 255}), pixelAt(23, 24));
            }
        }
    }
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
    EXPECT_EQ(1u, port().stateDifferences().length()) << "the test's own colour only";
}

TEST_F(PixelTransfer, DepthIsReadAndDrawnInEveryType)
{
    for (const Type type : kTypes) {
        SCOPED_TRACE(GlRecorder::enumName(type));
        const double step = type == TglPixels::kUnsignedByte ? 1.0 / 255 : 1.0 / 60000;
        TglPixels block(TglPixels::kDepth, 5, 3, type);
        block.read(4, 6);
        EXPECT_TRUE(isSpareUntouched(block));
        port().pushOrtho2D();
        port().setCurrentContext();
        block.write(24, 24);
        port().popOrtho2D();
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 5; ++x) {
                EXPECT_NEAR(sceneDepth(x + 4, y + 6), component(block, x, y, 1, 0), step);
                EXPECT_NEAR(sceneDepth(x + 4, y + 6), depthAt(24 + x, 24 + y), step);
            }
        }
    }
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
}

TEST_F(PixelTransfer, TheCallsAndTheirAlignments)
{
    const struct
    {
        Type type;
        const char* name;
        int alignment;
    } cases[] = {{TglPixels::kUnsignedByte, "GL_UNSIGNED_BYTE", 1},
                 {TglPixels::kUnsignedShort, "GL_UNSIGNED_SHORT", 2},
                 {TglPixels::kUnsignedInt, "GL_UNSIGNED_INT", 4},
                 {TglPixels::kFloat, "GL_FLOAT", 4}};
    for (const auto& each : cases) {
        TglPixels block(TglPixels::kRgb, 3, 2, each.type);
        GlRecorder recorder;
        recorder.start();
        block.read(-1, 5);
        block.write(7, -8);
        recorder.stop();
        const std::string alignment = std::to_string(each.alignment);
        EXPECT_THAT(recorder.calls(),
                    testing::ElementsAre("glPixelStorei(GL_PACK_ALIGNMENT, " + alignment + ")",
                                         std::string("glReadPixels(-1, 5, 3, 2, GL_RGB, ") + each.name + ", pointer)",
                                         "glRasterPos2i(7, -8)",
                                         "glPixelStorei(GL_UNPACK_ALIGNMENT, " + alignment + ")",
                                         std::string("glDrawPixels(3, 2, GL_RGB, ") + each.name + ", pointer)"));
    }
}

TEST_F(PixelTransfer, OnlyABlockThatFitsIsDrawn)
{
    const auto drawn = [](const TglPixels& block) {
        GlRecorder recorder;
        recorder.start();
        block.write(0, 0);
        recorder.stop();
        return !recorder.calls().empty();
    };
    TglPixels block(TglPixels::kRgb, 8, 8);
    EXPECT_FALSE(drawn(block)) << "nothing allocated";
    block.pixels();
    EXPECT_TRUE(drawn(block));
    block.resize(4, 4, false);
    EXPECT_FALSE(drawn(block)) << "too much room";
    block.resize(4, 4, true);
    EXPECT_TRUE(drawn(block));
    block.reformat(TglPixels::kRgba, true);
    EXPECT_FALSE(drawn(block)) << "too little room";
    block.pixels();
    EXPECT_TRUE(drawn(block));
}

TEST_F(PixelTransfer, ReadingLeavesCopiesAlone)
{
    TglPixels block(TglPixels::kRgb, 4, 4);
    std::memset(block.pixels(), 77, 48);
    const TglPixels copy = block;
    block.read(0, 0);
    EXPECT_NE(block.data(), copy.data());
    EXPECT_EQ(77, copy.data()->fData[47]);
    EXPECT_NEAR(sceneColor(0, 0)[1], block.data()->fData[1], 1);
}

TEST_F(PixelTransfer, WhatOpenGLRefusesTouchesNothing)
{
    // There are no bits to read of a colour.
    TglPixels bits(TglPixels::kRgba, 9, 3, TglPixels::kBitmap);
    bits.read(0, 0);
    EXPECT_NE(GLenum(GL_NO_ERROR), glGetError());
    for (int i = 0; i < bits.data()->fByteSize; ++i)
        EXPECT_EQ(0, bits.data()->fData[i]);
    for (const Type type : {Type(GL_BYTE), Type(0), Type(GL_BGRA)}) {
        TglPixels block(TglPixels::kRgba, 9, 3, type);
        EXPECT_EQ(nullptr, block.pixels());
        block.read(0, 0);
        block.write(0, 0);
    }
    // Outside the window the frame buffer is undefined, the block is not.
    TglPixels outside(TglPixels::kRgba, 3, 3);
    outside.read(-100, 100000);
    EXPECT_TRUE(isSpareUntouched(outside));
}
