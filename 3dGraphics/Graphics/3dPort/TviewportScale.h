#pragma once

#include "foundation/T4dDblPoint.h"
#include "foundation/Tpoint.h"
#include "foundation/TportRect.h"

#include <cmath>
#include <cstring>
#include <limits>

/**
 * A viewport as mapping needs it, between clip space and pixels. It is kept from one point to the next: making numbers
 * of the 16-bit corners costs as much as a point's way through a matrix.
 */
class TviewportScale
{
public:
    /** Two coordinates that are computed at once. */
    using Tpair = double __attribute__((vector_size(16)));

    static Tpair pairAt(const double* two)
    {
        Tpair pair;
        std::memcpy(&pair, two, sizeof pair);
        return pair;
    }

    /** A clip-space w within this of 0 is taken for 0. */
    static constexpr double kLeastW = 1e-10;

    explicit TviewportScale(const TportRect& viewport)
        : fViewport(viewport), fHalf{viewport.width() * 0.5, viewport.height() * 0.5}, fCorner{double(viewport.left),
                                                                                               double(viewport.bottom)},
          fPixel{2.0 / viewport.width(), 2.0 / viewport.height()}, fShift{fCorner[0] * fPixel[0],
                                                                          fCorner[1] * fPixel[1]}
    {
    }

    bool isOf(const TportRect& viewport) const { return std::memcmp(&viewport, &fViewport, sizeof viewport) == 0; }

    /** T3dPort::scaleToPort of the clip-space point @p xy, @p zw. */
    T4dDblPoint toPort(const Tpair& xy, const Tpair& zw) const
    {
        constexpr double kInfinite = std::numeric_limits<float>::max();
        const double w = zw[1];
        if (!(std::abs(w) > kLeastW))
            return {kInfinite, kInfinite, kInfinite * 0.5};
        const Tpair pixel = xy / w * pairAt(fHalf) + pairAt(fHalf) + pairAt(fCorner);
        return {pixel[0], pixel[1], (zw[0] / w + 1) * 0.5};
    }

    /** The x and y, from -1 to 1 in the viewport, at which @p p lies. */
    Tpair toUnit(const Tpoint& p) const
    {
        return Tpair{double(p.x), double(p.y)} * pairAt(fPixel) - pairAt(fShift) - 1;
    }

private:
    TportRect fViewport;
    // Plain numbers, which do not ask for more alignment than a port has otherwise.
    double fHalf[2];   ///< half the extent
    double fCorner[2]; ///< the lower left one
    double fPixel[2];  ///< the width and height of a pixel
    double fShift[2];  ///< the corner in units of fPixel
};
