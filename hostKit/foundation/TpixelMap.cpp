#include "foundation/TpixelMap.h"

#include <QImage>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr int kLargestSide = std::numeric_limits<short>::max();

bool isUsable(int width, int height, int channels)
{
    return width > 0 && height > 0 && width <= kLargestSide && height <= kLargestSide &&
           (channels == 3 || channels == TpixelMap::kChannels);
}

template <std::size_t Channels> void switchRedAndBlue(std::uint8_t* pixel, std::size_t bytes)
{
    for (std::size_t i = 0; i < bytes; i += Channels)
        std::swap(pixel[i], pixel[i + 2]);
}

} // namespace

bool TpixelMap::setSize(int width, int height, int channels)
{
    fRect = TportRect();
    fPixels = nullptr;
    fOwned.reset();
    if (!isUsable(width, height, channels))
        return false;
    // The zero pages of calloc take no memory before they are written to, however large the map.
    fOwned.reset(static_cast<std::uint8_t*>(std::calloc(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height), static_cast<std::size_t>(channels))));
    if (!fOwned)
        return false;
    fPixels = fOwned.get();
    fChannels = channels;
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}

bool TpixelMap::wrap(void* pixels, int width, int height, int channels)
{
    fOwned.reset();
    fPixels = nullptr;
    fRect = TportRect();
    if (!pixels || !isUsable(width, height, channels))
        return false;
    fPixels = static_cast<std::uint8_t*>(pixels);
    fChannels = channels;
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}

bool TpixelMap::zoom(const TportRect& r)
{
    if (!fPixels || !isUsable(r.width(), r.height(), fChannels))
        return false;
    // The order of channels and rows makes no difference here. Called premultiplied, colours are left apart from alpha.
    const auto format = fChannels == 3 ? QImage::Format_RGB888 : QImage::Format_ARGB32_Premultiplied;
    QImage picture(fPixels, width(), height(), static_cast<int>(rowBytes()), format);
    if (reinterpret_cast<std::uintptr_t>(fPixels) % alignof(std::uint32_t) != 0)
        picture = picture.copy(); // QImage works on words
    const QImage zoomed =
        picture.scaled(r.width(), r.height(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(format);
    if (zoomed.isNull())
        return false;
    const std::size_t row = static_cast<std::size_t>(r.width()) * static_cast<std::size_t>(fChannels);
    auto* const pixels = static_cast<std::uint8_t*>(std::malloc(row * static_cast<std::size_t>(r.height())));
    if (!pixels)
        return false;
    for (int y = 0; y < r.height(); ++y)
        std::memcpy(pixels + row * static_cast<std::size_t>(y), zoomed.constScanLine(y), row);
    fOwned.reset(pixels);
    fPixels = pixels;
    fRect = r;
    return true;
}

void TpixelMap::rgbaSwitch()
{
    if (fPixels && fChannels == 3)
        switchRedAndBlue<3>(fPixels, byteCount());
    else if (fPixels)
        switchRedAndBlue<4>(fPixels, byteCount());
    fRgba = !fRgba;
}

bool TpixelMap::hasNonUnitAlpha() const
{
    if (!fPixels || fChannels != kChannels)
        return false;
    // Row by row: the loop in one has no way out, so that it can work on several pixels at once.
    for (int y = 0; y < height(); ++y) {
        const std::uint8_t* const row = fPixels + static_cast<std::size_t>(y) * rowBytes();
        std::uint8_t common = 0xFF;
        for (std::size_t i = 3; i < rowBytes(); i += kChannels)
            common &= row[i];
        if (common != 0xFF)
            return true;
    }
    return false;
}
