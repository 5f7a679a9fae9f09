#include "support/PictureComparison.h"

#include <algorithm>
#include <cstdlib>

PictureComparison::PictureComparison(const QImage& wanted, const QImage& got, int tolerance)
    : sameSize(!wanted.isNull() && wanted.size() == got.size())
{
    if (!sameSize)
        return;
    const QImage a = wanted.convertToFormat(QImage::Format_RGBA8888);
    const QImage b = got.convertToFormat(QImage::Format_RGBA8888);
    difference = QImage(a.size(), QImage::Format_RGB888);
    largest = 0;
    long differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* const lineA = a.constScanLine(y);
        const uchar* const lineB = b.constScanLine(y);
        uchar* const out = difference.scanLine(y);
        for (int x = 0; x < a.width(); ++x) {
            int most = 0;
            for (int channel = 0; channel < 4; ++channel) {
                const int apart = std::abs(lineA[4 * x + channel] - lineB[4 * x + channel]);
                most = std::max(most, apart);
                if (channel < 3)
                    out[3 * x + channel] = static_cast<uchar>(std::min(255, 4 * apart));
            }
            largest = std::max(largest, most);
            differing += most > tolerance;
        }
    }
    share = static_cast<double>(differing) / (static_cast<double>(a.width()) * a.height());
}
