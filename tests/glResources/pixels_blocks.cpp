// Pixel blocks: sizes, allocation, sharing, turning over and scaling.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Format = TglPixels::TpixelFormat;
using Type = TglPixels::TpixelType;

/** Fills all that is allocated with a pattern that depends on @p seed. */
void fill(TglPixels& block, int seed)
{
    std::uint8_t* bytes = block.pixels();
    ASSERT_NE(nullptr, bytes);
    for (int i = 0; i < block.data()->fByteSize; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + 7 * i);
}

std::vector<std::uint8_t> bytesOf(const TglPixels& block)
{
    const TglPixels::TglPixelsData* data = block.data();
    return data && data->fData ? std::vector<std::uint8_t>(data->fData, data->fData + data->fByteSize)
                               : std::vector<std::uint8_t>();
}

} // namespace

TEST(PixelBlock, RowsOfEveryFormatAndType)
{
    const std::pair<Format, int> formats[] = {
        {TglPixels::kDepth, 1},    {TglPixels::kRed, 1}, {TglPixels::kGreen, 1},        {TglPixels::kBlue, 1},
        {TglPixels::kAlpha, 1},    {TglPixels::kRgb, 3}, {TglPixels::kRgba, 4},         {TglPixels::kBgra, 4},
        {Format(GL_LUMINANCE), 0}, {Format(GL_BGR), 0},  {Format(GL_STENCIL_INDEX), 0}, {Format(0), 0}};
    const struct
    {
        Type type;
        int bytes; ///< of a component; 0 for bits
        int alignment;
    } types[] = {{TglPixels::kUnsignedByte, 1, 1},
                 {TglPixels::kUnsignedShort, 2, 2},
                 {TglPixels::kUnsignedInt, 4, 4},
                 {TglPixels::kFloat, 4, 4},
                 {TglPixels::kBitmap, 0, 1}};
    for (const auto& [format, components] : formats) {
        for (const auto& each : types) {
            for (const int width : {1, 3, 7, 8, 9}) {
                const TglPixels block(format, width, 5, each.type);
                const auto row = [&](int n) { return components * (each.bytes ? each.bytes * n : (n + 7) / 8); };
                EXPECT_EQ(row(width), block.data()->rowBytes(false));
                EXPECT_EQ(row(width + 1), block.data()->rowBytes(true));
                EXPECT_EQ(row(width + 1) * 6, block.data()->needed());
                EXPECT_EQ(each.alignment, block.data()->fAlignment);
            }
        }
        EXPECT_EQ(0, TglPixels(format, 3, 5, Type(GL_BYTE)).data()->rowBytes(true));
    }
}

TEST(PixelBlock, ACopyIsSharedUntilOneOfThemChanges)
{
    const struct
    {
        const char* what;
        void (*change)(TglPixels& block);
        bool keepsPixels;
    } cases[] = {
        {"resize", [](TglPixels& b) { b.resize(9, 9, false); }, false},
        {"resize to a flag", [](TglPixels& b) { b.resize(5, 4, true); }, false},
        {"reformat", [](TglPixels& b) { b.reformat(TglPixels::kBgra, false); }, false},
        {"retype", [](TglPixels& b) { b.retype(TglPixels::kFloat, false); }, false},
        {"split without pixels", [](TglPixels& b) { b.split(false); }, false},
        {"makeUnique", [](TglPixels& b) { b.makeUnique(); }, true},
        {"flip", [](TglPixels& b) { b.flip(); }, true},
        {"free", [](TglPixels& b) { b.free(); }, false},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        TglPixels first(TglPixels::kRgba, 5, 4);
        fill(first, 9);
        const std::vector<std::uint8_t> before = bytesOf(first);
        TglPixels second = first;
        each.change(second);
        EXPECT_NE(first.data(), second.data());
        EXPECT_EQ(before, bytesOf(first));
        if (each.keepsPixels) {
            EXPECT_EQ(before.size(), bytesOf(second).size());
        }
    }
}

TEST(PixelBlock, ImpossibleSizesHaveNoPixels)
{
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    window.port().setCurrentContext();
    const std::pair<int, int> sizes[] = {{0, 0},
                                         {0, 5},
                                         {5, 0},
                                         {-1, 5},
                                         {5, -1},
                                         {INT_MIN, 5},
                                         {5, INT_MIN},
                                         {-3, -3},
                                         {INT_MAX, 1},
                                         {1, INT_MAX},
                                         {INT_MAX, INT_MAX},
                                         {50000, 50000}};
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
        TglPixels block(TglPixels::kRgba, 3, 3);
        block.pixels();
        block.resize(width, height, false);
        EXPECT_EQ(nullptr, block.pixels());
        block.read(0, 0);
        block.write(0, 0);
        block.flip();
        TglPixels fits(TglPixels::kRgba, 2, 2);
        fits.pixels();
        fits.scaleTo(block);
        block.scaleTo(fits);
    }
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
}

TEST(PixelBlock, AllocationGrowsAndShrinksOnlyWhenExact)
{
    TglPixels block(TglPixels::kRgba, 4, 3);
    EXPECT_EQ(nullptr, block.data()->fData);
    EXPECT_NE(nullptr, block.pixels());
    const auto size = [&] { return block.data()->fByteSize; };
    EXPECT_EQ(4 * 5 * 4, size());
    block.resize(2, 2, false);
    EXPECT_EQ(4 * 5 * 4, size());
    block.resize(2, 2, true); // nothing but the flag changes: it is kept, and the block shrinks
    EXPECT_EQ(4 * 3 * 3, size());
    block.resize(6, 6, true);
    EXPECT_EQ(4 * 7 * 7, size());
    block.reformat(TglPixels::kRed, true);
    EXPECT_EQ(4 * 7 * 7, size()) << "until it is used";
    block.pixels();
    EXPECT_EQ(7 * 7, size());
    block.retype(TglPixels::kFloat, false);
    EXPECT_FALSE(block.data()->fExact);
    EXPECT_EQ(4, block.data()->fAlignment);
    block.pixels();
    EXPECT_EQ(4 * 7 * 7, size());
    block.reformat(TglPixels::kRed, true);
    EXPECT_TRUE(block.data()->fExact);
    block.retype(TglPixels::kFloat, false);
    EXPECT_FALSE(block.data()->fExact);
    block.resize(0, 5, true);
    EXPECT_EQ(0, size());
    EXPECT_EQ(nullptr, block.pixels());
}

TEST(PixelBlock, FlipTurnsTheRowsOver)
{
    TglPixels block(TglPixels::kRgb, 3, 4, TglPixels::kUnsignedShort);
    block.flip(); // without pixels yet
    EXPECT_EQ(nullptr, block.data()->fData);
    fill(block, 40);
    constexpr std::size_t kRow = 3 * 3 * 2;
    const std::vector<std::uint8_t> before = bytesOf(block);
    block.flip();
    const std::vector<std::uint8_t> after = bytesOf(block);
    for (std::size_t row = 0; row < 4; ++row)
        EXPECT_EQ(0, std::memcmp(&before[row * kRow], &after[(3 - row) * kRow], kRow)) << row;
    EXPECT_EQ(before.size(), after.size());

    // A block with more room than it needs comes out with just enough, so that it can be drawn.
    block.resize(2, 2, false);
    EXPECT_GT(block.data()->fByteSize, block.data()->needed());
    block.flip();
    EXPECT_EQ(block.data()->needed(), block.data()->fByteSize);
}
