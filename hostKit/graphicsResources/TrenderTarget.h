#pragma once

#include "foundation/Tarray.h"

#include <cstdint>

class T3dPort;

/** Something off the screen that can be drawn into, and shown in a port afterwards. */
class TrenderTarget
{
public:
    enum TcolorFormat : std::uint32_t { kColorRgb8 = 1, kColorRgba8 = 2, kColorRgba16 = 3, kColorRgba32F = 4 };
    enum TdepthFormat : std::uint32_t { kNoDepth = 0, kDepth32 = 1, kDepth24 = 2 };
    enum TstencilFormat : std::uint32_t { kNoStencil = 0, kStencil8 = 1 };

    TrenderTarget() = default;
    TrenderTarget(const TrenderTarget&) = delete;
    TrenderTarget& operator=(const TrenderTarget&) = delete;

    // Virtual operations, in slot order

    virtual ~TrenderTarget();
    /**
     * Makes the target, in place of the one before.
     * @param size  width, height and depth in pixels; the depth is only recorded
     * @return false, and no target, when it cannot be had; with an empty size the one before stays
     */
    virtual bool create(TcolorFormat color, unsigned char flag, TdepthFormat depth, TstencilFormat stencil,
                        unsigned short* size) = 0;
    /** Makes a target of another @p size (as in create); true for the size it has. */
    virtual bool resize(unsigned short* size) = 0;
    /** Gives the target up. */
    virtual bool destroy() = 0;
    /** Keeps what @p port shows as the target's image. */
    virtual void readImage(T3dPort& port) = 0;
    virtual bool clearImage() = 0;
    virtual void cacheBufferReadInformation() = 0;
    virtual void cacheBufferDrawInformation() = 0;
    /** Directs drawing into the target; false without one. */
    virtual bool beginDraw() = 0;
    /** Draws the target's own content; called between beginning and ending to draw. */
    virtual bool render() = 0;
    /** Shows what was drawn in the lower left corner of @p port, in its front buffer if @p front, else the back buffer. */
    virtual bool draw(T3dPort& port, bool front) = 0;
};

using TrenderTargetPtrArray = Tarray<TrenderTarget*>;
