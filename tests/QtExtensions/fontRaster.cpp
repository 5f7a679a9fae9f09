#include "QtExtensions/QlirnFontRaster.h"

#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

using Raster = QlirnFontRaster;
using Bytes = std::vector<unsigned char>;

constexpr unsigned char kUntouched = 0x55;

/** An image of @p width columns by way of the strip where it can be used, or drawn as a whole. */
Bytes image(Raster& raster, const char* text, bool smooth, bool whole, int width = 0)
{
    if (width == 0)
        width = raster.getWidth(text);
    Bytes out(std::size_t(width) * std::size_t(raster.getHeight()), kUntouched);
    EXPECT_TRUE(whole ? raster.drawTextImage(QString::fromUtf8(text), width, smooth, out.data(), width)
                      : raster.getTextImage(text, smooth, out.data(), width));
    return out;
}

TEST(FontRasterWithoutX, StripGivesTheBytesOfTheWholeText)
{
    std::string all;
    for (char c = ' '; c < 127; ++c)
        all += c;
    const char* const texts[] = {all.c_str(), "office fluffy AVAToT", "jj//__TTffrr|||", " a ",
                                 "jW",        "The quick brown fox"};
    for (const char* family : {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"})
        for (int size : {6, 7, 12, 16, 31})
            for (int weight : {50, 75})
                for (int stretch : {0, 50, 150}) {
                    Raster raster(family, size, Raster::style(0, 0, weight, stretch));
                    for (bool smooth : {true, false})
                        for (const char* text : texts) {
                            const Bytes strip = image(raster, text, smooth, false);
                            ASSERT_EQ(strip, image(raster, text, smooth, true))
                                << family << ' ' << size << ' ' << weight << ' ' << stretch << ' ' << smooth << ' '
                                << text;
                            ASSERT_GT(std::accumulate(strip.begin(), strip.end(), 0), 0);
                        }
                }
}

TEST(FontRasterWithoutX, SlantLinesAndOtherCharactersAreDrawnWhole)
{
    for (const auto style :
         {Raster::style(1), Raster::style(2), Raster::style(0, 1), Raster::style(0, 2), Raster::style(0, 3)}) {
        Raster raster("DejaVu Sans", 14, style);
        EXPECT_EQ(image(raster, "fjord", true, false), image(raster, "fjord", true, true));
        EXPECT_EQ(raster.getMemoryUsage(), 0) << "the strip was made";
        raster.setIncline(0);
        raster.setLine(0);
        image(raster, "a\xc3\xa4\xe2\x82\xac", true, false);
        EXPECT_EQ(raster.getMemoryUsage(), 0);
        image(raster, "plain", true, false);
        const std::int64_t once = raster.getMemoryUsage();
        EXPECT_GT(once, 0);
        image(raster, "plain", false, false);
        EXPECT_EQ(raster.getMemoryUsage(), 2 * once);
        raster.setWeight(75);
        EXPECT_EQ(raster.getMemoryUsage(), 0) << "a strip of another font was kept";
    }
}

TEST(FontRasterWithoutX, RowsEndAtTheStrideAndOddTextsAreSafe)
{
    EXPECT_EQ(Raster("no such family", -5, Raster::defaultStyle()).getActualPixelSize(), 1);
    Raster mono("DejaVu Sans Mono", 12, Raster::defaultStyle());
    const int width = mono.getWidth("a");
    const Bytes cut = image(mono, "ab", true, false, width);
    EXPECT_EQ(cut, image(mono, "a", true, false, width));
    unsigned char none = kUntouched;
    EXPECT_TRUE(mono.getTextImage("abc", true, &none, 0));
    EXPECT_TRUE(mono.getTextImage("\xc3\xa4", true, &none, -7));
    EXPECT_EQ(none, kUntouched);
    EXPECT_FALSE(mono.getTextImage("abc", true, nullptr, 100));
    EXPECT_EQ(mono.getWidth(std::string(100000, 'x')), 100000 * width);
    EXPECT_GT(mono.getWidth("\xff\xfe"), 0);
}

} // namespace
