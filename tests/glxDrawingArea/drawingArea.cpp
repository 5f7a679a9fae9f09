#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Last, for the macros of Xlib and Motif.
#include "Graphics/glxDrawingArea/GlxMDrawP.h"
#include <X11/extensions/XTest.h>
#include <Xm/XmAll.h>
#include <dlfcn.h>

#include <array>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

bool gsIsGeometryLost = false;
std::vector<std::string> gsWarnings;

int gsOrdinary[] = {GLX_RGBA, GLX_RED_SIZE, 8, GLX_DEPTH_SIZE, 16, GLX_DOUBLEBUFFER, None};
int gsImpossible[] = {GLX_RGBA, GLX_RED_SIZE, 64, None};

/** What a drawing area has reported: callback, reason, type of the event, window, context, width and height. */
using Report = std::tuple<std::string, int, int, Window, GLXContext, int, int>;
std::vector<Report> gsReports;

void keep(Widget, XtPointer client, XtPointer call)
{
    const auto* data = static_cast<const GlxMDrawCallbackStruct*>(call);
    gsReports.emplace_back(static_cast<const char*>(client), data->reason, data->event ? data->event->type : 0,
                           data->window, data->context, data->width, data->height);
}

template <class T> T get(Widget widget, const char* name)
{
    T value{};
    XtVaGetValues(widget, name, &value, nullptr);
    return value;
}

/** An Xt application: a shell with a row of drawing areas. No X error may occur in it. */
class GlxMDraw : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static char program[] = "test";
        char* arguments[] = {program, nullptr};
        int count = 1;
        fShell = XtVaOpenApplication(&fApplication, "Test", nullptr, 0, &count, arguments, nullptr,
                                     applicationShellWidgetClass, XmNallowShellResize, True, nullptr);
        XtAppSetWarningHandler(fApplication, [](char* text) { gsWarnings.emplace_back(text); });
        fDisplay = XtDisplay(fShell);
        fRow = XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, fShell, XmNorientation, XmHORIZONTAL, nullptr);
        fVisual = glXChooseVisual(fDisplay, DefaultScreen(fDisplay), gsOrdinary);
    }
    void TearDown() override
    {
        XtDestroyWidget(fShell);
        XSync(fDisplay, False);
        XFree(fVisual);
        XtDestroyApplicationContext(fApplication);
    }

    /** A managed drawing area of 90 x 60 pixels whose reports are kept. */
    Widget create(const std::vector<std::pair<const char*, XtArgVal>>& resources = {})
    {
        std::vector<Arg> arguments = {{const_cast<char*>(XmNwidth), 90}, {const_cast<char*>(XmNheight), 60}};
        for (const auto& [name, value] : resources)
            arguments.push_back({const_cast<char*>(name), value});
        const Widget area = GlXCreateMDraw(fRow, "area", arguments.data(), Cardinal(arguments.size()));
        for (const char* name :
             {GlxNginitCallback, GlxNinputCallback, GlxNresizeCallback, GlxNexposeCallback, GlxNoverlayExposeCallback})
            XtAddCallback(area, name, keep, const_cast<char*>(name));
        XtManageChild(area);
        return area;
    }
    Widget createWithOverlay() { return create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(fVisual)}}); }
    /** Lets the application handle all that has happened so far. */
    void settle()
    {
        for (XSync(fDisplay, False); XtAppPending(fApplication); XSync(fDisplay, False))
            XtAppProcessEvent(fApplication, XtIMAll);
    }
    void realize()
    {
        XtRealizeWidget(fShell);
        settle();
    }
    /** Whether a list compiled in @p from can be called in @p to. Both are for windows like @p window. */
    bool shareLists(Window window, GLXContext from, GLXContext to)
    {
        glXMakeCurrent(fDisplay, window, from);
        const GLuint list = glGenLists(40) + 39; // a name that a context of its own would not have come to
        glNewList(list, GL_COMPILE);
        glEndList();
        const bool areShared = glXMakeCurrent(fDisplay, window, to) && glIsList(list);
        glXMakeCurrent(fDisplay, None, nullptr);
        return areShared;
    }
    XWindowAttributes attributes(Window window)
    {
        XWindowAttributes result{};
        XGetWindowAttributes(fDisplay, window, &result);
        return result;
    }
    Window parentOf(Window window)
    {
        Window root, parent, *children;
        unsigned count;
        XQueryTree(fDisplay, window, &root, &parent, &children, &count);
        XFree(children);
        return parent;
    }

    static Window secondary(Widget area) { return get<Window>(area, GlxNsecondaryWindow); }
    static Window overlay(Widget area) { return get<Window>(area, GlxNoverlayWindow); }
    static GLXContext context(Widget area) { return get<GLXContext>(area, GlxNglxContext); }
    static XtArgVal address(const void* pointer) { return reinterpret_cast<XtArgVal>(pointer); }
    static void select(Widget area, bool on) { XtVaSetValues(area, GlxNselectSecondaryContext, on, nullptr); }

    XtAppContext fApplication = nullptr;
    Display* fDisplay = nullptr;
    Widget fShell = nullptr;
    Widget fRow = nullptr;
    XVisualInfo* fVisual = nullptr; ///< an ordinary one
};

