#pragma once

#include "foundation/TportRect.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/**
 * A rectangle of pixels of four 8-bit channels, the bottom row first. It owns its pixels, or lends those of somebody else
 * (wrap).
 */
class TpixelMap
{
public:
    static constexpr int kChannels = 4;

    TpixelMap() = default;
    TpixelMap(const TpixelMap&) = delete;
    TpixelMap& operator=(const TpixelMap&) = delete;

    /** Makes room for @p width by @p height pixels, all zero; false, and an empty map, for a size that cannot be had. */
    bool setSize(int width, int height);
    /** Takes @p pixels, which must hold and outlive the map's use of width * height * 4 bytes. */
    bool wrap(void* pixels, int width, int height);

    const TportRect& rect() const { return fRect; }
    int width() const { return fRect.width(); }
    int height() const { return fRect.height(); }
    /** The first byte of the bottom row; null for an empty map. */
    std::uint8_t* pixels() { return fPixels; }
    const std::uint8_t* pixels() const { return fPixels; }
    std::size_t rowBytes() const { return static_cast<std::size_t>(width()) * kChannels; }

    /** True for red first (GL_RGBA), false for blue first (GL_BGRA). */
    bool isRgba() const { return fRgba; }
    void setRgba(bool rgba) { fRgba = rgba; }

private:
    struct Tfree
    {
        void operator()(std::uint8_t* pixels) const { std::free(pixels); }
    };

    TportRect fRect;
    std::unique_ptr<std::uint8_t[], Tfree> fOwned;
    std::uint8_t* fPixels = nullptr;
    bool fRgba = false;
};
