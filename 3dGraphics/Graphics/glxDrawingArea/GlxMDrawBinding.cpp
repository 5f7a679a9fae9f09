#include "Graphics/3dPort/T3dPort.h"

// Last, for the macros of Xlib.
#include "Graphics/glxDrawingArea/GlxMDrawBinding.h"

Bool GlxMDrawMakeCurrent(Display* display, GLXDrawable window, GLXContext context)
{
    const Bool isBound = glXMakeCurrent(display, window, context);
    T3dPort::nativeBindingMoved(isBound ? context : nullptr);
    return isBound;
}
