#include "Graphics/glxDrawingArea/GlxMDrawP.h"

#include "Graphics/glxDrawingArea/GlxMDrawBinding.h"

#include <Xm/XmP.h>

#include <stddef.h>
#include <stdio.h>
#include <string.h>

enum { kDefaultSize = 100 };

static int gsDefaultConfig[] = {GLX_RGBA, GLX_RED_SIZE,   3,  GLX_BLUE_SIZE,    3,   GLX_GREEN_SIZE,
                                3,        GLX_DEPTH_SIZE, 12, GLX_DOUBLEBUFFER, None};

static char gsTranslations[] = "<KeyDown>:\tglxInput() \n     <KeyUp>:\tglxInput() \n     <BtnDown>: glxInput() \n"
                               "     <BtnUp>:   glxInput() \n     <BtnMotion>: glxInput()";

static int gsTransparentIndex = 0;

/* Reports */

static char* reportText(char* text, size_t size, const char* what)
{
    snprintf(text, size, "GlxMDraw: %s\n", what);
    return text;
}

static void warn(GlxMDrawWidget w, const char* what)
{
    char text[200];
    XtAppWarning(XtWidgetToApplicationContext((Widget)w), reportText(text, sizeof(text), what));
}

static void failWithoutOpenGL(GlxMDrawWidget w)
{
    char text[200];
    XtAppError(XtWidgetToApplicationContext((Widget)w),
               reportText(text, sizeof(text), "OpenGL not supported on this display"));
}

/* Contexts */

/*
 * The contexts that the class has made and not yet destroyed, oldest first. The oldest shared one of a screen is what
 * new ones share with: when it goes, the next one still has the lists.
 */
typedef struct MadeContext
{
    struct MadeContext* next;
    Display* display;
    int screen;
    GLXContext context;
    Boolean isShared; /* false for one made to share with a foreign context */
    int holders;      /* windows of widgets: the context of one can be given to another */
} MadeContext;

static MadeContext* gsMadeContexts = NULL;

static MadeContext* madeContext(GLXContext context)
{
    MadeContext* made = gsMadeContexts;
    while (made && made->context != context)
        made = made->next;
    return made;
}

static GLXContext processWideContext(Display* display, int screen)
{
    for (MadeContext* made = gsMadeContexts; made; made = made->next) {
        if (made->isShared && made->display == display && made->screen == screen)
            return made->context;
    }
    return NULL;
}

static GLXContext createContext(GlxMDrawWidget w, XVisualInfo* visual, GLXContext share)
{
    Display* display = XtDisplay(w);
    const GLXContext context = glXCreateContext(display, visual, share, True);
    if (!context) {
        failWithoutOpenGL(w);
        return NULL;
    }
    const MadeContext* shared = madeContext(share);
    MadeContext* made = XtNew(MadeContext);
    made->next = NULL;
    made->display = display;
    made->screen = visual->screen;
    made->context = context;
    made->isShared = !processWideContext(display, visual->screen) || (shared && shared->isShared);
    made->holders = 0;
    MadeContext** end = &gsMadeContexts;
    while (*end)
        end = &(*end)->next;
    *end = made;
    return context;
}

/* The given context, or else a new one; noted as held if it is the class's own. */
static GLXContext holdContext(GlxMDrawWidget w, GLXContext given, XVisualInfo* visual, GLXContext share,
                              GlxMDrawOwned* owned)
{
    const GLXContext context = given ? given : createContext(w, visual, share);
    MadeContext* made = context ? madeContext(context) : NULL;
    if (made) {
        ++made->holders;
        owned->context = context;
    }
    return context;
}

static void releaseContext(GlxMDrawOwned* owned)
{
    MadeContext** link = &gsMadeContexts;
    while (*link && (*link)->context != owned->context)
        link = &(*link)->next;
    MadeContext* made = *link;
    owned->context = NULL;
    if (!made || --made->holders > 0)
        return;
    *link = made->next;
    if (glXGetCurrentContext() == made->context)
        GlxMDrawMakeCurrent(made->display, None, NULL);
    glXDestroyContext(made->display, made->context);
    XtFree((char*)made);
}

