#include "QtExtensions/QlirnFontRaster.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QString>

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using Raster = QlirnFontRaster;
using Bytes = std::vector<unsigned char>;

constexpr unsigned char kUntouched = 0x55;

/** An image of @p width columns by way of the strip where it can be used, or drawn as a whole. */
Bytes image(Raster& raster, const char* text, bool smooth, int width, bool whole)
{
    Bytes out(std::size_t(width) * std::size_t(raster.getHeight()), kUntouched);
    EXPECT_TRUE(whole ? raster.drawTextImage(QString::fromUtf8(text), width, smooth, out.data(), width)
                      : raster.getTextImage(text, smooth, out.data(), width));
    return out;
}

Bytes image(Raster& raster, const char* text, bool smooth, bool whole)
{
    return image(raster, text, smooth, raster.getWidth(text), whole);
}

TEST(FontRasterWithoutX, StripGivesTheBytesOfTheWholeText)
{
    std::string all;
    for (char c = ' '; c < 127; ++c)
        all += c;
    const char* const texts[] = {all.c_str(), "office fluffy AVAToT", "jj//__TTffrr|||", " a ", "jW", "The quick brown fox"};
    for (const char* family : {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"})
        for (int size : {7, 12, 13, 31})
            for (int weight : {50, 75})
                for (int stretch : {0, 75, 100, 150})
                    for (bool smooth : {true, false})
                        for (const char* text : texts) {
                            Raster raster(family, size, Raster::style(0, 0, weight, stretch));
                            const Bytes strip = image(raster, text, smooth, false);
                            ASSERT_EQ(strip, image(raster, text, smooth, true))
                                << family << ' ' << size << ' ' << weight << ' ' << stretch << ' ' << smooth << ' ' << text;
                            ASSERT_GT(std::accumulate(strip.begin(), strip.end(), 0), 0);
                        }
}

} // namespace
