#pragma once

#include <QImage>

#include <gtest/gtest.h>

/** What still passes as the same picture. */
struct PictureTolerance
{
    int channel = 2;  ///< difference in a red, green, blue or alpha value that does not count, 0 to 255
    double share = 0; ///< of the pixels, 0 to 1, that may differ by more
};

/**
 * Whether @p got is the stored picture tests/pictures/NAME.png:
 *
 *     EXPECT_TRUE(matchesPicture(port.grab(), "cube-wireframe"));
 *
 * If not, the message names where the wanted, the drawn and the difference picture are. With UPDATE_PICTURES=1 in the
 * environment the drawn picture is stored instead.
 */
::testing::AssertionResult matchesPicture(const QImage& got, const QString& name, PictureTolerance tolerance = {});
