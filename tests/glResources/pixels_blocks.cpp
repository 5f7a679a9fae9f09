// Pixel blocks: sizes, allocation, sharing, turning over and scaling.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

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
        {TglPixels::kDepth, 1}, {TglPixels::kRed, 1},  {TglPixels::kGreen, 1}, {TglPixels::kBlue, 1},
        {TglPixels::kAlpha, 1}, {TglPixels::kRgb, 3},  {TglPixels::kRgba, 4},  {TglPixels::kBgra, 4},
        {Format(GL_LUMINANCE), 0}, {Format(GL_BGR), 0}, {Format(GL_STENCIL_INDEX), 0}, {Format(0), 0}};
    const struct
    {
        Type type;
        int bytes; ///< of a component; 0 for bits
        int alignment;
    } types[] = {{TglPixels::kUnsignedByte, 1, 1}, {TglPixels::kUnsignedShort, 2, 2}, {TglPixels::kUnsignedInt, 4, 4},
                 {TglPixels::kFloat, 4, 4},        {TglPixels::kBitmap, 0, 1}};
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
        EXPECT_EQ(0, TglPixels(format, 3, 5, Type(GL_SHORT)).data()->needed());
        const bool wide = format == TglPixels::kDepth || format == TglPixels::kAlpha;
        EXPECT_EQ(wide ? TglPixels::kUnsignedInt : TglPixels::kUnsignedByte, TglPixels(format).data()->fType);
        EXPECT_EQ(wide ? 4 : 1, TglPixels(format, 3, 3).data()->fAlignment);
    }
    EXPECT_EQ(36, TglPixels(TglPixels::kRgb, 3, 2, TglPixels::kUnsignedByte).data()->needed());
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

TEST(PixelBlock, AllocationKeepsWhatWasThere)
{
    TglPixels block(TglPixels::kRed, 10, 10);
    fill(block, 3);
    const std::vector<std::uint8_t> before = bytesOf(block);
    block.resize(20, 20, false);
    std::vector<std::uint8_t> after = bytesOf(block);
    ASSERT_EQ(21u * 21u, after.size());
    after.resize(before.size());
    EXPECT_EQ(before, after);
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
        TglPixels third = second;
        EXPECT_EQ(first.data(), third.data());
        each.change(second);
        EXPECT_NE(first.data(), second.data());
        EXPECT_EQ(first.data(), third.data());
        EXPECT_EQ(5, first.width());
        EXPECT_EQ(4, first.height());
        EXPECT_EQ(TglPixels::kRgba, first.data()->fFormat);
        EXPECT_EQ(TglPixels::kUnsignedByte, first.data()->fType);
        EXPECT_EQ(before, bytesOf(first));
        if (each.keepsPixels) {
            EXPECT_EQ(before.size(), bytesOf(second).size());
        } else if (second.data() && second.data()->fData) {
            EXPECT_NE(before, bytesOf(second));
        }
    }

    // Setting what is set already changes nothing and splits nothing.
    TglPixels first(TglPixels::kRgba, 5, 4);
    TglPixels second = first;
    second.resize(5, 4, false);
    second.reformat(TglPixels::kRgba, false);
    second.retype(TglPixels::kUnsignedByte, false);
    EXPECT_EQ(first.data(), second.data());
    // One of its own keeps its bytes.
    second.makeUnique();
    fill(second, 1);
    const std::vector<std::uint8_t> before = bytesOf(second);
    second.reformat(TglPixels::kBgra, false);
    EXPECT_EQ(before, bytesOf(second));
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

