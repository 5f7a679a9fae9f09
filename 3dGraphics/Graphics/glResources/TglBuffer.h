#pragma once

#include "Graphics/Export.h"
#include "foundation/TportRect.h"

#include <cstdint>

class QGLFramebufferObject;
class QGLPixelBuffer;
class Tmetaclass;

/** A rectangle whose drawing T3dPort::beginBuffer redirects into an off-screen target. */
class LIRN_3DGRAPHICS_EXPORT TglBuffer : public TportRect
{
public:
    /** Somewhere to draw; the objects are not owned. */
    struct Target
    {
        std::uint16_t fWidth = 0;
        std::uint16_t fHeight = 0;
        QGLFramebufferObject* fFramebufferObject = nullptr;
        QGLPixelBuffer* fPixelBuffer = nullptr;
        bool fBound = false;
        bool fDebug = false;
    };

    TglBuffer() = default;
    virtual ~TglBuffer();
    /** Called once drawing goes to the buffer. */
    virtual void beginBufferNotify();
    /** Called before drawing goes elsewhere again. */
    virtual void endBufferNotify();
    virtual Tmetaclass* typeof() const;
    virtual void* cast(Tmetaclass* metaclass);

    /** The metaclass "TglBuffer". */
    static Tmetaclass* sTypeof();
    /** A new object of @p metaclass; null for a null metaclass or one that is not of this type. */
    static void* construct(Tmetaclass* metaclass);
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);

    /** The target, not owned; null for none. */
    void setTarget(Target* target) { fTarget = target; }
    bool hasTarget() const { return fTarget != nullptr; }
    /** True for a target that is a pixel buffer, which is drawn in through its own context. */
    bool hasOwnContext() const { return fTarget && !fTarget->fFramebufferObject && fTarget->fPixelBuffer; }
    bool isBound() const { return fTarget && fTarget->fBound; }
    /** (0, 0, width, height) of the target. */
    TportRect targetRect() const;
    void bindTarget();
    void releaseTarget();

private:
    Target* fTarget = nullptr;
};