static void releaseOwned(GlxMDrawWidget w, GlxMDrawOwned* owned)
{
    releaseContext(owned);
    if (owned->colormap)
        XFreeColormap(XtDisplay(w), owned->colormap);
    if (owned->visual)
        XFree(owned->visual);
    owned->colormap = None;
    owned->visual = NULL;
}

/* Visuals and colormaps */

/* A visual for the attribute list; none when the list is null or asks too much. */
static XVisualInfo* chooseVisual(GlxMDrawWidget w, int* config, GlxMDrawOwned* owned)
{
    static Boolean isFailureToTell = True;
    if (config)
        owned->visual = glXChooseVisual(XtDisplay(w), XScreenNumberOfScreen(XtScreen(w)), config);
    if (!owned->visual && isFailureToTell) {
        fputs("glXChooseVisual failed, check XServer visual configurations\n", stderr);
        isFailureToTell = False;
    }
    return owned->visual;
}

static Colormap createColormap(GlxMDrawWidget w, XVisualInfo* visual, GlxMDrawOwned* owned)
{
    Display* display = XtDisplay(w);
    owned->colormap = XCreateColormap(display, RootWindow(display, visual->screen), visual->visual, AllocNone);
    return owned->colormap;
}

static Colormap chooseColormap(GlxMDrawWidget w, Colormap alternate, Boolean isOwnUsable, XVisualInfo* visual,
                               GlxMDrawOwned* owned)
{
    if (alternate)
        return alternate;
    return isOwnUsable ? w->core.colormap : createColormap(w, visual, owned);
}

static GLXContext contextToShareWith(GlxMDrawWidget w)
{
    const GLXContext given = w->drawingArea.glxContextSharedDisplayList;
    return given ? given : processWideContext(XtDisplay(w), XScreenNumberOfScreen(XtScreen(w)));
}

static void prepareMain(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    GlxMDrawOwned* owned = &p->ownedByMain;
    p->visualInfo = chooseVisual(w, p->glxConfig ? p->glxConfig : gsDefaultConfig, owned);
    if (!p->visualInfo) {
        p->glxContext = NULL; /* one that was given has no window that suits it */
    } else {
        w->core.colormap = chooseColormap(w, p->alternateColormap, !p->overrideColormap, p->visualInfo, owned);
        w->core.depth = p->visualInfo->depth;
        p->glxContext = holdContext(w, p->glxContext, p->visualInfo, contextToShareWith(w), owned);
    }
}

static void prepareSecondary(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    GlxMDrawOwned* owned = &p->ownedBySecondary;
    if (p->glxConfigSecondary)
        p->secondaryVisual = chooseVisual(w, p->glxConfigSecondary, owned);
    if (p->secondaryVisual) {
        /* The widget's own colormap can be of one visual only. */
        const Boolean isOwnUsable =
            !p->overrideColormap && p->visualInfo && p->visualInfo->visual == p->secondaryVisual->visual;
        p->secondaryColormap = chooseColormap(w, p->alternateSecondaryColormap, isOwnUsable, p->secondaryVisual, owned);
    }
}

static void prepareOverlay(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    GlxMDrawOwned* owned = &p->ownedByOverlay;
    /* What was made for an earlier overlay goes, with the visual it was made for. */
    if (p->overlayVisual == owned->visual)
        p->overlayVisual = NULL;
    if (p->overlayColormap == owned->colormap)
        p->overlayColormap = None;
    const GLXContext held = owned->context;
    releaseOwned(w, owned);
    if (p->overlayGlxContext == held && !madeContext(held))
        p->overlayGlxContext = NULL;

    if (!p->overlayVisual)
        p->overlayVisual = chooseVisual(w, p->overlyGlxConfig, owned);
    if (!p->overlayVisual)
        return;
    p->overlayDepth = p->overlayVisual->depth;
    if (!p->overlayColormap)
        p->overlayColormap = createColormap(w, p->overlayVisual, owned);
    p->overlayGlxContext = holdContext(w, p->overlayGlxContext, p->overlayVisual, contextToShareWith(w), owned);
    int index = 0;
    if (glXGetConfig(XtDisplay(w), p->overlayVisual, GLX_TRANSPARENT_INDEX_VALUE_EXT, &index) == 0)
        gsTransparentIndex = index;
}

/* Windows */

