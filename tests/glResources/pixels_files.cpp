// Image files written from pixel blocks.

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "Graphics/glResources/TglPixels.h"
#include "foundation/TpixelMap.h"
#include "foundation/Tstring.h"
#include "image/TimageFile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

using Format = TglPixels::TpixelFormat;
using Type = TglPixels::TpixelType;

constexpr int kWidth = 5;
constexpr int kHeight = 3;

struct FileCase
{
    Format format;
    int components;
    int channels[4]; ///< where red, green, blue and alpha stand
};

constexpr FileCase kCases[] = {{TglPixels::kRgb, 3, {0, 1, 2, -1}},
                               {TglPixels::kRgba, 4, {0, 1, 2, 3}},
                               {TglPixels::kBgra, 4, {2, 1, 0, 3}}};

/** Red, green, blue and alpha, from 0 to 255, the bottom row first. */
int channelOf(int x, int y, int channel)
{
    const int values[] = {50 * x, 100 * y, 255 - 40 * x - 20 * y, 10 * x};
    return values[channel];
}

template <class T> void put(std::uint8_t* at, T value)
{
    std::memcpy(at, &value, sizeof value);
}

TglPixels picture(const FileCase& each, Type type)
{
    TglPixels block(each.format, kWidth, kHeight, type);
    std::uint8_t* at = block.pixels();
    const int bytes = block.data()->rowBytes(false) / kWidth / each.components;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x, at += each.components * bytes) {
            for (int channel = 0; channel < 4; ++channel) {
                if (each.channels[channel] < 0)
                    continue;
                std::uint8_t* to = at + each.channels[channel] * bytes;
                const auto value = static_cast<std::uint32_t>(channelOf(x, y, channel));
                switch (type) {
                case TglPixels::kUnsignedByte:
                    put(to, static_cast<std::uint8_t>(value));
                    break;
                case TglPixels::kUnsignedShort:
                    put(to, static_cast<std::uint16_t>(value * 257));
                    break;
                case TglPixels::kUnsignedInt:
                    put(to, value * 16843009u);
                    break;
                default:
                    put(to, float(value) / 255);
                }
            }
        }
    }
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
        for (const Type type :
             {TglPixels::kUnsignedByte, TglPixels::kUnsignedShort, TglPixels::kUnsignedInt, TglPixels::kFloat}) {
            for (const char* name : {"a.png", "a.bmp", "a.ppm"}) {
                SCOPED_TRACE(std::to_string(each.format) + ' ' + std::to_string(type) + ' ' + name);
                TglPixels block = picture(each, type);
                const TglPixels copy = block;
                ASSERT_TRUE(block.write(path(name)));
                EXPECT_EQ(TglPixels::kBgra, block.data()->fFormat);
                EXPECT_EQ(TglPixels::kUnsignedByte, block.data()->fType);
                EXPECT_EQ(each.format, copy.data()->fFormat) << "a copy is left alone";
                EXPECT_EQ(type, copy.data()->fType);

                const QImage image(fFolder.filePath(name));
                ASSERT_EQ(QSize(kWidth, kHeight), image.size());
                EXPECT_FALSE(image.hasAlphaChannel());
                for (int y = 0; y < kHeight; ++y) {
                    for (int x = 0; x < kWidth; ++x) {
                        const QRgb wanted = qRgb(channelOf(x, y, 0), channelOf(x, y, 1), channelOf(x, y, 2));
                        ASSERT_EQ(wanted, image.pixel(x, kHeight - 1 - y)) << x << ' ' << y;
                        const std::uint8_t* bgra = block.data()->fData + 4 * (y * kWidth + x);
                        ASSERT_EQ(wanted, qRgb(bgra[2], bgra[1], bgra[0])) << x << ' ' << y;
                    }
                }
            }
        }
    }
}

TEST_F(PixelFiles, FloatsOutOfRangeAreHeld)
{
    TglPixels block(TglPixels::kRgb, 1, 1, TglPixels::kFloat);
    const float values[] = {-3.0f, 1e30f, std::numeric_limits<float>::quiet_NaN()};
    std::memcpy(block.pixels(), values, sizeof values);
    ASSERT_TRUE(block.write(path("held.png")));
    EXPECT_EQ(qRgb(0, 255, 0), QImage(fFolder.filePath("held.png")).pixel(0, 0));
}

TEST_F(PixelFiles, AnythingElseFails)
{
    for (const Format format : {TglPixels::kDepth, TglPixels::kRed, TglPixels::kGreen, TglPixels::kBlue,
                                TglPixels::kAlpha, Format(GL_LUMINANCE)}) {
        TglPixels block(format, 3, 3);
        block.pixels();
        EXPECT_FALSE(block.write(path("no.png"))) << format;
    }
    TglPixels bits(TglPixels::kRgb, 3, 3, TglPixels::kBitmap);
    EXPECT_FALSE(bits.write(path("no.png")));
    for (const auto& [width, height] : {std::pair(0, 3), std::pair(3, -1), std::pair(40000, 1), std::pair(1 << 30, 9)}) {
        TglPixels block(TglPixels::kRgb, width, height);
        EXPECT_FALSE(block.write(path("no.png"))) << width << ' ' << height;
    }
    TglPixels freed(TglPixels::kRgb, 3, 3);
    freed.free();
    EXPECT_FALSE(freed.write(path("no.png")));
    TglPixels block(TglPixels::kRgb, 3, 3);
    EXPECT_FALSE(block.write(path("no/such/folder.png")));
    EXPECT_FALSE(block.write(path("no.ending")));
    EXPECT_FALSE(block.write(Tstring()));
    EXPECT_FALSE(QFile::exists(fFolder.filePath("no.png")));
    // What was never allocated is black.
    TglPixels black(TglPixels::kRgba, 3, 3);
    EXPECT_TRUE(black.write(path("black.png")));
    EXPECT_EQ(qRgb(0, 0, 0), QImage(fFolder.filePath("black.png")).pixel(1, 1));
}

TEST_F(PixelFiles, TheHostsFileKeepsAlphaWhenTold)
{
    TpixelMap map;
    ASSERT_TRUE(map.setSize(2, 1));
    const std::uint8_t bytes[] = {10, 20, 30, 40, 50, 60, 70, 255};
    for (const bool rgba : {false, true}) {
        for (const bool alpha : {false, true}) {
            map.setRgba(rgba);
            std::memcpy(map.pixels(), bytes, sizeof bytes);
            TimageFile file;
            ASSERT_TRUE(file.create(path("alpha.png"), 2, 1));
            file.setAlpha(alpha);
            ASSERT_TRUE(file.write(map));
            file.close();
            EXPECT_FALSE(file.write(map)) << "closed";
            const QRgb got = QImage(fFolder.filePath("alpha.png")).pixel(0, 0);
            EXPECT_EQ(rgba ? qRgba(10, 20, 30, alpha ? 40 : 255) : qRgba(30, 20, 10, alpha ? 40 : 255), got);
        }
    }
    TimageFile file;
    EXPECT_FALSE(file.create(path("alpha.png"), 0, 1));
    ASSERT_TRUE(file.create(path("alpha.png"), 3, 1));
    EXPECT_FALSE(file.write(map)) << "another size";
    for (const auto& [width, height] : {std::pair(0, 1), std::pair(-1, 1), std::pair(32768, 1), std::pair(1, 1 << 30)}) {
        EXPECT_FALSE(map.setSize(width, height));
        EXPECT_EQ(nullptr, map.pixels());
    }
}
