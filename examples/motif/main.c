/*
 * A Motif program with the GlxMDraw drawing area: a knot, turned by the scale, the arrow keys or a drag, and shown
 * shaded in the main window or as a mesh in the secondary one. Both windows call one display list, for their contexts
 * share them, and the viewport and the matrices come along when the window is switched.
 */

#include "Graphics/glxDrawingArea/GlxMDraw.h"

#include <GL/glu.h>
#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <Xm/XmAll.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define PI 3.14159265358979323846

enum { kTurn = 335, kTilt = 28 }; /* degrees, to begin with */

typedef struct
{
    XtAppContext application;
    Widget shell, area, scale, toggle, status;
    /* The window that is shown and its context. */
    Window window;
    GLXContext context;
    GLuint knot;
    int turn; /* about the vertical axis, degrees */
    int tilt; /* about the horizontal axis, degrees */
    int dragX, dragY;
    int framesLeft; /* of a run without a user; -1 for a run with one */
    const char* snapshot;
    char expose[48], resize[48], input[48];
} App;

static String fallbackResources[] = {"*renderTable: sans",
                                     "*sans*fontType: FONT_IS_XFT",
                                     "*sans*fontName: DejaVu Sans",
                                     "*sans*fontSize: 10",
                                     "*background: #d9dee5",
                                     "*foreground: #1c2430",
                                     "*highlightColor: #e08a2e",
                                     "*XmToggleButton.selectColor: #e08a2e",
                                     "*XmScale.XmScrollBar.troughColor: #b9c2ce",
                                     NULL};

/* Drawing */

/* A point of the (2, 3) torus knot, t in radians. */
static void knotPoint(double t, double point[3])
{
    const double r = 2 + cos(3 * t);
    point[0] = r * cos(2 * t);
    point[1] = r * sin(2 * t);
    point[2] = 1.1 * sin(3 * t);
}

