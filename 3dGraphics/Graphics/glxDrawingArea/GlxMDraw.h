#pragma once

/**
 * GlxMDraw, a Motif drawing area for OpenGL: a primitive widget whose window has a GLX visual and a GLX context, and
 * that reports exposure, resizing and input through callbacks. Besides its main window it can have a secondary one,
 * with a visual and a context of its own, and an overlay that covers the one in use. For C and C++.
 *
 *     Widget area = GlXCreateMDraw(form, "area", args, count);
 *     XtAddCallback(area, GlxNexposeCallback, draw, NULL);
 *
 *     static void draw(Widget area, XtPointer client, XtPointer call)
 *     {
 *         const GlxMDrawCallbackStruct* data = call;
 *         glXMakeCurrent(XtDisplay(area), data->window, data->context);
 *         glViewport(0, 0, data->width, data->height);
 *         ...
 *         glXSwapBuffers(XtDisplay(area), data->window);
 *     }
 *
 * The contexts of all these widgets on a screen share display lists and textures, unless told otherwise.
 */

#include "Graphics/Export.h"

#include <GL/glx.h>
#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Resources. An attribute list is one of glXChooseVisual: int*, ended by None. It, like a visual or context that is
 * given, stays its owner's, is read while the widget lives, and is not freed. What the widget made itself goes with the
 * widget. Unless something else is said, a resource can be given when the widget is created and read later; a change is
 * refused with a warning. The callback lists can be changed as in every widget.
 */

/** int*: what the main window's visual has to offer. Null means the default, a double-buffered RGBA visual with depth.
 */
#define GlxNglxConfig "glxConfig"
/** GLXContext of the main window, for a visual like the chosen one; one is created when none is given. */
#define GlxNglxContext "glxContext"
/** Window: the main one, which is XtWindow(widget). To be read. */
#define GlxNmainWindow "mainWindow"
/** GLXContext to share display lists with, instead of the one that all widgets of the class share with. */
#define GlxNglxContextSharedDisplayList "glxContextSharedDisplayList"
/** Called once, when the windows have been made: reason XmCR_NONE, no event, the main window and context. */
#define GlxNginitCallback "ginitCallback"
/** Called by the action glxInput for keys, buttons and drags: XmCR_INPUT, the event, the main window and context. */
#define GlxNinputCallback "inputCallback"
/** Called when the size has changed: XmCR_RESIZE, no event, window and context of the one of the two that is shown. */
#define GlxNresizeCallback "resizeCallback"
/** Called when the main or the secondary window has to be drawn: XmCR_EXPOSE, the event, that window and its context.
 */
#define GlxNexposeCallback "exposeCallback"
/** XVisualInfo* chosen for the main window, null when none could be had. To be read. */
#define GlxNvisualInfo "visualInfo"
/** Boolean: a new colormap rather than the widget's own, where no alternate one is given. */
#define GlxNoverrideColormap "overrideColormap"
/** Colormap of the main window. */
#define GlxNalternateColormap "alternateColormap"
/** Boolean, may be set: an overlay covers the widget. Turns false when the overlay window is destroyed. */
#define GlxNuseOverlay "useOverlay"
/** Window: the overlay, None while there is none. To be read. */
#define GlxNoverlayWindow "overlayWindow"
/** Colormap of the overlay, may be set; one is created when none is given. */
#define GlxNoverlayColormap "overlayColormap"
/** int: depth of the overlay in bits, that of its visual. To be read. */
#define GlxNoverlayDepth "overlayDepth"
/** XVisualInfo* of the overlay, may be set while there is no overlay window; taken instead of choosing one. */
#define GlxNoverlayVisual "overlayVisual"
/** int*, may be set: what the visual of the next overlay has to offer. There is no default. */
#define GlxNoverlyGlxConfig "overlyGlxConfig"
/** GLXContext of the overlay, may be set; one is created when none is given. */
#define GlxNoverlayGlxContext "overlayGlxContext"
/** Called when the overlay has to be drawn: XmCR_EXPOSE, the event, the overlay window and its context. */
#define GlxNoverlayExposeCallback "overlayExposeCallback"
/** int*: what the secondary window's visual has to offer; null for no secondary window. The default is the main one's.
 */
#define GlxNglxConfigSecondary "glxConfigSecondary"
/** Window: the secondary one, a child of the main one. To be read. */
#define GlxNsecondaryWindow "secondaryWindow"
/** Boolean, may be set: shows the secondary window, with the viewport and the matrices of the main one, or goes back.
 */
#define GlxNselectSecondaryContext "selectSecondaryContext"
/** Colormap of the secondary window. */
#define GlxNalternateSecondaryColormap "alternateSecondaryColormap"

#define GlxCGlxConfig "GlxConfig"
#define GlxCGlxContext "GlxContext"
#define GlxCVisualInfo "VisualInfo"
#define GlxCOverrideColormap "OverrideColormap"
#define GlxCUseOverlay "UseOverlay"
#define GlxCSelectSecondaryContext "SelectSecondaryContext"

/** What a callback is given. */
typedef struct
{
    int reason;         /**< XmCR_EXPOSE (38), XmCR_RESIZE (39), XmCR_INPUT (40) or XmCR_NONE */
    XEvent* event;      /**< null where no event is the cause */
    Window window;      /**< the window concerned */
    Dimension width;    /**< of the widget, in pixels */
    Dimension height;   /**< of the widget, in pixels */
    GLXContext context; /**< of the window concerned, for glXMakeCurrent; null when no visual could be had */
} GlxMDrawCallbackStruct;

/** The widget class, for XtCreateWidget and its like. */
extern LIRN_3DGRAPHICS_EXPORT WidgetClass glXMDrawWidgetClass;

/** Creates a widget of the class, not yet managed, as Motif's own creating functions do. */
LIRN_3DGRAPHICS_EXPORT Widget GlXCreateMDraw(Widget parent, const char* name, ArgList arguments, Cardinal count);

/**
 * Leaves the widget's windows at rest: drops the events waiting for them, finishes the drawing of the main context
 * (glFinish), which becomes the current one, flushes that of the secondary one, and gives up the overlay. For a
 * realized widget; without effect on another. Destroying the widget does it too.
 */
LIRN_3DGRAPHICS_EXPORT void GlXCleanUpMDraw(Widget widget);

/** The transparent pixel of the overlay visual chosen last (GLX_TRANSPARENT_INDEX_VALUE_EXT), to clear an overlay to.
 */
LIRN_3DGRAPHICS_EXPORT int GlXTransparentIndexMDraw(void);

#ifdef __cplusplus
}
#endif
