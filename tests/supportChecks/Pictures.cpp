#include "support/PictureComparison.h"

#include <gtest/gtest.h>

TEST(PictureComparison, CountsPixelsBeyondTheTolerance)
{
    QImage wanted(10, 10, QImage::Format_RGB32);
    wanted.fill(qRgb(100, 100, 100));
    QImage got = wanted;
    got.setPixel(2, 3, qRgb(100, 104, 100));
    got.setPixel(9, 9, qRgb(200, 100, 90));

    const PictureComparison strict(wanted, got, 0);
    EXPECT_TRUE(strict.sameSize);
    EXPECT_EQ(strict.largest, 100);
    EXPECT_DOUBLE_EQ(strict.share, 0.02);
    EXPECT_EQ(strict.difference.pixel(2, 3), qRgb(0, 16, 0));
    EXPECT_EQ(strict.difference.pixel(9, 9), qRgb(255, 0, 40));
    EXPECT_DOUBLE_EQ(PictureComparison(wanted, got, 4).share, 0.01);
    EXPECT_DOUBLE_EQ(PictureComparison(wanted, got, 100).share, 0);
    EXPECT_EQ(PictureComparison(wanted, wanted, 0).largest, 0);

    EXPECT_FALSE(PictureComparison(wanted, got.copy(0, 0, 10, 9), 255).sameSize);
    EXPECT_FALSE(PictureComparison(QImage(), QImage(), 255).sameSize);
}