static Window shownWindow(GlxMDrawWidget w)
{
    return w->drawingArea.isSecondaryShown ? w->drawingArea.secondaryWindow : w->drawingArea.mainWindow;
}

static Window createWindow(GlxMDrawWidget w, Window parent, XVisualInfo* visual, unsigned long mask,
                           XSetWindowAttributes* attributes)
{
    attributes->border_pixel = 0;
    return XCreateWindow(XtDisplay(w), parent, 0, 0, w->core.width, w->core.height, 0, visual->depth, InputOutput,
                         visual->visual, mask | CWBorderPixel | CWColormap, attributes);
}

/* Neither window selects keys or buttons: they propagate to the main window, where the translations are. */

static void createOverlayWindow(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    if (!p->overlayVisual)
        return;
    XSetWindowAttributes attributes;
    attributes.background_pixel = gsTransparentIndex;
    attributes.colormap = p->overlayColormap;
    p->overlayWindow = createWindow(w, shownWindow(w), p->overlayVisual, CWBackPixel, &attributes);
    XSelectInput(XtDisplay(w), p->overlayWindow, ExposureMask);
    XtRegisterDrawable(XtDisplay(w), p->overlayWindow, (Widget)w);
    XMapWindow(XtDisplay(w), p->overlayWindow);
}

static void createSecondaryWindow(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    if (!p->secondaryVisual)
        return;
    if (!p->secondaryContext) {
        const GLXContext share = p->glxContext ? p->glxContext : contextToShareWith(w);
        p->secondaryContext = holdContext(w, NULL, p->secondaryVisual, share, &p->ownedBySecondary);
    }
    XSetWindowAttributes attributes;
    attributes.colormap = p->secondaryColormap;
    attributes.event_mask = ExposureMask | SubstructureNotifyMask; /* the latter for an overlay in it */
    p->secondaryWindow = createWindow(w, p->mainWindow, p->secondaryVisual, CWEventMask, &attributes);
}

/* A context that stays must not be left on a window that goes. */
static void leaveWindow(GlxMDrawWidget w, Window window)
{
    if (window && glXGetCurrentDrawable() == window)
        GlxMDrawMakeCurrent(XtDisplay(w), None, NULL);
}

static void forgetOverlay(GlxMDrawWidget w)
{
    XtUnregisterDrawable(XtDisplay(w), w->drawingArea.overlayWindow);
    w->drawingArea.overlayWindow = None;
    w->drawingArea.useOverlay = False;
}

/* Before the windows are made again, or go. */
static void forgetWindows(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    if (p->overlayWindow)
        XtUnregisterDrawable(XtDisplay(w), p->overlayWindow);
    if (p->isSecondaryShown)
        XtUnregisterDrawable(XtDisplay(w), p->secondaryWindow);
    p->overlayWindow = None;
    p->secondaryWindow = None;
    p->isSecondaryShown = False;
}

static Bool isDestructionOf(Display* display, XEvent* event, XPointer window)
{
    (void)display;
    return event->type == DestroyNotify && event->xdestroywindow.window == *(const Window*)window;
}

/* The overlay window. An overlay whose destruction has not been dispatched yet is gone all the same. */
static Window liveOverlay(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    if (!XtIsRealized((Widget)w))
        return None;
    if (p->overlayWindow) {
        XEvent event;
        XSync(XtDisplay(w), False);
        if (XCheckIfEvent(XtDisplay(w), &event, isDestructionOf, (XPointer)&p->overlayWindow))
            forgetOverlay(w);
    }
    return p->overlayWindow;
}

static void watchOverlay(Widget widget, XtPointer client, XEvent* event, Boolean* isToContinue)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    (void)client;
    (void)isToContinue;
    const XPointer overlay = (XPointer)&w->drawingArea.overlayWindow;
    /* A widget that has been unrealized wants its overlay again with its other windows. */
    if (XtIsRealized(widget) && isDestructionOf(XtDisplay(w), event, overlay))
        forgetOverlay(w);
}

static Bool isEventOf(Display* display, XEvent* event, XPointer window)
{
    (void)display;
    return event->xany.window == *(const Window*)window;
}

static void drainEvents(GlxMDrawWidget w, Window window)
{
    XEvent event;
    XSync(XtDisplay(w), False);
    while (XCheckIfEvent(XtDisplay(w), &event, isEventOf, (XPointer)&window)) {
    }
}