TEST_F(GlxMDraw, ReportsRealisationExposureAndSize)
{
    const Widget unsized = XtVaCreateWidget("area", glXMDrawWidgetClass, fRow, nullptr);
    EXPECT_EQ(get<Dimension>(unsized, XmNwidth), 100);
    EXPECT_EQ(get<Dimension>(unsized, XmNheight), 100);
    EXPECT_TRUE(get<Boolean>(unsized, GlxNoverrideColormap));
    for (const char* name :
         {GlxNmainWindow, GlxNglxContextSharedDisplayList, GlxNalternateColormap, GlxNuseOverlay, GlxNoverlayWindow,
          GlxNoverlayColormap, GlxNoverlayDepth, GlxNoverlayVisual, GlxNoverlyGlxConfig, GlxNoverlayGlxContext,
          GlxNsecondaryWindow, GlxNselectSecondaryContext, GlxNalternateSecondaryColormap})
        EXPECT_EQ(get<XtArgVal>(unsized, name), 0u) << name;
    const int* config = get<int*>(unsized, GlxNglxConfig);
    EXPECT_EQ(get<int*>(unsized, GlxNglxConfigSecondary), config);
    EXPECT_THAT(std::vector<int>(config, config + 11),
                ElementsAre(GLX_RGBA, GLX_RED_SIZE, 3, GLX_BLUE_SIZE, 3, GLX_GREEN_SIZE, 3, GLX_DEPTH_SIZE, 12,
                            GLX_DOUBLEBUFFER, None));
    const Widget area = create();
    realize();
    const Window window = XtWindow(area);
    EXPECT_EQ(get<Window>(area, GlxNmainWindow), window);
    EXPECT_EQ(attributes(window).visual, get<XVisualInfo*>(area, GlxNvisualInfo)->visual);
    EXPECT_EQ(gsReports.front(), Report(GlxNginitCallback, XmCR_NONE, 0, window, context(area), 90, 60));
    EXPECT_EQ(gsReports.back(), Report(GlxNexposeCallback, 38, Expose, window, context(area), 90, 60));
    gsReports.clear();
    XtVaSetValues(area, XmNwidth, 130, XmNheight, 70, nullptr);
    settle();
    EXPECT_THAT(gsReports, Contains(Report(GlxNresizeCallback, 39, 0, window, context(area), 130, 70)));
}

using GlxMDrawRealEvents = GlxMDraw;

// Whichever window is shown, input is the widget's.
TEST_F(GlxMDrawRealEvents, ReachTheInputCallback)
{
    const Widget area = createWithOverlay();
    realize();
    XSetInputFocus(fDisplay, XtWindow(fShell), RevertToParent, CurrentTime);
    settle();
    ASSERT_TRUE(XmProcessTraversal(area, XmTRAVERSE_CURRENT));
    settle();
    Window child;
    int x, y;
    XTranslateCoordinates(fDisplay, XtWindow(area), DefaultRootWindow(fDisplay), 0, 0, &x, &y, &child);
    for (const bool isSecondary : {false, true}) {
        select(area, isSecondary);
        settle();
        gsReports.clear();
        const KeyCode key = XKeysymToKeycode(fDisplay, XK_Tab);
        XTestFakeMotionEvent(fDisplay, -1, x + 10, y + 10, CurrentTime);
        XTestFakeKeyEvent(fDisplay, key, True, CurrentTime);
        XTestFakeKeyEvent(fDisplay, key, False, CurrentTime);
        XTestFakeButtonEvent(fDisplay, 1, True, CurrentTime);
        XTestFakeMotionEvent(fDisplay, -1, x + 20, y + 12, CurrentTime);
        XTestFakeButtonEvent(fDisplay, 1, False, CurrentTime);
        std::vector<Report> expected;
        for (const int event : {KeyPress, KeyRelease, ButtonPress, MotionNotify, ButtonRelease})
            expected.emplace_back(GlxNinputCallback, 40, event, XtWindow(area), context(area), 90, 60);
        waitUntil([&] {
            settle();
            return gsReports.size() >= expected.size();
        });
        EXPECT_EQ(gsReports, expected);
    }
}

