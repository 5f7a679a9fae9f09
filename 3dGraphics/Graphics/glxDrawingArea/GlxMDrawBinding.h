#pragma once

#include <GL/glx.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * glXMakeCurrent that the drawing ports of the process learn of, so that the next one to draw binds its own context
 * again. Null for @p context releases the current one. True when it worked.
 */
Bool GlxMDrawMakeCurrent(Display* display, GLXDrawable window, GLXContext context);

#ifdef __cplusplus
}
#endif