/* Shows the secondary window or the main one, with viewport and matrices of the one shown before. */
static void switchWindow(GlxMDrawWidget w, Boolean isToSecondary)
{
    GlxMDrawPart* p = &w->drawingArea;
    Display* display = XtDisplay(w);
    const Window from = shownWindow(w);
    const Window to = isToSecondary ? p->secondaryWindow : p->mainWindow;
    const Window overlay = liveOverlay(w);
    drainEvents(w, from);

    const GLXContext fromContext = p->isSecondaryShown ? p->secondaryContext : p->glxContext;
    GLint viewport[4];
    GLdouble modelView[16];
    GLdouble projection[16];
    const Boolean isSaved = fromContext && GlxMDrawMakeCurrent(display, from, fromContext);
    if (isSaved) {
        glGetIntegerv(GL_VIEWPORT, viewport);
        glGetDoublev(GL_MODELVIEW_MATRIX, modelView);
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
    }
    p->isSecondaryShown = isToSecondary;

    Window root = 0;
    int x = 0;
    int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int border = 0;
    unsigned int depth = 0;
    if (!XGetGeometry(display, from, &root, &x, &y, &width, &height, &border, &depth)) {
        warn(w, "SetNewWindow : XGetGeometry failed");
        width = w->core.width;
        height = w->core.height;
    }
    /* Xt knows the main window always, as the widget's. */
    if (isToSecondary)
        XtRegisterDrawable(display, to, (Widget)w);
    else
        XtUnregisterDrawable(display, from);
    if (overlay)
        XReparentWindow(display, overlay, to, 0, 0);
    const GLXContext toContext = isToSecondary ? p->secondaryContext : p->glxContext;
    const Boolean isCurrent = toContext && GlxMDrawMakeCurrent(display, to, toContext);
    XResizeWindow(display, to, width, height);
    XSync(display, False); /* or the driver goes on drawing the size before */
    if (isSaved && isCurrent) {
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(projection);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(modelView);
    }
    XRaiseWindow(display, to);
    XMapWindow(display, to);
    if (!isToSecondary)
        XUnmapWindow(display, from);
}

static void selectWindow(GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    if (p->selectSecondaryContext && !p->secondaryWindow) {
        warn(w, "there is no secondary window to select");
        p->selectSecondaryContext = False;
    }
    if (p->selectSecondaryContext != p->isSecondaryShown)
        switchWindow(w, p->selectSecondaryContext);
}

/* Callbacks */

static void report(GlxMDrawWidget w, XtCallbackList list, int reason, XEvent* event, Window window, GLXContext context)
{
    GlxMDrawCallbackStruct data = {reason, event, window, w->core.width, w->core.height, context};
    XtCallCallbackList((Widget)w, list, &data);
}

static void input(Widget widget, XEvent* event, String* parameters, Cardinal* count)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    (void)parameters;
    (void)count;
    report(w, w->drawingArea.inputCallback, XmCR_INPUT, event, XtWindow(w), w->drawingArea.glxContext);
}

static void expose(Widget widget, XEvent* event, Region region)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    const GlxMDrawPart* p = &w->drawingArea;
    const Window window = event->xany.window;
    (void)region;
    if (window == p->mainWindow)
        report(w, p->exposeCallback, XmCR_EXPOSE, event, window, p->glxContext);
    else if (window == p->secondaryWindow)
        report(w, p->exposeCallback, XmCR_EXPOSE, event, window, p->secondaryContext);
    else if (window == p->overlayWindow)
        report(w, p->overlayExposeCallback, XmCR_EXPOSE, event, window, p->overlayGlxContext);
}

static void resize(Widget widget)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    const GlxMDrawPart* p = &w->drawingArea;
    if (!XtIsRealized(widget))
        return;
    Display* display = XtDisplay(w);
    const Window shown = shownWindow(w);
    if (liveOverlay(w))
        XResizeWindow(display, p->overlayWindow, w->core.width, w->core.height);
    XResizeWindow(display, shown, w->core.width, w->core.height);
    XSync(display, False);
    report(w, p->resizeCallback, XmCR_RESIZE, NULL, shown, p->isSecondaryShown ? p->secondaryContext : p->glxContext);
}

