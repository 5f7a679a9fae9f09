#include "foundation/TpixelMap.h"

#include <limits>

namespace {

constexpr int kLargestSide = std::numeric_limits<short>::max();

bool isUsable(int width, int height)
{
    return width > 0 && height > 0 && width <= kLargestSide && height <= kLargestSide;
}

} // namespace

bool TpixelMap::setSize(int width, int height)
{
    fRect = TportRect();
    fPixels = nullptr;
    fOwned.reset();
    if (!isUsable(width, height))
        return false;
    // The zero pages of calloc take no memory before they are written to, however large the map.
    fOwned.reset(static_cast<std::uint8_t*>(
        std::calloc(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kChannels)));
    if (!fOwned)
        return false;
    fPixels = fOwned.get();
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}

bool TpixelMap::wrap(void* pixels, int width, int height)
{
    fOwned.reset();
    fPixels = nullptr;
    fRect = TportRect();
    if (!pixels || !isUsable(width, height))
        return false;
    fPixels = static_cast<std::uint8_t*>(pixels);
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}
