#pragma once

/** What a subclass of GlxMDraw needs: the class record and the instance record. */

#include "Graphics/glxDrawingArea/GlxMDraw.h"

#include <Xm/PrimitiveP.h>

#ifdef __cplusplus
extern "C" {
#endif

#define GlxMDrawInheritCleanUp ((XtWidgetProc)_XtInherit)

/** What the class adds to those above it. */
typedef struct
{
    XtWidgetProc cleanUp; /**< what GlXCleanUpMDraw and the destruction of a widget call */
    XtPointer extension;
} GlxMDrawClassPart;

/** The class record, one for all widgets. */
typedef struct
{
    CoreClassPart core_class;
    XmPrimitiveClassPart primitive_class;
    GlxMDrawClassPart drawingArea;
} GlxMDrawClassRec;

extern LIRN_3DGRAPHICS_EXPORT GlxMDrawClassRec glXMDrawClassRec;

/** What the widget has made for one of its windows and gives back; none where it uses what it was given. */
typedef struct
{
    XVisualInfo* visual;
    Colormap colormap;
    GLXContext context; /**< also one that another widget of the class has made */
} GlxMDrawOwned;

/** What each widget adds: its resources, and what it has made of them. */
typedef struct
{
    /* Resources, in the order of the public header. */
    int* glxConfig;
    GLXContext glxContext;
    Window mainWindow;
    GLXContext glxContextSharedDisplayList;
    XtCallbackList ginitCallback;
    XtCallbackList inputCallback;
    XtCallbackList resizeCallback;
    XtCallbackList exposeCallback;
    XVisualInfo* visualInfo;
    Boolean overrideColormap;
    Colormap alternateColormap;
    Boolean useOverlay;
    Window overlayWindow;
    Colormap overlayColormap;
    int overlayDepth;
    XVisualInfo* overlayVisual;
    int* overlyGlxConfig;
    GLXContext overlayGlxContext;
    XtCallbackList overlayExposeCallback;
    int* glxConfigSecondary;
    Window secondaryWindow;
    Boolean selectSecondaryContext;
    Colormap alternateSecondaryColormap;

    /* Private. */
    XVisualInfo* secondaryVisual; /**< none when there is to be no secondary window */
    Colormap secondaryColormap;
    GLXContext secondaryContext;
    Boolean isSecondaryShown;
    Boolean isInitReported;
    GlxMDrawOwned ownedByMain;
    GlxMDrawOwned ownedByOverlay;
    GlxMDrawOwned ownedBySecondary;
} GlxMDrawPart;

/** The record of one widget. */
typedef struct
{
    CorePart core;
    XmPrimitivePart primitive;
    GlxMDrawPart drawingArea;
} GlxMDrawRec, *GlxMDrawWidget;

#ifdef __cplusplus
}
#endif