/* Life */

static void classPartInitialize(WidgetClass widgetClass)
{
    GlxMDrawClassPart* part = &((GlxMDrawClassRec*)widgetClass)->drawingArea;
    if (part->cleanUp == GlxMDrawInheritCleanUp)
        part->cleanUp = ((GlxMDrawClassRec*)widgetClass->core_class.superclass)->drawingArea.cleanUp;
}

static void initialize(Widget request, Widget widget, ArgList arguments, Cardinal* count)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    GlxMDrawPart* p = &w->drawingArea;
    (void)arguments;
    (void)count;
    if (request->core.width == 0)
        w->core.width = kDefaultSize;
    if (request->core.height == 0)
        w->core.height = kDefaultSize;

    /* To be read only. */
    p->mainWindow = None;
    p->overlayWindow = None;
    p->secondaryWindow = None;
    p->overlayDepth = 0;

    p->secondaryVisual = NULL;
    p->secondaryColormap = None;
    p->secondaryContext = NULL;
    p->isSecondaryShown = False;
    p->isInitReported = False;
    memset(&p->ownedByMain, 0, sizeof(GlxMDrawOwned));
    memset(&p->ownedByOverlay, 0, sizeof(GlxMDrawOwned));
    memset(&p->ownedBySecondary, 0, sizeof(GlxMDrawOwned));

    prepareMain(w);
    if (p->useOverlay)
        prepareOverlay(w);
    prepareSecondary(w);
    XtAddEventHandler(widget, SubstructureNotifyMask, False, watchOverlay, NULL);
}

static void realize(Widget widget, XtValueMask* mask, XSetWindowAttributes* attributes)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    GlxMDrawPart* p = &w->drawingArea;
    /* As in the other primitives: what is not asked for here is not for the manager behind. */
    *mask |= CWDontPropagate;
    attributes->do_not_propagate_mask =
        ButtonPressMask | ButtonReleaseMask | KeyPressMask | KeyReleaseMask | PointerMotionMask;
    forgetWindows(w);
    XtCreateWindow(widget, InputOutput, p->visualInfo ? p->visualInfo->visual : CopyFromParent, *mask, attributes);
    p->mainWindow = XtWindow(widget);
    if (p->useOverlay)
        createOverlayWindow(w);
    createSecondaryWindow(w);
    if (!p->isInitReported) {
        p->isInitReported = True;
        report(w, p->ginitCallback, XmCR_NONE, NULL, p->mainWindow, p->glxContext);
    }
    selectWindow(w);
}

/* The resources that cannot be changed any more. */
typedef struct
{
    const char* name;
    size_t offset;
    size_t size;
} FixedResource;

#define FIXED(name, field)                                                                                             \
    {                                                                                                                  \
        name, offsetof(GlxMDrawPart, field), sizeof(((GlxMDrawPart*)NULL)->field)                                      \
    }

static const FixedResource gsFixedResources[] = {
    FIXED(GlxNglxConfig, glxConfig),
    FIXED(GlxNglxContext, glxContext),
    FIXED(GlxNmainWindow, mainWindow),
    FIXED(GlxNglxContextSharedDisplayList, glxContextSharedDisplayList),
    FIXED(GlxNvisualInfo, visualInfo),
    FIXED(GlxNoverrideColormap, overrideColormap),
    FIXED(GlxNalternateColormap, alternateColormap),
    FIXED(GlxNoverlayWindow, overlayWindow),
    FIXED(GlxNoverlayDepth, overlayDepth),
    FIXED(GlxNglxConfigSecondary, glxConfigSecondary),
    FIXED(GlxNsecondaryWindow, secondaryWindow),
    FIXED(GlxNalternateSecondaryColormap, alternateSecondaryColormap),
    /* Last: only while there is an overlay window. */
    FIXED(GlxNoverlayVisual, overlayVisual),
};

