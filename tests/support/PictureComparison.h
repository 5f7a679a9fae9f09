#pragma once

#include <QImage>

/** How far two pictures of one size are apart. */
struct PictureComparison
{
    bool sameSize = false;
    int largest = 255; ///< greatest difference in a red, green, blue or alpha value, 0 to 255
    double share = 1;  ///< of the pixels, 0 to 1, that differ by more than the tolerance
    QImage difference; ///< the differences by channel, four times as strong; null for unequal sizes

    /** @param tolerance the difference in a channel that does not count, 0 to 255 */
    PictureComparison(const QImage& wanted, const QImage& got, int tolerance);
};
