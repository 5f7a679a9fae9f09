#pragma once

#include "foundation/TportRect.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/**
 * A rectangle of pixels of 8-bit channels without gaps, the bottom row first. There are four channels, with alpha last,
 * or three. The map owns its pixels, or lends those of somebody else (wrap).
 */
class TpixelMap
{
public:
    static constexpr int kChannels = 4; ///< unless three are asked for

    TpixelMap() = default;
    TpixelMap(const TpixelMap&) = delete;
    TpixelMap& operator=(const TpixelMap&) = delete;

    /**
     * Makes room for @p width by @p height pixels of @p channels channels, 3 or 4, all zero; false, and an empty map,
     * for a size that cannot be had.
     */
    bool setSize(int width, int height, int channels = kChannels);
    /** Takes @p pixels, which must hold and outlive the map's use of width * height * channels bytes. */
    bool wrap(void* pixels, int width, int height, int channels = kChannels);
    /**
     * Resamples the picture to the size of @p r (QImage, smooth), which becomes the map's rectangle; each channel for
     * itself, alpha too. The pixels are the map's own from then on. False, and nothing changed, for an empty map, an
     * empty @p r or without memory.
     */
    bool zoom(const TportRect& r);
    /** Exchanges red and blue in every pixel, and the order with them (isRgba). */
    void rgbaSwitch();
    /** True with an alpha channel that is not 255 everywhere. */
    bool hasNonUnitAlpha() const;

    const TportRect& rect() const { return fRect; }
    int width() const { return fRect.width(); }
    int height() const { return fRect.height(); }
    /** The first byte of the bottom row; null for an empty map. */
    std::uint8_t* pixels() { return fPixels; }
    const std::uint8_t* pixels() const { return fPixels; }
    /** The same address, for those who take four-channel pixels as words. */
    unsigned* getPixel() { return reinterpret_cast<unsigned*>(fPixels); }
    int channels() const { return fChannels; }
    std::size_t rowBytes() const { return static_cast<std::size_t>(width()) * static_cast<std::size_t>(fChannels); }

    /** True for red first (GL_RGBA, GL_RGB), false for blue first (GL_BGRA, GL_BGR). */
    bool isRgba() const { return fRgba; }
    void setRgba(bool rgba) { fRgba = rgba; }

private:
    struct Tfree
    {
        void operator()(std::uint8_t* pixels) const { std::free(pixels); }
    };

    std::size_t byteCount() const { return rowBytes() * static_cast<std::size_t>(height()); }

    TportRect fRect;
    std::unique_ptr<std::uint8_t[], Tfree> fOwned;
    std::uint8_t* fPixels = nullptr;
    int fChannels = kChannels;
    bool fRgba = false;
};