static void keepFixedResources(const GlxMDrawWidget before, GlxMDrawWidget w)
{
    const Cardinal count = XtNumber(gsFixedResources) - (before->drawingArea.overlayWindow ? 0 : 1);
    for (Cardinal i = 0; i < count; ++i) {
        const FixedResource* fixed = &gsFixedResources[i];
        const char* kept = (const char*)&before->drawingArea + fixed->offset;
        char* value = (char*)&w->drawingArea + fixed->offset;
        if (memcmp(value, kept, fixed->size) != 0) {
            char what[120];
            snprintf(what, sizeof(what), "XtSetValues cannot change %s", fixed->name);
            warn(w, what);
            memcpy(value, kept, fixed->size);
        }
    }
}

static void setOverlay(const GlxMDrawPart* before, GlxMDrawWidget w)
{
    GlxMDrawPart* p = &w->drawingArea;
    const Window overlay = liveOverlay(w);
    if (overlay && !p->useOverlay) {
        forgetOverlay(w);
        leaveWindow(w, overlay);
        XDestroyWindow(XtDisplay(w), overlay);
    } else if (overlay) {
        if (!p->overlayColormap)
            p->overlayColormap = before->overlayColormap;
        if (!p->overlayGlxContext)
            p->overlayGlxContext = before->overlayGlxContext;
        if (p->overlayColormap != before->overlayColormap) {
            XSetWindowAttributes attributes;
            attributes.colormap = p->overlayColormap;
            XChangeWindowAttributes(XtDisplay(w), overlay, CWColormap, &attributes);
        }
        if (p->overlayGlxContext != before->overlayGlxContext) {
            releaseContext(&p->ownedByOverlay);
            holdContext(w, p->overlayGlxContext, NULL, NULL, &p->ownedByOverlay);
        }
    } else if (p->useOverlay &&
               (!before->useOverlay || p->overlayVisual != before->overlayVisual ||
                p->overlyGlxConfig != before->overlyGlxConfig || p->overlayGlxContext != before->overlayGlxContext ||
                p->overlayColormap != before->overlayColormap)) {
        prepareOverlay(w);
        if (XtIsRealized((Widget)w))
            createOverlayWindow(w);
    }
}

static Boolean setValues(Widget current, Widget request, Widget widget, ArgList arguments, Cardinal* count)
{
    GlxMDrawWidget before = (GlxMDrawWidget)current;
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    (void)request;
    (void)arguments;
    (void)count;
    keepFixedResources(before, w);
    setOverlay(&before->drawingArea, w);
    if (XtIsRealized(widget))
        selectWindow(w);
    return False;
}

static void cleanUp(Widget widget)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    const GlxMDrawPart* p = &w->drawingArea;
    Display* display = XtDisplay(w);
    drainEvents(w, p->mainWindow);
    if (p->glxContext && GlxMDrawMakeCurrent(display, p->mainWindow, p->glxContext))
        glFinish();
    if (p->secondaryWindow) {
        /* Its drawing was flushed when its context ceased to be current. */
        XFlush(display);
        drainEvents(w, p->secondaryWindow);
    }
    if (p->overlayWindow) {
        drainEvents(w, p->overlayWindow);
        forgetOverlay(w);
    }
}

static void destroy(Widget widget)
{
    GlxMDrawWidget w = (GlxMDrawWidget)widget;
    GlxMDrawPart* p = &w->drawingArea;
    GlXCleanUpMDraw(widget);
    if (XtIsRealized(widget)) {
        leaveWindow(w, p->mainWindow);
        leaveWindow(w, p->secondaryWindow);
    }
    forgetWindows(w);
    releaseOwned(w, &p->ownedBySecondary);
    releaseOwned(w, &p->ownedByOverlay);
    releaseOwned(w, &p->ownedByMain);
}

/* The class */

#define RESOURCE(name, class, type, field, defaultType, value)                                                         \
    {                                                                                                                  \
        name, class, type, sizeof(((GlxMDrawPart*)NULL)->field), XtOffsetOf(GlxMDrawRec, drawingArea.field),           \
            defaultType, (XtPointer)(value)                                                                            \
    }
#define VALUE(name, class, type, field, value) RESOURCE(name, class, type, field, XtRImmediate, value)
#define CALLBACK(name, field) RESOURCE(name, XtCCallback, XtRCallback, field, XtRCallback, NULL)

