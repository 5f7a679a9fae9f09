// Display lists, stipples and external buffers.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/glResources/TglBuffer.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "Graphics/glResources/TglPolyStipple.h"

#include <cstdio>

namespace {

/** Calls @p list, or compiles it while @p send sends what it stands for. */
template <class Send> void callOrCompile(TcountedPtr<TglListId>& list, Send send)
{
    if (list) {
        glCallList(list->first());
        return;
    }
    const TcountedPtr<TglListId> made = TglListId::toCompile();
    if (!made) {
        send(); // the next use tries again
        return;
    }
    list = made;
    glNewList(list->first(), GL_COMPILE_AND_EXECUTE);
    send();
    glEndList();
}

} // namespace

void T3dPort::lineStipple(const TglLineStipple& stipple)
{
    setCurrentContext();
    if (stipple.isSolid())
        glDisable(GL_LINE_STIPPLE);
    else
        callOrCompile(stipple.fList, [&] {
            glEnable(GL_LINE_STIPPLE);
            glLineStipple(stipple.fFactor, stipple.fPattern);
        });
    if (fContext)
        fContext->fLineStipple = stipple;
}

void T3dPort::polygonStipple(const TglPolyStipple& stipple)
{
    setCurrentContext();
    if (stipple.isSolid())
        glDisable(GL_POLYGON_STIPPLE);
    else
        callOrCompile(stipple.fList, [&] {
            glEnable(GL_POLYGON_STIPPLE);
            // With other rows than four bytes OpenGL would read past the mask.
            glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
            for (const GLenum skip :
                 {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_LSB_FIRST})
                glPixelStorei(skip, 0);
            glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
            glPolygonStipple(stipple.mask());
            glPopClientAttrib();
        });
}

void T3dPort::newList(TglDisplayList& list, TdisplayListMode mode)
{
    setCurrentContext();
    fCompiledList = &list;
    if (list.name() == 0 || list.fList->isShared())
        list.fList.reset(new TglListId(1));
    glNewList(list.name(), mode);
}

void T3dPort::endList()
{
    glEndList();
    fCompiledList = nullptr;
}

void T3dPort::beginBuffer(TglBuffer* buffer)
{
    if (!buffer)
        return;
    if (buffer->hasTarget()) {
        setCurrentContext();
        buffer->bindTarget();
        if (buffer->hasOwnContext() && buffer->isBound()) {
            // Drawing stays in the buffer's context, which knows nothing of what is recorded.
            fsTrustedPort = glWidget() ? this : nullptr;
            fsBoundContext = nullptr;
            resendState();
        }
        pushPortRect(buffer->targetRect());
    }
    buffer->beginBufferNotify();
    if (fDebugPorts)
        std::printf("External buffer override begin");
}

void T3dPort::endBuffer(TglBuffer* buffer)
{
    if (!buffer)
        return;
    if (fDebugPorts)
        std::printf("External buffer override end");
    buffer->endBufferNotify();
    if (buffer->hasTarget()) {
        buffer->releaseTarget();
        if (buffer->hasOwnContext())
            endForeignGL();
        popPortRect();
    }
}
