#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <vector>

/** The colour space in which a control is asked for floating-point pixels. */
enum PixelMapReadColorSpace : int {
    kReadDisplaySpace = 0, ///< as shown
    kReadLinearSpace = 1   ///< proportional to light
};

/** A rectangle of pixels with @p T as the type of a channel, the bottom row first, its channels side by side. */
template <class T> class TgenericPixelMap
{
public:
    TgenericPixelMap() = default;

    /** Makes room for @p width by @p height pixels of @p channels, all zero; false, and empty, where that cannot be had. */
    bool setSize(int width, int height, int channels = 4)
    {
        fValues.clear();
        fWidth = fHeight = fChannels = 0;
        constexpr int kLargestSide = std::numeric_limits<short>::max();
        if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide || channels < 1 || channels > 4)
            return false;
        try {
            fValues.resize(std::size_t(width) * std::size_t(height) * std::size_t(channels));
        } catch (const std::bad_alloc&) {
            return false;
        }
        fWidth = width;
        fHeight = height;
        fChannels = channels;
        return true;
    }

    int width() const { return fWidth; }
    int height() const { return fHeight; }
    int channels() const { return fChannels; }
    /** The first channel of the pixel at the lower left; null for an empty map. */
    T* pixels() { return fValues.empty() ? nullptr : fValues.data(); }
    const T* pixels() const { return fValues.empty() ? nullptr : fValues.data(); }

private:
    std::vector<T> fValues;
    int fWidth = 0;
    int fHeight = 0;
    int fChannels = 0;
};