static XtResource gsResources[] = {
    VALUE(GlxNglxConfig, GlxCGlxConfig, XtRPointer, glxConfig, gsDefaultConfig),
    VALUE(GlxNglxContext, GlxCGlxContext, XtRPointer, glxContext, NULL),
    VALUE(GlxNmainWindow, XtCWindow, XtRWindow, mainWindow, None),
    VALUE(GlxNglxContextSharedDisplayList, GlxCGlxContext, XtRPointer, glxContextSharedDisplayList, NULL),
    CALLBACK(GlxNginitCallback, ginitCallback),
    CALLBACK(GlxNinputCallback, inputCallback),
    CALLBACK(GlxNresizeCallback, resizeCallback),
    CALLBACK(GlxNexposeCallback, exposeCallback),
    VALUE(GlxNvisualInfo, GlxCVisualInfo, XtRPointer, visualInfo, NULL),
    VALUE(GlxNoverrideColormap, GlxCOverrideColormap, XtRBoolean, overrideColormap, True),
    VALUE(GlxNalternateColormap, XtCColormap, XtRColormap, alternateColormap, None),
    VALUE(GlxNuseOverlay, GlxCUseOverlay, XtRBoolean, useOverlay, False),
    VALUE(GlxNoverlayWindow, XtCWindow, XtRWindow, overlayWindow, None),
    VALUE(GlxNoverlayColormap, XtCColormap, XtRColormap, overlayColormap, None),
    VALUE(GlxNoverlayDepth, XtCDepth, XtRInt, overlayDepth, 0),
    VALUE(GlxNoverlayVisual, GlxCVisualInfo, XtRPointer, overlayVisual, NULL),
    VALUE(GlxNoverlyGlxConfig, GlxCGlxConfig, XtRPointer, overlyGlxConfig, NULL),
    VALUE(GlxNoverlayGlxContext, GlxCGlxContext, XtRPointer, overlayGlxContext, NULL),
    CALLBACK(GlxNoverlayExposeCallback, overlayExposeCallback),
    VALUE(GlxNglxConfigSecondary, GlxCGlxConfig, XtRPointer, glxConfigSecondary, gsDefaultConfig),
    VALUE(GlxNsecondaryWindow, XtCWindow, XtRWindow, secondaryWindow, None),
    VALUE(GlxNselectSecondaryContext, GlxCSelectSecondaryContext, XtRBoolean, selectSecondaryContext, False),
    VALUE(GlxNalternateSecondaryColormap, XtCColormap, XtRColormap, alternateSecondaryColormap, None),
};

static XtActionsRec gsActions[] = {{"glxInput", input}};

GlxMDrawClassRec glXMDrawClassRec = {
    .core_class =
        {
            .superclass = (WidgetClass)&xmPrimitiveClassRec,
            .class_name = "GlxMDraw",
            .widget_size = sizeof(GlxMDrawRec),
            .class_part_initialize = classPartInitialize,
            .initialize = initialize,
            .realize = realize,
            .actions = gsActions,
            .num_actions = XtNumber(gsActions),
            .resources = gsResources,
            .num_resources = XtNumber(gsResources),
            .xrm_class = NULLQUARK,
            .compress_motion = False,
            .compress_exposure = XtExposeCompressSeries,
            .compress_enterleave = True,
            .destroy = destroy,
            .resize = resize,
            .expose = expose,
            .set_values = setValues,
            .set_values_almost = XtInheritSetValuesAlmost,
            .version = XtVersion,
            .tm_table = gsTranslations,
            .query_geometry = XtInheritQueryGeometry,
        },
    /*
     * No highlight, for its graphics contexts are of the parent's depth, and none of the primitive's own translations,
     * for they would take the arrow and tab keys from glxInput.
     */
    .drawingArea = {.cleanUp = cleanUp},
};

WidgetClass glXMDrawWidgetClass = (WidgetClass)&glXMDrawClassRec;

Widget GlXCreateMDraw(Widget parent, const char* name, ArgList arguments, Cardinal count)
{
    return XtCreateWidget(name, glXMDrawWidgetClass, parent, arguments, count);
}

void GlXCleanUpMDraw(Widget widget)
{
    if (XtIsSubclass(widget, glXMDrawWidgetClass) && XtIsRealized(widget))
        ((GlxMDrawClassRec*)XtClass(widget))->drawingArea.cleanUp(widget);
}

int GlXTransparentIndexMDraw(void)
{
    return gsTransparentIndex;
}
