#pragma once

#include "graphicsResources/RasterFormat.h"

/** What buffers a frame buffer is to have. */
class nbBufferFormat
{
public:
    /** Where a frame buffer can be used. */
    enum Tusage : int { kOnScreen = 1, kOffScreen = 2 };

    /**
     * @param samples  per pixel, 1 without multisampling
     * @param usage  see Tusage
     */
    nbBufferFormat(RasterFormat color, RasterFormat depth, RasterFormat stencil, int samples, int usage)
        : fColor(color), fDepth(depth), fStencil(stencil), fSamples(samples), fUsage(usage)
    {
    }

    RasterFormat color() const { return fColor; }
    RasterFormat depth() const { return fDepth; }
    RasterFormat stencil() const { return fStencil; }
    int samples() const { return fSamples; }
    int usage() const { return fUsage; }

private:
    RasterFormat fColor;
    RasterFormat fDepth;
    RasterFormat fStencil;
    int fSamples;
    int fUsage;
};