TEST(PixelBlock, ScaleToFitsSizeAndType)
{
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    window.port().setCurrentContext();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8); // an alignment of somebody else's must not matter
    glPixelStorei(GL_PACK_ALIGNMENT, 8);

    TglPixels source(TglPixels::kRgb, 3, 3);
    std::memset(source.pixels(), 0, 27);
    for (int i = 0; i < 9; ++i)
        source.pixels()[3 * i + 1] = 204;
    TglPixels small(TglPixels::kRgb, 1, 1, TglPixels::kFloat);
    TglPixels large(TglPixels::kRgb, 7, 5, TglPixels::kUnsignedShort);
    const TglPixels sharing = large;
    source.scaleTo(small);
    source.scaleTo(large);
    EXPECT_EQ(nullptr, sharing.data()->fData);
    float one[3];
    std::memcpy(one, small.pixels(), sizeof one);
    EXPECT_NEAR(0, one[0], 0.01);
    EXPECT_NEAR(0.8, one[1], 0.01);
    std::uint16_t many[35 * 3];
    std::memcpy(many, large.pixels(), sizeof many);
    for (int i = 0; i < 35; ++i) {
        EXPECT_NEAR(0, many[3 * i], 300) << i;
        EXPECT_NEAR(52428, many[3 * i + 1], 300) << i;
    }

    // Into itself, and into what does not fit.
    source.scaleTo(source);
    EXPECT_EQ(204, source.pixels()[13]);
    TglPixels other(TglPixels::kRgba, 2, 2);
    source.scaleTo(other);
    EXPECT_EQ(nullptr, other.data()->fData);
    TglPixels empty(TglPixels::kRgb, 0, 2);
    source.scaleTo(empty);
    empty.scaleTo(source);
    TglPixels freed(TglPixels::kRgb, 2, 2);
    freed.free();
    source.scaleTo(freed);
    freed.scaleTo(source);
    EXPECT_EQ(204, source.pixels()[13]);
}

TEST(PixelBlock, ImpossibleSizesHaveNoPixels)
{
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    window.port().setCurrentContext();
    const std::pair<int, int> sizes[] = {{0, 0},  {0, 5},           {5, 0},           {-1, 5},
                                         {5, -1}, {INT_MIN, 5},     {5, INT_MIN},     {-3, -3},
                                         {INT_MAX, 1}, {1, INT_MAX}, {INT_MAX, INT_MAX}, {50000, 50000}};
    for (const auto& [width, height] : sizes) {
        for (const bool exact : {false, true}) {
            for (const Type type : {TglPixels::kUnsignedByte, TglPixels::kFloat, TglPixels::kBitmap}) {
                SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
                if (type == TglPixels::kBitmap && width > 0 && height > 0)
                    continue; // many bits are possible
                TglPixels block(TglPixels::kRgba, 3, 3, type);
                block.pixels();
                block.resize(width, height, exact);
                EXPECT_EQ(0, block.data()->needed());
                EXPECT_EQ(nullptr, block.pixels());
                block.read(0, 0);
                block.write(0, 0);
                block.flip();
                TglPixels fits(TglPixels::kRgba, 2, 2, type);
                fits.pixels();
                fits.scaleTo(block);
                block.scaleTo(fits);
                TglPixels copy = block;
                copy.makeUnique();
                block.resize(2, 2, exact);
                EXPECT_NE(nullptr, block.pixels());
            }
        }
    }
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
}

TEST(PixelBlock, WithoutMemoryThereAreNoPixels)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the address sanitizer needs all the address space there is";
#endif
    rlimit before;
    ASSERT_EQ(0, getrlimit(RLIMIT_AS, &before));
    TglPixels block(TglPixels::kRgba, 5, 5);
    fill(block, 1);
    const std::vector<std::uint8_t> pixels = bytesOf(block);
    TglPixels large(TglPixels::kRgba, 16000, 16000);
    rlimit tight = before;
    tight.rlim_cur = 1; // nothing more, beyond what the allocator has in hand
    ASSERT_EQ(0, setrlimit(RLIMIT_AS, &tight));
    block.resize(16000, 16000, false);
    const bool blockHasPixels = block.pixels() != nullptr;
    const bool largeHasPixels = large.pixels() != nullptr;
    large.read(0, 0);
    large.flip();
    large.makeUnique();
    setrlimit(RLIMIT_AS, &before);
    EXPECT_FALSE(blockHasPixels);
    EXPECT_FALSE(largeHasPixels);
    EXPECT_EQ(pixels, bytesOf(block));
    block.resize(5, 5, false);
    EXPECT_NE(nullptr, block.pixels());
}

TEST(PixelBlock, AFreedHandleMindsNothing)
{
    TglPixels block(TglPixels::kRgb, 2, 2);
    block.free();
    EXPECT_EQ(0, block.width());
    EXPECT_EQ(nullptr, block.data());
    EXPECT_EQ(nullptr, block.pixels());
    block.read(0, 0);
    block.write(0, 0);
    block.flip();
    block.resize(2, 2, true);
    block.reformat(TglPixels::kRgba, true);
    block.retype(TglPixels::kFloat, true);
    block.makeUnique();
    block.free();
    block = TglPixels(TglPixels::kRgb, 2, 2);
    EXPECT_NE(nullptr, block.pixels());
}
