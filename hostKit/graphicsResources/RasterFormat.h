#pragma once

#include <cstdint>

/** How a pixel of a buffer is stored. The numbers are part of the interface. */
enum RasterFormat : std::uint32_t {
    kRasterRgb8 = 1,
    kRasterRgba8 = 2,
    kRasterRgba16 = 3,
    kRasterRgba32F = 4,
    kRasterDepth16 = 5,
    kRasterDepth24 = 6,
    kRasterDepth32 = 7,
    kRasterDepth32F = 8,
    kRasterDepth24Stencil8 = 9,
    kRasterStencil1 = 10,
    kRasterStencil4 = 11,
    kRasterStencil8 = 12,
    kRasterStencil16 = 13,
    kRasterNoColor = 14,
    kRasterNoDepth = 15,
    kRasterNoStencil = 16
};
