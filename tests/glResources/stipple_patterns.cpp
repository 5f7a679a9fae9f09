// Stipples: the masks, the display lists behind them, and what they let through.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPolyStipple.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kSide = 32;
constexpr int kWidth = 64;
constexpr int kHeight = 48;

/** Whether a mask lets the pixel through, the leftmost one in the highest bit. */
bool passes(const unsigned char* mask, int x, int y)
{
    return mask[y % kSide * 4 + x % kSide / 8] & (0x80 >> (x % 8));
}

Bytes maskOf(const TglPolyStipple& stipple)
{
    return Bytes(stipple.mask(), stipple.mask() + TglPolyStipple::kMaskBytes);
}

Bytes numbered(int count, int first)
{
    Bytes bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<unsigned char>(first + 5 * i));
    return bytes;
}

struct NamedPattern
{
    const char* name;
    const TglPolyStipple& stipple;
    unsigned code;
};

const NamedPattern kNamed[] = {
    {"solid", TglPolyStipple::kSolid, 0xFFFF},    {"halftone", TglPolyStipple::kHalftone, 0xA5A5},
    {"25 %", TglPolyStipple::k25Percent, 0xA0A0}, {"75 %", TglPolyStipple::k75Percent, 0xAFAF},
    {"slash", TglPolyStipple::kSlash, 0x9C63},
};

testing::AssertionResult showsThrough(T3dPort& port, const unsigned char* mask)
{
    port.clearColor(kCblack);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.color(kCwhite);
    port.setCurrentContext();
    glRectd(-1, -1, 1, 1);
    std::vector<GLubyte> green(kWidth * kHeight);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kWidth, kHeight, GL_GREEN, GL_UNSIGNED_BYTE, green.data());
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            if (bool(green[std::size_t(y * kWidth + x)]) != passes(mask, x, y))
                return testing::AssertionFailure() << "pixel " << x << ", " << y;
    return testing::AssertionSuccess();
}

} // namespace

TEST(PolygonStippleMask, OfACodeIsATileOfFourByFour)
{
    for (const unsigned code : {0xFFFFu, 0xA5A5u, 0xA0A0u, 0xAFAFu, 0x9C63u, 0x0000u, 0x1248u, 0xFFFEu}) {
        const TglPolyStipple stipple{static_cast<unsigned short>(code)};
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x)
                ASSERT_EQ(bool(code >> (4 * (y % 4) + 3 - x % 4) & 1), passes(stipple.mask(), x, y))
                    << std::hex << code << std::dec << ", " << x << ", " << y;
        EXPECT_EQ(code == 0xFFFF, stipple.isSolid());
    }
    for (const NamedPattern& each : kNamed)
        EXPECT_EQ(maskOf(TglPolyStipple(static_cast<unsigned short>(each.code))), maskOf(each.stipple)) << each.name;
}

TEST(PolygonStippleMask, OfBytes)
{
    // Sixteen rows of two bytes go to the even rows, the first four once more to the odd ones at the end.
    const Bytes sixteen = numbered(32, 11);
    Bytes expected(128, 0);
    const auto put = [&](int row, int pair) {
        for (int i = 0; i < 4; ++i)
            expected[std::size_t(4 * row + i)] = sixteen[std::size_t(2 * pair + i % 2)];
    };
    for (int i = 0; i < 16; ++i)
        put(2 * i, i);
    put(25, 0);
    put(27, 1);
    put(29, 2);
    put(31, 3);
    EXPECT_EQ(expected, maskOf(TglPolyStipple(sixteen.data(), 32)));

    // Eight rows repeat every seven, the later one winning where two meet.
    const Bytes eight = numbered(8, 0x21);
    constexpr int kRows[32] = {0, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3, 4, 5, 6, 7, 1,
                               2, 3, 4, 5, 6, 7, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3};
    const TglPolyStipple stipple(eight.data(), 8);
    for (int row = 0; row < kSide; ++row)
        for (int i = 0; i < 4; ++i)
            ASSERT_EQ(eight[std::size_t(kRows[row])], stipple.mask()[4 * row + i]) << "row " << row;
}

TEST(PolygonStippleMask, SolidIsWhatHidesNothing)
{
    const Bytes ones(128, 0xFF);
    Bytes one = ones;
    one[77] = 0xFE;
    EXPECT_TRUE(TglPolyStipple(ones.data(), 128).isSolid());
    EXPECT_FALSE(TglPolyStipple(one.data(), 128).isSolid());
    EXPECT_TRUE(TglPolyStipple(nullptr, 128).isSolid());
    for (const int count : {5, 0, -1, 129})
        EXPECT_EQ(ones, maskOf(TglPolyStipple(one.data(), count))) << count;
}

TEST(Stipples, APolygonShowsThroughTheMaskAtOnceAndByList)
{
    PortWindow<> window(kWidth, kHeight);
    ASSERT_TRUE(window.show());
    for (int round = 0; round < 2; ++round) {
        for (const NamedPattern& each : kNamed) {
            window.port().polygonStipple(each.stipple);
            EXPECT_TRUE(showsThrough(window.port(), each.stipple.mask())) << each.name << ", round " << round;
            EXPECT_EQ(TstringArray(), window.port().stateDifferences());
        }
    }
}
