#include "foundation/TpixelMap.h"

#include <limits>
#include <new>

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
    fOwned.clear();
    if (!isUsable(width, height))
        return false;
    try {
        fOwned.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kChannels, 0);
    } catch (const std::bad_alloc&) {
        return false;
    }
    fPixels = fOwned.data();
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}

bool TpixelMap::wrap(void* pixels, int width, int height)
{
    fOwned.clear();
    fPixels = nullptr;
    fRect = TportRect();
    if (!pixels || !isUsable(width, height))
        return false;
    fPixels = static_cast<std::uint8_t*>(pixels);
    fRect = TportRect(0, 0, static_cast<short>(width), static_cast<short>(height));
    return true;
}