TEST_F(GlxMDraw, SharesListsWithItsClassOrWithWhatItIsGiven)
{
    const GLXContext foreign = glXCreateContext(fDisplay, fVisual, nullptr, True);
    const Widget first = create();
    const Widget apart = create({{GlxNglxContextSharedDisplayList, address(foreign)}});
    const Widget second = create();
    realize();
    EXPECT_TRUE(shareLists(XtWindow(first), context(first), context(second)));
    EXPECT_TRUE(shareLists(XtWindow(first), foreign, context(apart)));
    EXPECT_FALSE(shareLists(XtWindow(first), context(apart), context(second)));
    // The next one shares with one that still lives.
    XtDestroyWidget(first);
    const Widget third = create();
    EXPECT_TRUE(shareLists(XtWindow(second), context(second), context(third)));
    glXDestroyContext(fDisplay, foreign);
}

TEST_F(GlxMDraw, UsesAGivenContextAndLeavesItToItsOwner)
{
    const GLXContext own = glXCreateContext(fDisplay, fVisual, nullptr, True);
    const Widget given = create({{GlxNglxConfig, address(gsOrdinary)}, {GlxNglxContext, address(own)}});
    const Widget maker = create();
    const GLXContext made = context(maker);
    const Widget user = create({{GlxNglxContext, address(made)}});
    realize();
    EXPECT_EQ(context(given), own);
    EXPECT_TRUE(glXMakeCurrent(fDisplay, XtWindow(given), own));
    XtDestroyWidget(given);
    XtDestroyWidget(maker);
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
    EXPECT_FALSE(shareLists(XtWindow(user), own, made));
    glXDestroyContext(fDisplay, own);
}

TEST_F(GlxMDraw, TakesTheColormapOfTheRule)
{
    std::array<Colormap, 3> made;
    for (Colormap& colormap : made)
        colormap = XCreateColormap(fDisplay, DefaultRootWindow(fDisplay), fVisual->visual, AllocNone);
    const auto [own, alternate, second] = made;
    const auto isGiven = [&](Colormap colormap) { return std::find(made.begin(), made.end(), colormap) != made.end(); };
    // Given for main and secondary window, whether the own one is overridden, and what comes of it; none if new.
    for (const auto& [given, givenSecond, isOverridden, main, other] :
         std::vector<std::array<Colormap, 5>>{{None, None, True, None, None},
                                              {None, None, False, own, own},
                                              {alternate, None, True, alternate, None},
                                              {None, second, False, own, second}}) {
        const Widget area = create({{XmNcolormap, own},
                                    {GlxNglxConfig, address(gsOrdinary)},
                                    {GlxNglxConfigSecondary, address(gsOrdinary)},
                                    {GlxNoverrideColormap, isOverridden},
                                    {GlxNalternateColormap, given},
                                    {GlxNalternateSecondaryColormap, givenSecond}});
        realize();
        const Colormap ofMain = attributes(XtWindow(area)).colormap;
        const Colormap ofSecondary = attributes(secondary(area)).colormap;
        EXPECT_EQ(isGiven(ofMain) ? ofMain : None, main);
        EXPECT_EQ(isGiven(ofSecondary) ? ofSecondary : None, other);
    }
}

