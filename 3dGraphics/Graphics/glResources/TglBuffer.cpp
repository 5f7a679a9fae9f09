#include "Graphics/glResources/TglBuffer.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Tmetaclass.h"

#include <QGLFramebufferObject>
#include <QGLPixelBuffer>

#include <cstdio>
#include <new>

namespace {

Tmetaclass& metaclassOf()
{
    static Tmetaclass metaclass(
        "TglBuffer", sizeof(TglBuffer), nullptr, []() -> void* { return new TglBuffer; },
        [](void* memory) -> void* { return new (memory) TglBuffer; });
    return metaclass;
}

// Registers the type at library load.
[[maybe_unused]] const Tmetaclass& gRegistered = metaclassOf();

} // namespace

TglBuffer::~TglBuffer() = default;

void TglBuffer::beginBufferNotify() {}

void TglBuffer::endBufferNotify() {}

Tmetaclass* TglBuffer::sTypeof()
{
    return &metaclassOf();
}

Tmetaclass* TglBuffer::typeof() const
{
    return sTypeof();
}

void* TglBuffer::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : nullptr;
}

void* TglBuffer::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* TglBuffer::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}

TportRect TglBuffer::targetRect() const
{
    return fTarget ? TportRect(0, 0, static_cast<short>(fTarget->fWidth), static_cast<short>(fTarget->fHeight))
                   : TportRect();
}

void TglBuffer::bindTarget()
{
    if (!fTarget)
        return;
    if (fTarget->fDebug)
        std::printf("Bind QT target\n");
    if (fTarget->fFramebufferObject) {
        fTarget->fBound = fTarget->fFramebufferObject->bind();
    } else if (fTarget->fPixelBuffer) {
        fTarget->fBound = fTarget->fPixelBuffer->makeCurrent();
        T3dPort::nativeBindingMoved();
    }
}

void TglBuffer::releaseTarget()
{
    if (!fTarget)
        return;
    fTarget->fBound = false;
    if (fTarget->fDebug)
        std::printf("Unbind QT target\n");
    if (fTarget->fFramebufferObject) {
        fTarget->fFramebufferObject->release();
    } else if (fTarget->fPixelBuffer) {
        fTarget->fPixelBuffer->doneCurrent();
        T3dPort::nativeBindingMoved();
    }
}