static void cross(const double a[3], const double b[3], double result[3])
{
    for (int i = 0; i < 3; ++i)
        result[i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
    const double length = sqrt(result[0] * result[0] + result[1] * result[1] + result[2] * result[2]);
    for (int i = 0; i < 3; ++i)
        result[i] /= length;
}

/* A vertex of the tube around the knot, at the angle a, in radians, of its ring at t. */
static void tubeVertex(double t, double a)
{
    const double step = 1e-3;
    const double radius = 0.52;
    double before[3], at[3], after[3], along[3], outward[3], side[3], up[3];
    knotPoint(t - step, before);
    knotPoint(t, at);
    knotPoint(t + step, after);
    /* The knot winds round a circle of radius 2: away from that is a direction that turns evenly. */
    const double center[3] = {2 * cos(2 * t), 2 * sin(2 * t), 0};
    for (int i = 0; i < 3; ++i) {
        along[i] = after[i] - before[i];
        outward[i] = at[i] - center[i];
    }
    cross(along, outward, side);
    cross(side, along, up);
    double normal[3], vertex[3];
    for (int i = 0; i < 3; ++i) {
        normal[i] = cos(a) * up[i] + sin(a) * side[i];
        vertex[i] = at[i] + radius * normal[i];
    }
    glNormal3dv(normal);
    glVertex3dv(vertex);
}

static GLuint compileKnot(void)
{
    const int rings = 280;
    const int sides = 32;
    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    for (int i = 0; i < rings; ++i) {
        glBegin(GL_QUAD_STRIP);
        for (int k = 0; k <= sides; ++k) {
            tubeVertex(2 * PI * (i + 1) / rings, 2 * PI * k / sides);
            tubeVertex(2 * PI * i / rings, 2 * PI * k / sides);
        }
        glEnd();
    }
    glEndList();
    return list;
}

static void setProjection(int width, int height)
{
    glViewport(0, 0, width, height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(34, (double)width / (height > 0 ? height : 1), 1, 40);
    glMatrixMode(GL_MODELVIEW);
}

static void setModelView(const App* app)
{
    glLoadIdentity();
    glTranslated(0, 0, -13);
    glRotated(app->tilt, 1, 0, 0);
    glRotated(app->turn, 0, 1, 0);
}

static void drawBackground(Boolean isSecondary)
{
    static const GLfloat colors[2][2][3] = {{{0.09f, 0.11f, 0.15f}, {0.36f, 0.42f, 0.50f}},
                                            {{0.02f, 0.05f, 0.10f}, {0.05f, 0.16f, 0.27f}}};
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glBegin(GL_QUADS);
    for (int i = 0; i < 4; ++i) {
        glColor3fv(colors[isSecondary ? 1 : 0][i / 2]);
        glVertex2i(i == 0 || i == 3 ? -1 : 1, i < 2 ? -1 : 1);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

static void setLights(void)
{
    static const GLfloat position[2][4] = {{-4, 6, 7, 0}, {6, -3, 2, 0}};
    static const GLfloat diffuse[2][4] = {{1, 0.97f, 0.9f, 1}, {0.22f, 0.3f, 0.45f, 1}};
    static const GLfloat specular[4] = {0.55f, 0.55f, 0.55f, 1};
    glPushMatrix();
    glLoadIdentity();
    for (int i = 0; i < 2; ++i) {
        glLightfv(GL_LIGHT0 + i, GL_POSITION, position[i]);
        glLightfv(GL_LIGHT0 + i, GL_DIFFUSE, diffuse[i]);
        glEnable(GL_LIGHT0 + i);
    }
    glPopMatrix();
    glMaterialfv(GL_FRONT, GL_SPECULAR, specular);
    glMaterialf(GL_FRONT, GL_SHININESS, 60);
    glColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHTING);
}

static Boolean isSecondaryShown(const App* app)
{
    return XmToggleButtonGetState(app->toggle);
}

/* Draws the window that is shown, with the viewport and the matrices that its context has. */
static void draw(App* app)
{
    if (!app->window)
        return;
    const Boolean isMesh = isSecondaryShown(app);
    glXMakeCurrent(XtDisplay(app->area), app->window, app->context);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawBackground(isMesh);
    glEnable(GL_DEPTH_TEST);
    setLights();
    if (!isMesh) {
        glColor3f(0.93f, 0.52f, 0.13f);
        glCallList(app->knot);
    } else {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1, 1);
        glColor3f(0.04f, 0.13f, 0.22f);
        glCallList(app->knot);
        glDisable(GL_LIGHTING);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glEnable(GL_CULL_FACE);
        glColor3f(0.35f, 0.82f, 0.95f);
        glCallList(app->knot);
        glDisable(GL_CULL_FACE);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    }
    glXSwapBuffers(XtDisplay(app->area), app->window);
}

/* Reports */

static void showReports(const App* app)
{
    char text[200];
    snprintf(text, sizeof(text), "expose: %s     resize: %s     input: %s", app->expose, app->resize, app->input);
    XmString string = XmStringCreateLocalized(text);
    XtVaSetValues(app->status, XmNlabelString, string, NULL);
    XmStringFree(string);
}

static void view(App* app, int turn, int tilt)
{
    app->turn = (turn % 360 + 360) % 360;
    app->tilt = tilt < -90 ? -90 : tilt > 90 ? 90 : tilt;
    XmScaleSetValue(app->scale, app->turn);
    if (!app->window)
        return;
    glXMakeCurrent(XtDisplay(app->area), app->window, app->context);
    setModelView(app);
    draw(app);
}

/* The drawing area's callbacks */

static void onInit(Widget area, XtPointer client, XtPointer call)
{
    App* app = client;
    const GlxMDrawCallbackStruct* data = call;
    if (!data->context) {
        fprintf(stderr, "motif: the display offers no OpenGL window\n");
        exit(1);
    }
    app->window = data->window;
    app->context = data->context;
    glXMakeCurrent(XtDisplay(area), data->window, data->context);
    app->knot = compileKnot();
    setProjection(data->width, data->height);
    setModelView(app);
}

static void onExpose(Widget area, XtPointer client, XtPointer call)
{
    App* app = client;
    const GlxMDrawCallbackStruct* data = call;
    (void)area;
    snprintf(app->expose, sizeof(app->expose), "%s window", isSecondaryShown(app) ? "secondary" : "main");
    showReports(app);
    if (data->window == app->window)
        draw(app);
}

static void onResize(Widget area, XtPointer client, XtPointer call)
{
    App* app = client;
    const GlxMDrawCallbackStruct* data = call;
    glXMakeCurrent(XtDisplay(area), data->window, data->context);
    setProjection(data->width, data->height);
    snprintf(app->resize, sizeof(app->resize), "%d x %d", data->width, data->height);
    showReports(app);
    draw(app);
}

static void onInput(Widget area, XtPointer client, XtPointer call)
{
    App* app = client;
    const GlxMDrawCallbackStruct* data = call;
    const XEvent* event = data->event;
    switch (event->type) {
    case KeyPress:
    case KeyRelease: {
        const KeySym key = XkbKeycodeToKeysym(XtDisplay(area), event->xkey.keycode, 0, 0);
        const char* name = XKeysymToString(key);
        snprintf(app->input, sizeof(app->input), "key %s %s", name ? name : "?",
                 event->type == KeyPress ? "down" : "up");
        if (event->type == KeyPress)
            view(app,
                 app->turn + (key == XK_Right  ? 5
                              : key == XK_Left ? -5
                                               : 0),
                 app->tilt + (key == XK_Down ? 5
                              : key == XK_Up ? -5
                                             : 0));
        break;
    }
    case MotionNotify:
        snprintf(app->input, sizeof(app->input), "drag to %d, %d", event->xmotion.x, event->xmotion.y);
        view(app, app->turn + (event->xmotion.x - app->dragX) / 2, app->tilt + (event->xmotion.y - app->dragY) / 2);
        /* The odd pixel counts in the next step. */
        app->dragX += (event->xmotion.x - app->dragX) / 2 * 2;
        app->dragY += (event->xmotion.y - app->dragY) / 2 * 2;
        break;
    default:
        snprintf(app->input, sizeof(app->input), "button %u %s", event->xbutton.button,
                 event->type == ButtonPress ? "down" : "up");
        if (event->type == ButtonPress) {
            XmProcessTraversal(area, XmTRAVERSE_CURRENT); /* the keys go where the pointer was pressed */
            app->dragX = event->xbutton.x;
            app->dragY = event->xbutton.y;
        }
    }
    showReports(app);
}

/* The controls */

static void onScale(Widget scale, XtPointer client, XtPointer call)
{
    App* app = client;
    (void)scale;
    view(app, ((XmScaleCallbackStruct*)call)->value, app->tilt);
}

static void onToggle(Widget toggle, XtPointer client, XtPointer call)
{
    App* app = client;
    (void)toggle;
    XtVaSetValues(app->area, GlxNselectSecondaryContext, ((XmToggleButtonCallbackStruct*)call)->set, NULL);
    /* What is shown now is current too. Its exposure draws it. */
    app->window = glXGetCurrentDrawable();
    app->context = glXGetCurrentContext();
}

static void onReset(Widget button, XtPointer client, XtPointer call)
{
    (void)button;
    (void)call;
    view(client, kTurn, kTilt);
}

static void onQuit(Widget button, XtPointer client, XtPointer call)
{
    App* app = client;
    (void)button;
    (void)call;
    XtAppSetExitFlag(app->application);
}

static Widget addMenu(Widget bar, const char* label, const char* entries[], XtCallbackProc procedures[], App* app)
{
    Widget menu = XmCreatePulldownMenu(bar, (String) "menu", NULL, 0);
    XtVaCreateManagedWidget(label, xmCascadeButtonWidgetClass, bar, XmNsubMenuId, menu, XmNmnemonic, label[0], NULL);
    for (int i = 0; entries[i]; ++i)
        XtAddCallback(XtVaCreateManagedWidget(entries[i], xmPushButtonWidgetClass, menu, NULL), XmNactivateCallback,
                      procedures[i], app);
    return menu;
}

static void makeWindow(App* app)
{
    static int smooth[] = {GLX_RGBA, GLX_RED_SIZE,       8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE,    8,   GLX_DEPTH_SIZE,
                           16,       GLX_SAMPLE_BUFFERS, 1, GLX_SAMPLES,    4, GLX_DOUBLEBUFFER, None};
    XVisualInfo* visual = glXChooseVisual(XtDisplay(app->shell), DefaultScreen(XtDisplay(app->shell)), smooth);

    Widget window = XtVaCreateManagedWidget("window", xmMainWindowWidgetClass, app->shell, NULL);
    Widget bar = XmCreateMenuBar(window, (String) "bar", NULL, 0);
    addMenu(bar, "File", (const char*[]){"Quit", NULL}, (XtCallbackProc[]){onQuit}, app);
    addMenu(bar, "View", (const char*[]){"Reset", NULL}, (XtCallbackProc[]){onReset}, app);
    XtManageChild(bar);

    Widget form = XtVaCreateManagedWidget("form", xmFormWidgetClass, window, XmNhorizontalSpacing, 10,
                                          XmNverticalSpacing, 8, NULL);
    app->status = XtVaCreateManagedWidget("status", xmLabelWidgetClass, form, XmNalignment, XmALIGNMENT_BEGINNING,
                                          XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                                          XmNrightAttachment, XmATTACH_FORM, XmNrecomputeSize, False, NULL);
    app->toggle = XtVaCreateManagedWidget("Secondary window", xmToggleButtonWidgetClass, form, XmNrightAttachment,
                                          XmATTACH_FORM, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget,
                                          app->status, XmNmarginWidth, 6, NULL);
    app->scale = XtVaCreateManagedWidget("scale", xmScaleWidgetClass, form, XmNorientation, XmHORIZONTAL, XmNmaximum,
                                         359, XmNvalue, app->turn, XmNshowValue, True, XmNleftAttachment, XmATTACH_FORM,
                                         XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget, app->toggle,
                                         XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, app->status, NULL);
    Widget frame =
        XtVaCreateManagedWidget("frame", xmFrameWidgetClass, form, XmNshadowType, XmSHADOW_IN, XmNtopAttachment,
                                XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                                XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, app->scale, NULL);
    Arg arguments[4];
    Cardinal n = 0;
    XtSetArg(arguments[n], XmNwidth, 720), ++n;
    XtSetArg(arguments[n], XmNheight, 480), ++n;
    if (visual) {
        XtSetArg(arguments[n], (String)GlxNglxConfig, smooth), ++n;
        XtSetArg(arguments[n], (String)GlxNglxConfigSecondary, smooth), ++n;
        XFree(visual);
    }
    app->area = GlXCreateMDraw(frame, "area", arguments, n);
    XtAddCallback(app->area, GlxNginitCallback, onInit, app);
    XtAddCallback(app->area, GlxNexposeCallback, onExpose, app);
    XtAddCallback(app->area, GlxNresizeCallback, onResize, app);
    XtAddCallback(app->area, GlxNinputCallback, onInput, app);
    XtManageChild(app->area);
    XtVaSetValues(form, XmNinitialFocus, frame, NULL);
    XtVaSetValues(frame, XmNinitialFocus, app->area, NULL);
    XtAddCallback(app->scale, XmNvalueChangedCallback, onScale, app);
    XtAddCallback(app->scale, XmNdragCallback, onScale, app);
    XtAddCallback(app->toggle, XmNvalueChangedCallback, onToggle, app);
    XtVaSetValues(window, XmNmenuBar, bar, XmNworkWindow, form, NULL);
    showReports(app);
}

/* Runs without a user */

/* The whole window as a portable pixmap; nothing may cover it. */
static Boolean saveWindow(Widget shell, const char* path)
{
    Dimension width = 0;
    Dimension height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, NULL);
    XImage* image = XGetImage(XtDisplay(shell), XtWindow(shell), 0, 0, width, height, AllPlanes, ZPixmap);
    FILE* file = image ? fopen(path, "wb") : NULL;
    if (!file) {
        fprintf(stderr, "motif: cannot write %s\n", path);
        if (image)
            XDestroyImage(image);
        return False;
    }
    fprintf(file, "P6\n%d %d\n255\n", image->width, image->height);
    for (int y = 0; y < image->height; ++y) {
        for (int x = 0; x < image->width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            fputc(pixel >> 16 & 255, file), fputc(pixel >> 8 & 255, file), fputc(pixel & 255, file);
        }
    }
    XDestroyImage(image);
    return fclose(file) == 0;
}

static void nextFrame(XtPointer client, XtIntervalId* id)
{
    App* app = client;
    (void)id;
    if (app->framesLeft-- > 0) {
        view(app, app->turn + 2, app->tilt);
        XtAppAddTimeOut(app->application, 20, nextFrame, app);
        return;
    }
    glXWaitGL();
    XSync(XtDisplay(app->shell), False);
    if (app->snapshot && !saveWindow(app->shell, app->snapshot))
        exit(1);
    XtAppSetExitFlag(app->application);
}

static int printUsage(FILE* file)
{
    fputs("usage: motif [--frames N] [--snapshot FILE.ppm] [--secondary]\n"
          "  --frames N           turns the solid for N frames and ends\n"
          "  --snapshot FILE.ppm  writes the window to a picture and ends\n"
          "  --secondary          begins with the secondary window\n",
          file);
    return file == stderr ? 2 : 0;
}

int main(int argc, char** argv)
{
    App app = {.turn = kTurn, .tilt = kTilt, .framesLeft = -1, .expose = "-", .resize = "-", .input = "-"};
    Boolean isSecondary = False;
    app.shell = XtVaOpenApplication(&app.application, "Motif", NULL, 0, &argc, argv, fallbackResources,
                                    applicationShellWidgetClass, XmNtitle, "GlxMDraw", NULL);
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--secondary") == 0)
            isSecondary = True;
        else if (strcmp(argv[i], "--frames") == 0 && i + 1 < argc)
            app.framesLeft = atoi(argv[++i]);
        else if (strcmp(argv[i], "--snapshot") == 0 && i + 1 < argc)
            app.snapshot = argv[++i];
        else
            return printUsage(strcmp(argv[i], "--help") == 0 ? stdout : stderr);
    }
    if (app.snapshot && app.framesLeft < 0)
        app.framesLeft = 10;

    makeWindow(&app);
    XtRealizeWidget(app.shell);
    if (isSecondary)
        XmToggleButtonSetState(app.toggle, True, True);
    if (app.framesLeft >= 0)
        XtAppAddTimeOut(app.application, 200, nextFrame, &app);
    XtAppMainLoop(app.application);
    XtDestroyWidget(app.shell);
    XtDestroyApplicationContext(app.application);
    return 0;
}