TEST_F(GlxMDraw, SwitchesWithViewportAndMatrices)
{
    const Widget area = create();
    realize();
    const Window other = secondary(area);
    const auto state = [] {
        std::vector<double> values(36);
        glGetDoublev(GL_VIEWPORT, &values[0]);
        glGetDoublev(GL_MODELVIEW_MATRIX, &values[4]);
        glGetDoublev(GL_PROJECTION_MATRIX, &values[20]);
        return values;
    };
    Window from = XtWindow(area);
    GLXContext fromContext = context(area);
    for (const bool isSecondary : {true, false, true}) {
        const Window to = isSecondary ? other : XtWindow(area);
        ASSERT_TRUE(glXMakeCurrent(fDisplay, from, fromContext));
        glViewport(3, 4, 50 + isSecondary, 31);
        glMatrixMode(GL_PROJECTION);
        glRotated(20, 1, 2, 3);
        glMatrixMode(GL_MODELVIEW);
        glTranslated(1, 2, 3);
        const std::vector<double> wanted = state();
        glXMakeCurrent(fDisplay, None, nullptr);
        settle();
        gsReports.clear();
        select(area, isSecondary);

        fromContext = glXGetCurrentContext();
        EXPECT_EQ(glXGetCurrentDrawable(), to);
        EXPECT_EQ(fromContext == context(area), !isSecondary);
        EXPECT_EQ(T3dPort::knownNativeContext(), fromContext);
        EXPECT_EQ(state(), wanted);
        EXPECT_EQ(attributes(other).map_state, isSecondary ? IsViewable : IsUnmapped);
        settle();
        EXPECT_EQ(gsReports.back(), Report(GlxNexposeCallback, 38, Expose, to, fromContext, 90, 60));
        from = to;
    }

    XtVaSetValues(area, XmNwidth, 140, nullptr);
    EXPECT_EQ(gsReports.back(), Report(GlxNresizeCallback, 39, 0, other, fromContext, 140, 60));
    EXPECT_EQ(attributes(other).width, 140);
    gsIsGeometryLost = true;
    select(area, false);
    gsIsGeometryLost = false;
    EXPECT_THAT(gsWarnings, ElementsAre("GlxMDraw: SetNewWindow : XGetGeometry failed\n"));
    EXPECT_EQ(glXGetCurrentDrawable(), XtWindow(area));
}

TEST_F(GlxMDraw, CoversItselfWithAnOverlayUntilCleanedUp)
{
    const Widget area = createWithOverlay();
    XtVaSetValues(area, GlxNoverlayColormap, None, nullptr);
    realize();
    const Window over = overlay(area);
    ASSERT_TRUE(over && get<Colormap>(area, GlxNoverlayColormap));
    EXPECT_EQ(attributes(over).all_event_masks, ExposureMask);
    EXPECT_EQ(get<int>(area, GlxNoverlayDepth), fVisual->depth);
    const GLXContext made = get<GLXContext>(area, GlxNoverlayGlxContext);
    EXPECT_THAT(gsReports, Contains(Report(GlxNoverlayExposeCallback, 38, Expose, over, made, 90, 60)));

    const Colormap colormap = XCreateColormap(fDisplay, over, fVisual->visual, AllocNone);
    XtVaSetValues(area, XmNwidth, 120, GlxNoverlayColormap, colormap, nullptr);
    EXPECT_EQ(attributes(over).width, 120);
    EXPECT_EQ(attributes(over).colormap, colormap);
    for (const bool isSecondary : {true, false}) {
        select(area, isSecondary);
        EXPECT_EQ(parentOf(over), isSecondary ? secondary(area) : XtWindow(area));
        EXPECT_EQ(attributes(over).map_state, IsViewable);
    }
    XtVaSetValues(area, GlxNuseOverlay, False, nullptr);
    EXPECT_EQ(overlay(area), None);
    XtVaSetValues(area, GlxNuseOverlay, True, GlxNoverlayVisual, nullptr, GlxNoverlyGlxConfig, gsOrdinary, nullptr);
    EXPECT_EQ(attributes(overlay(area)).visual, get<XVisualInfo*>(area, GlxNoverlayVisual)->visual);

    settle();
    gsReports.clear();
    for (const Window window : {XtWindow(area), overlay(area)})
        XClearArea(fDisplay, window, 0, 0, 0, 0, True);
    GlRecorder recorder;
    recorder.start();
    GlXCleanUpMDraw(area);
    recorder.stop();
    settle();
    EXPECT_TRUE(gsReports.empty());
    EXPECT_EQ(recorder.count("glFinish"), 1);
    EXPECT_EQ(glXGetCurrentContext(), context(area));
    EXPECT_FALSE(get<Boolean>(area, GlxNuseOverlay));
    EXPECT_EQ(overlay(area), None);
}

