// Image files written from pixel blocks.

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "Graphics/glResources/TglPixels.h"
#include "foundation/Tstring.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Format = TglPixels::TpixelFormat;

constexpr int kWidth = 5;
constexpr int kHeight = 3;

struct FileCase
{
    Format format;
    int components;
    int channels[4]; ///< where red, green, blue and alpha stand
};

constexpr FileCase kCases[] = {
    {TglPixels::kRgb, 3, {0, 1, 2, -1}}, {TglPixels::kRgba, 4, {0, 1, 2, 3}}, {TglPixels::kBgra, 4, {2, 1, 0, 3}}};

/** Red, green, blue and alpha, from 0 to 255, the bottom row first. */
int channelOf(int x, int y, int channel)
{
    const int values[] = {50 * x, 100 * y, 255 - 40 * x - 20 * y, 10 * x};
    return values[channel];
}

TglPixels picture(const FileCase& each)
{
    TglPixels block(each.format, kWidth, kHeight);
    std::uint8_t* at = block.pixels();
    for (int i = 0; i < kWidth * kHeight; ++i, at += each.components)
        for (int channel = 0; channel < 4; ++channel)
            if (each.channels[channel] >= 0)
                at[each.channels[channel]] = std::uint8_t(channelOf(i % kWidth, i / kWidth, channel));
    return block;
}

class PixelFiles : public testing::Test
{
protected:
    Tstring path(const char* name) { return Tstring(fFolder.filePath(name).toUtf8().constData()); }

    QTemporaryDir fFolder;
};

} // namespace

TEST_F(PixelFiles, ShowTheRightColours)
{
    for (const FileCase& each : kCases) {
        for (const char* name : {"a.png", "a.bmp", "a.ppm"}) {
            SCOPED_TRACE(std::to_string(each.format) + ' ' + name);
            TglPixels block = picture(each);
            const TglPixels copy = block;
            ASSERT_TRUE(block.write(path(name)));
            EXPECT_EQ(each.format, copy.data()->fFormat) << "a copy is left alone";
            const QImage image(fFolder.filePath(name));
            ASSERT_EQ(QSize(kWidth, kHeight), image.size());
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x)
                    ASSERT_EQ(qRgb(channelOf(x, y, 0), channelOf(x, y, 1), channelOf(x, y, 2)),
                              image.pixel(x, kHeight - 1 - y))
                        << x << ' ' << y;
        }
    }
}

TEST_F(PixelFiles, AnythingElseFails)
{
    for (const Format format : {TglPixels::kDepth, TglPixels::kRed, TglPixels::kGreen, TglPixels::kBlue,
                                TglPixels::kAlpha, Format(GL_LUMINANCE)}) {
        TglPixels block(format, 3, 3);
        block.pixels();
        EXPECT_FALSE(block.write(path("no.png"))) << format;
    }
    for (const auto& [width, height] :
         {std::pair(0, 3), std::pair(3, -1), std::pair(40000, 1), std::pair(1 << 30, 9)}) {
        TglPixels block(TglPixels::kRgb, width, height);
        EXPECT_FALSE(block.write(path("no.png"))) << width << ' ' << height;
    }
    TglPixels block(TglPixels::kRgb, 3, 3);
    EXPECT_FALSE(block.write(path("no/such/folder.png")));
    EXPECT_FALSE(block.write(Tstring()));
    EXPECT_FALSE(QFile::exists(fFolder.filePath("no.png")));
}
