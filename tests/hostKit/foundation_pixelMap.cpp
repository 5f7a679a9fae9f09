// Pixel maps: resampling, channel orders.

#include "foundation/TpixelMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

/** A ramp in each channel: red along x, green along y, blue both; alpha is full. */
void fillRamp(TpixelMap& map, int width, int height)
{
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const p = map.pixels() + (y * width + x) * map.channels();
            const int u = (255 * (2 * x + 1)) / (2 * width);
            const int v = (255 * (2 * y + 1)) / (2 * height);
            const int values[] = {u, v, (u + v) / 2, 255};
            std::copy_n(values, map.channels(), p);
        }
    }
}

} // namespace

TEST(PixelMap, ZoomResamplesEveryChannelForItself)
{
    static const int kSizes[][4] = {{31, 17, 64, 16}, {100, 3, 128, 2}, {64, 64, 33, 21}, {9, 7, 9, 5}, {5, 3, 1, 1}};
    for (const auto& s : kSizes) {
        for (const int channels : {3, 4}) {
            SCOPED_TRACE(testing::Message() << s[0] << " x " << s[1] << " to " << s[2] << " x " << s[3]);
            std::vector<std::uint8_t> lent(std::size_t(s[0] * s[1] * channels + 1));
            TpixelMap map;
            ASSERT_TRUE(map.wrap(lent.data() + 1, s[0], s[1], channels)); // at an odd address
            fillRamp(map, s[0], s[1]);
            ASSERT_TRUE(map.zoom(TportRect(0, 0, short(s[2]), short(s[3]))));
            ASSERT_EQ(std::size_t(s[2] * channels), map.rowBytes());
            EXPECT_FALSE(map.hasNonUnitAlpha());
            EXPECT_FALSE(map.zoom(TportRect(0, 0, -3, 5)));
            TpixelMap wanted;
            ASSERT_TRUE(wanted.setSize(s[2], s[3], channels));
            fillRamp(wanted, s[2], s[3]);
            // A ramp stays one, within half of its step.
            const int tolerance = 2 + (s[2] != s[0] ? 255 / (2 * s[0]) : 0) + (s[3] != s[1] ? 255 / (2 * s[1]) : 0);
            for (int i = 0; i < s[2] * s[3] * channels; ++i)
                ASSERT_LE(std::abs(map.pixels()[i] - wanted.pixels()[i]), tolerance) << "byte " << i;
        }
    }
}
