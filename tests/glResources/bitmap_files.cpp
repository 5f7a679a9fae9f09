// Bitmaps: their bits, and where they come from.

#include "support/HostProbes.h"

#include "Graphics/glResources/TglBitmap.h"
#include "image/TxpmUtil.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes bits(const TglBitmap& bitmap)
{
    if (!bitmap.fBits)
        return {};
    return Bytes(bitmap.fBits.get(), bitmap.fBits.get() + bitmap.rowBytes() * bitmap.fHeight);
}

/** A black and white XPM file. */
std::string xpm(const char* head, const char* rows)
{
    return std::string("/* XPM */\nstatic char* a[] = {\n\"") + head + "\",\n\"  c white\",\n\"# c black\",\n" + rows;
}

class BitmapFiles : public testing::Test
{
protected:
    std::string write(const char* name, const std::string& text)
    {
        QFile file(fFolder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.data(), qint64(text.size()));
        return file.fileName().toStdString();
    }

    QTemporaryDir fFolder;
    ErrorCollector fErrors;
};

} // namespace

TEST(Bitmaps, RowsAreBottomUpAndPaddedTo16Bits)
{
    EXPECT_EQ(bits(TglBitmap::kSquare), (Bytes{0xF8, 0, 0x88, 0, 0x88, 0, 0x88, 0, 0xF8, 0}));
    const char* const rows[] = {"x", nullptr, "                x         beyond"};
    EXPECT_EQ(bits(TglBitmap(rows, 17, 3, 0, 0)), (Bytes{0, 0, 0x80, 0, 0, 0, 0, 0, 0x80, 0, 0, 0}));
    const unsigned char packed[] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(bits(TglBitmap(packed, 8, 3, 0, 0)), (Bytes{1, 2, 3, 0, 0, 0}));
    EXPECT_EQ(bits(TglBitmap(packed, 16, 3, 0, 0)), Bytes(packed, packed + 6));
    for (const unsigned size : {0u, 0xFFFFFFFFu, 0x7FFFFFFFu})
        EXPECT_EQ(TglBitmap(packed, size, size, 0, 0).fBits, nullptr);

    TglBitmap copy(TglBitmap::kCircle);
    copy = TglBitmap(packed, 16, 3, 1, 2);
    EXPECT_EQ(bits(copy), Bytes(packed, packed + 6));
}

TEST_F(BitmapFiles, XpmFilesAreFoundOnThePathAndLoaded)
{
    const std::string picture = xpm("9 2 2 1 3 1", "\"#       #\",\n\" #       \"\n};\n");
    write("good.xpm", picture);
    const ScopedEnv path("XBMLANGPATH", ("/nowhere:" + fFolder.path().toStdString() + "/%B").c_str());
    ASSERT_EQ(QProcess::execute("gzip", {QString::fromStdString(write("packed.xpm", picture))}), 0);
    for (const char* name : {"good.xpm", "good", "packed.xpm.gz"}) {
        TglBitmap bitmap(TglBitmap::kCircle);
        bitmap.loadPixmap(name);
        EXPECT_EQ(bits(bitmap), (Bytes{0x40, 0, 0x80, 0x80}));
        EXPECT_EQ(bitmap.fXorig, 3u);
        EXPECT_EQ(bitmap.fYorig, 1u);
    }
    EXPECT_THAT(fErrors.messages(), testing::IsEmpty());
    TxpmUtil::addSearchPath(fFolder.path().toStdString());
    EXPECT_EQ(TxpmUtil::getFullPathName("good.xpm").toStdString(), fFolder.filePath("good.xpm").toStdString());
    TglBitmap("none").loadPixmap(nullptr);
    EXPECT_THAT(fErrors.messages(), testing::ElementsAre("Unable to find bitmap: /none"));
}

TEST_F(BitmapFiles, MalformedXpmFilesAreReportedAndLeaveNothing)
{
    const std::string files[] = {"",
                                 "no picture at all",
                                 xpm("9 5 2 1", "\"#        \"\n};\n"),
                                 xpm("9 2 2 1", ""),
                                 xpm("2000000000 2000000000 2 1", "\"#\"\n};\n"),
                                 xpm("60000 60000 2 1", "\"#\"\n};\n"),
                                 xpm("0 0 2 1", "};\n"),
                                 xpm("2 1 2000000000 1", "\"##\"\n};\n")};
    for (const std::string& text : files) {
        const std::string file = write("bad.xpm", text);
        fErrors.clear();
        TglBitmap bitmap(TglBitmap::kCircle);
        bitmap.loadPixmap(file.c_str());
        EXPECT_THAT(fErrors.messages(), testing::ElementsAre("Unable to load bitmap: " + file + "/" + file)) << text;
        EXPECT_EQ(bitmap.fBits, nullptr) << text;
    }
}