TEST_F(GlxMDraw, SurvivesTheLossOfItsOverlay)
{
    for (const bool isSecondary : {false, true}) {
        for (const bool isNoticedFirst : {true, false}) {
            const Widget area = createWithOverlay();
            realize();
            select(area, isSecondary);
            settle();
            XDestroyWindow(fDisplay, overlay(area));
            if (isNoticedFirst)
                settle();
            else
                XtVaSetValues(area, XmNwidth, 150, nullptr);
            EXPECT_EQ(overlay(area), None);
            EXPECT_FALSE(get<Boolean>(area, GlxNuseOverlay));
            select(area, !isSecondary);
        }
    }
}

TEST_F(GlxMDraw, FailsQuietlyWithoutAVisual)
{
    ::testing::internal::CaptureStderr();
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlyGlxConfig, address(gsImpossible)}});
    const Widget bare = create({{GlxNglxConfig, address(gsImpossible)}, {GlxNglxConfigSecondary, 0}});
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "glXChooseVisual failed, check XServer visual configurations\n");
    realize();
    EXPECT_EQ(overlay(area), None);
    EXPECT_EQ(context(bare), nullptr);
    EXPECT_EQ(secondary(bare), None);
    select(bare, true);
    EXPECT_FALSE(get<Boolean>(bare, GlxNselectSecondaryContext));
    EXPECT_EQ(gsWarnings.size(), 1u);
}

TEST_F(GlxMDraw, WithoutAContextIsAnApplicationError)
{
    // A fork would close the X connections of this process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT((GlRecorder::failNext("glXCreateContext", 1), create()), ::testing::ExitedWithCode(1),
                "GlxMDraw: OpenGL not supported on this display");
}

TEST_F(GlxMDraw, KeepsWhatCannotChange)
{
    const Widget area = createWithOverlay();
    realize();
    for (const char* name :
         {GlxNglxConfig, GlxNglxContext, GlxNmainWindow, GlxNglxContextSharedDisplayList, GlxNvisualInfo,
          GlxNoverrideColormap, GlxNalternateColormap, GlxNoverlayWindow, GlxNoverlayDepth, GlxNoverlayVisual,
          GlxNglxConfigSecondary, GlxNsecondaryWindow, GlxNalternateSecondaryColormap}) {
        gsWarnings.clear();
        const XtArgVal before = get<XtArgVal>(area, name);
        XtVaSetValues(area, name, XtArgVal(0x12345600), nullptr);
        EXPECT_EQ(get<XtArgVal>(area, name), before);
        EXPECT_THAT(gsWarnings, ElementsAre("GlxMDraw: XtSetValues cannot change " + std::string(name) + "\n"));
    }
    // What may change, the colormap not to none.
    gsWarnings.clear();
    XtVaSetValues(area, GlxNoverlayColormap, None, GlxNoverlayGlxContext, context(area), nullptr);
    EXPECT_TRUE(get<Colormap>(area, GlxNoverlayColormap));
    EXPECT_EQ(get<GLXContext>(area, GlxNoverlayGlxContext), context(area));
    EXPECT_THAT(gsWarnings, ElementsAre());
}

TEST_F(GlxMDraw, GoesInAnyOrder)
{
    for (const std::array<std::size_t, 3>& order : {std::array<std::size_t, 3>{0, 1, 2}, {2, 1, 0}, {1, 2, 0}}) {
        const std::array<Widget, 3> areas = {createWithOverlay(), createWithOverlay(), createWithOverlay()};
        realize();
        select(areas[1], true);
        for (const std::size_t i : order)
            XtDestroyWidget(areas[i]);
        settle();
    }
    // Windows that go and come again while the widget stays.
    const Widget area = createWithOverlay();
    select(area, true);
    settle();
    XtUnrealizeWidget(fShell);
    settle();
    gsReports.clear();
    realize();
    EXPECT_NE(std::get<0>(gsReports.front()), GlxNginitCallback);
    EXPECT_EQ(attributes(secondary(area)).map_state, IsViewable);
    EXPECT_EQ(parentOf(overlay(area)), secondary(area));
}

} // namespace

// Stands before Xlib's own.
extern "C" Status XGetGeometry(Display* display, Drawable drawable, Window* root, int* x, int* y, unsigned* width,
                               unsigned* height, unsigned* border, unsigned* depth)
{
    static const auto real = reinterpret_cast<decltype(&XGetGeometry)>(dlsym(RTLD_NEXT, "XGetGeometry"));
    return gsIsGeometryLost ? 0 : real(display, drawable, root, x, y, width, height, border, depth);
}
