/* The code of the page about the Motif drawing area. */

#include "Graphics/glxDrawingArea/GlxMDraw.h"

#include <X11/StringDefs.h>
#include <Xm/Form.h>
#include <Xm/Xm.h>

#include <stdlib.h>

static int gDrawn = 0;

static void draw(Widget area, XtPointer client, XtPointer call)
{
    const GlxMDrawCallbackStruct* data = call;
    glXMakeCurrent(XtDisplay(area), data->window, data->context);
    glViewport(0, 0, data->width, data->height);
    glClear(GL_COLOR_BUFFER_BIT);
    ++gDrawn;
    (void)client;
    glXSwapBuffers(XtDisplay(area), data->window);
}

static int config[] = {GLX_RGBA, GLX_RED_SIZE, 8, GLX_DEPTH_SIZE, 24, GLX_DOUBLEBUFFER, None};

int main(int argc, char** argv)
{
    XtAppContext app = NULL;
    Widget top = XtVaAppInitialize(&app, "Motif", NULL, 0, &argc, argv, NULL, NULL);
    Widget form = XtVaCreateManagedWidget("form", xmFormWidgetClass, top, NULL);

    Arg args[] = {{GlxNglxConfig, (XtArgVal)config}, {GlxNglxConfigSecondary, (XtArgVal)NULL}};
    Widget area = GlXCreateMDraw(form, "area", args, XtNumber(args));
    XtAddCallback(area, GlxNexposeCallback, draw, NULL);
    XtManageChild(area);

    XtRealizeWidget(top);
    while (!gDrawn)
        XtAppProcessEvent(app, XtIMAll);
    if (argc > 1)
        XtVaSetValues(area, GlxNselectSecondaryContext, True, NULL);
    XtDestroyWidget(top);
    return gDrawn ? EXIT_SUCCESS : EXIT_FAILURE;
}
