#include "glxDrawingArea/MotifWindow.h"

#include "support/GlRecorder.h"

#include <gmock/gmock.h>

#include "Graphics/glxDrawingArea/GlxMDrawP.h"
#include <X11/extensions/XTest.h>
#include <dlfcn.h>

#include <array>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

bool gsIsGeometryLost = false;

int gsOrdinary[] = {GLX_RGBA, GLX_RED_SIZE, 8, GLX_DOUBLEBUFFER, None};
int gsImpossible[] = {GLX_RGBA, GLX_RED_SIZE, 64, None};

class GlxMDraw : public MotifWindow
{
protected:
    void TearDown() override
    {
        for (XVisualInfo* visual : fVisuals)
            XFree(visual);
        MotifWindow::TearDown();
    }

    XVisualInfo* ordinaryVisual()
    {
        fVisuals.push_back(glXChooseVisual(fDisplay, DefaultScreen(fDisplay), gsOrdinary));
        return fVisuals.back();
    }
    XWindowAttributes attributes(Window window)
    {
        XWindowAttributes result{};
        XGetWindowAttributes(fDisplay, window, &result);
        return result;
    }
    Window parentOf(Window window)
    {
        Window root = None;
        Window parent = None;
        Window* children = nullptr;
        unsigned count = 0;
        XQueryTree(fDisplay, window, &root, &parent, &children, &count);
        XFree(children);
        return parent;
    }
    static Window mainWindow(Widget area) { return get<Window>(area, GlxNmainWindow); }
    static Window secondary(Widget area) { return get<Window>(area, GlxNsecondaryWindow); }
    static Window overlay(Widget area) { return get<Window>(area, GlxNoverlayWindow); }
    static GLXContext context(Widget area) { return get<GLXContext>(area, GlxNglxContext); }
    static void select(Widget area, bool isSecondary)
    {
        XtVaSetValues(area, GlxNselectSecondaryContext, isSecondary, nullptr);
    }

    std::vector<XVisualInfo*> fVisuals;
};

TEST_F(GlxMDraw, HasItsDefaults)
{
    const Widget area = XtCreateWidget("area", glXMDrawWidgetClass, fForm, nullptr, 0);
    EXPECT_STREQ(glXMDrawClassRec.core_class.class_name, "GlxMDraw");
    EXPECT_TRUE(XmIsPrimitive(area));
    EXPECT_EQ(get<Dimension>(area, XmNwidth), 100);
    EXPECT_EQ(get<Dimension>(area, XmNheight), 100);
    for (const char* name : {GlxNglxConfig, GlxNglxConfigSecondary}) {
        const int* list = get<int*>(area, name);
        EXPECT_EQ(std::vector<int>(list, list + 11),
                  (std::vector<int>{GLX_RGBA, GLX_RED_SIZE, 3, GLX_BLUE_SIZE, 3, GLX_GREEN_SIZE, 3, GLX_DEPTH_SIZE, 12,
                                    GLX_DOUBLEBUFFER, None}));
    }
    EXPECT_TRUE(context(area));
    EXPECT_TRUE(get<XVisualInfo*>(area, GlxNvisualInfo));
    EXPECT_TRUE(get<Boolean>(area, GlxNoverrideColormap));
    EXPECT_FALSE(get<Boolean>(area, GlxNuseOverlay));
    EXPECT_FALSE(get<Boolean>(area, GlxNselectSecondaryContext));
    for (const char* name :
         {GlxNmainWindow, GlxNglxContextSharedDisplayList, GlxNalternateColormap, GlxNoverlayWindow,
          GlxNoverlayColormap, GlxNoverlayVisual, GlxNoverlyGlxConfig, GlxNoverlayGlxContext, GlxNsecondaryWindow,
          GlxNalternateSecondaryColormap})
        EXPECT_EQ(get<XtArgVal>(area, name), 0) << name;
    EXPECT_EQ(get<int>(area, GlxNoverlayDepth), 0);
    EXPECT_THAT(fsWarnings, ElementsAre());
}

TEST_F(GlxMDraw, ReportsRealisationExposureAndSize)
{
    const Widget area = create();
    realize();
    EXPECT_EQ(mainWindow(area), XtWindow(area));
    const XVisualInfo* visual = get<XVisualInfo*>(area, GlxNvisualInfo);
    const XWindowAttributes window = attributes(XtWindow(area));
    EXPECT_EQ(window.visual, visual->visual);
    EXPECT_EQ(window.depth, visual->depth);
    ASSERT_TRUE(waitUntil([&] { return !reports(GlxNexposeCallback).empty(); }));
    const std::vector<Report> init = reports(GlxNginitCallback);
    ASSERT_EQ(init.size(), 1u);
    EXPECT_EQ(init[0].window, XtWindow(area));
    EXPECT_EQ(init[0].context, context(area));
    const Report exposed = reports(GlxNexposeCallback).back();
    EXPECT_EQ(exposed.reason, 38);
    EXPECT_EQ(exposed.event, Expose);
    EXPECT_EQ(exposed.window, XtWindow(area));
    EXPECT_EQ(exposed.context, context(area));
    EXPECT_EQ(exposed.width, 90);
    EXPECT_EQ(exposed.height, 60);

    EXPECT_EQ(reports(GlxNresizeCallback).size(), 0u);
    XtVaSetValues(area, XmNwidth, 130, XmNheight, 70, nullptr);
    ASSERT_FALSE(reports(GlxNresizeCallback).empty());
    const Report resized = reports(GlxNresizeCallback).back();
    EXPECT_EQ(resized.reason, 39);
    EXPECT_EQ(resized.event, 0);
    EXPECT_EQ(resized.window, XtWindow(area));
    EXPECT_EQ(resized.width, 130);
    EXPECT_EQ(resized.height, 70);
    EXPECT_EQ(resized.context, context(area));
}

class GlxMDrawRealEvents : public GlxMDraw
{};

// Whichever window is shown, input is the widget's.
TEST_F(GlxMDrawRealEvents, ReachTheInputCallback)
{
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(ordinaryVisual())}});
    realize();
    XSetInputFocus(fDisplay, XtWindow(fShell), RevertToParent, CurrentTime);
    settle();
    ASSERT_TRUE(XmProcessTraversal(area, XmTRAVERSE_CURRENT));
    settle();
    Window child = None;
    int x = 0;
    int y = 0;
    XTranslateCoordinates(fDisplay, XtWindow(area), DefaultRootWindow(fDisplay), 0, 0, &x, &y, &child);
    for (const bool isSecondary : {false, true}) {
        select(area, isSecondary);
        settle();
        fReports.clear();
        const KeyCode key = XKeysymToKeycode(fDisplay, XK_Tab);
        XTestFakeMotionEvent(fDisplay, -1, x + 10, y + 10, CurrentTime);
        XTestFakeKeyEvent(fDisplay, key, True, CurrentTime);
        XTestFakeKeyEvent(fDisplay, key, False, CurrentTime);
        XTestFakeButtonEvent(fDisplay, 1, True, CurrentTime);
        XTestFakeMotionEvent(fDisplay, -1, x + 20, y + 12, CurrentTime);
        XTestFakeButtonEvent(fDisplay, 1, False, CurrentTime);
        waitUntil([&] { return reports(GlxNinputCallback).size() >= 5; });
        std::vector<int> events;
        for (const Report& input : reports(GlxNinputCallback)) {
            events.push_back(input.event);
            EXPECT_EQ(input.reason, 40);
            EXPECT_EQ(input.window, XtWindow(area));
            EXPECT_EQ(input.context, context(area));
        }
        EXPECT_THAT(events, ElementsAre(KeyPress, KeyRelease, ButtonPress, MotionNotify, ButtonRelease));
    }
}

TEST_F(GlxMDraw, SharesListsWithItsClassOrWithWhatItIsGiven)
{
    XVisualInfo* visual = ordinaryVisual();
    const GLXContext foreign = glXCreateContext(fDisplay, visual, nullptr, True);
    const Widget first = create();
    const Widget apart = create({{GlxNglxContextSharedDisplayList, address(foreign)}});
    const Widget second = create();
    EXPECT_TRUE(shareLists(context(first), context(second)));
    EXPECT_TRUE(shareLists(foreign, context(apart)));
    EXPECT_FALSE(shareLists(context(apart), context(second)));
    // The next one shares with one that still lives, and with none that was kept apart.
    XtDestroyWidget(first);
    const Widget third = create();
    EXPECT_TRUE(shareLists(context(second), context(third)));
    EXPECT_FALSE(shareLists(foreign, context(third)));
    glXDestroyContext(fDisplay, foreign);
}

TEST_F(GlxMDraw, UsesAGivenContextAndLeavesItToItsOwner)
{
    XVisualInfo* visual = ordinaryVisual();
    const GLXContext own = glXCreateContext(fDisplay, visual, nullptr, True);
    const Widget given = create({{GlxNglxConfig, address(gsOrdinary)}, {GlxNglxContext, address(own)}});
    const Widget maker = create();
    const Widget user = create({{GlxNglxContext, address(context(maker))}});
    realize();
    EXPECT_EQ(context(given), own);
    EXPECT_EQ(get<XVisualInfo*>(given, GlxNvisualInfo)->visualid, visual->visualid);
    EXPECT_TRUE(glXMakeCurrent(fDisplay, XtWindow(given), own));
    const GLXContext made = context(maker);
    GlRecorder recorder;
    recorder.start();
    XtDestroyWidget(given);
    XtDestroyWidget(maker);
    recorder.stop();
    // One secondary context each.
    EXPECT_EQ(recorder.count("glXDestroyContext"), 2);
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
    EXPECT_TRUE(glXMakeCurrent(fDisplay, XtWindow(user), made));
    EXPECT_TRUE(shareLists(made, made));
    glXDestroyContext(fDisplay, own);
}

TEST_F(GlxMDraw, TakesTheColormapOfTheRule)
{
    XVisualInfo* visual = ordinaryVisual();
    const Window root = DefaultRootWindow(fDisplay);
    const Colormap alternate = XCreateColormap(fDisplay, root, visual->visual, AllocNone);
    const Colormap second = XCreateColormap(fDisplay, root, visual->visual, AllocNone);
    const Colormap own = XCreateColormap(fDisplay, root, visual->visual, AllocNone);
    const Colormap isNew = None;
    struct
    {
        Colormap alternate, alternateSecondary;
        bool isOverridden;
        Colormap wanted, wantedSecondary;
    } const cases[] = {
        {None, None, true, isNew, isNew},
        {None, None, false, own, own},
        {alternate, second, true, alternate, second},
        {alternate, None, true, alternate, isNew},
        {None, second, false, own, second},
    };
    for (const auto& c : cases) {
        create({{XmNcolormap, own},
                {GlxNglxConfig, address(gsOrdinary)},
                {GlxNglxConfigSecondary, address(gsOrdinary)},
                {GlxNoverrideColormap, c.isOverridden},
                {GlxNalternateColormap, c.alternate},
                {GlxNalternateSecondaryColormap, c.alternateSecondary}});
    }
    realize();
    WidgetList children = get<WidgetList>(fForm, XmNchildren);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto expect = [&](Window window, Colormap wanted) {
            const Colormap got = attributes(window).colormap;
            if (wanted != isNew)
                EXPECT_EQ(got, wanted) << i;
            else
                EXPECT_THAT((std::array{alternate, second, own, DefaultColormap(fDisplay, 0)}),
                            ::testing::Each(::testing::Ne(got)))
                    << i;
        };
        expect(mainWindow(children[i]), cases[i].wanted);
        expect(secondary(children[i]), cases[i].wantedSecondary);
    }
}

TEST_F(GlxMDraw, SwitchesWithViewportAndMatrices)
{
    const Widget area = create();
    realize();
    const Window main = mainWindow(area);
    const Window other = secondary(area);
    ASSERT_TRUE(other);
    EXPECT_EQ(parentOf(other), main);
    EXPECT_EQ(attributes(other).map_state, IsUnmapped);

    Window from = main;
    GLXContext fromContext = context(area);
    for (const bool isSecondary : {true, false, true}) {
        const Window to = isSecondary ? other : main;
        ASSERT_TRUE(glXMakeCurrent(fDisplay, from, fromContext));
        const double modelView[16] = {1, 2, 0, 0, 0, 1, 3, 0, 0, 0, 1, 0, 4, 5, 6, 1.0 + isSecondary};
        const double projection[16] = {2, 0, 0, 1, 0, 3, 0, 0, 7, 0, 1, 0, 0, 0, 0, 1};
        glViewport(3, 4, 50 + isSecondary, 31);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(projection);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(modelView);
        glXMakeCurrent(fDisplay, None, nullptr);
        settle();
        fReports.clear();
        select(area, isSecondary);

        EXPECT_EQ(glXGetCurrentDrawable(), to);
        EXPECT_EQ(glXGetCurrentContext() == context(area), !isSecondary);
        EXPECT_EQ(T3dPort::knownNativeContext(), glXGetCurrentContext());
        double got[16] = {};
        GLint viewport[4] = {};
        glGetIntegerv(GL_VIEWPORT, viewport);
        EXPECT_THAT(viewport, ElementsAre(3, 4, 50 + isSecondary, 31));
        glGetDoublev(GL_MODELVIEW_MATRIX, got);
        EXPECT_THAT(got, ::testing::ElementsAreArray(modelView));
        glGetDoublev(GL_PROJECTION_MATRIX, got);
        EXPECT_THAT(got, ::testing::ElementsAreArray(projection));
        EXPECT_EQ(attributes(other).map_state, isSecondary ? IsViewable : IsUnmapped);
        EXPECT_EQ(attributes(other).width, 90);

        ASSERT_TRUE(waitUntil([&] { return !reports(GlxNexposeCallback).empty(); }));
        for (const Report& report : reports(GlxNexposeCallback)) {
            EXPECT_EQ(report.window, to);
            EXPECT_EQ(report.context, glXGetCurrentContext());
        }
        from = to;
        fromContext = glXGetCurrentContext();
    }

    XtVaSetValues(area, XmNwidth, 140, nullptr);
    EXPECT_EQ(reports(GlxNresizeCallback).back().window, other);
    EXPECT_EQ(reports(GlxNresizeCallback).back().context, glXGetCurrentContext());
    EXPECT_EQ(attributes(other).width, 140);

    gsIsGeometryLost = true;
    select(area, false);
    gsIsGeometryLost = false;
    EXPECT_THAT(fsWarnings, ElementsAre("GlxMDraw: SetNewWindow : XGetGeometry failed\n"));
    EXPECT_EQ(glXGetCurrentDrawable(), main);
}

TEST_F(GlxMDraw, BeginsWithTheSecondaryWindowOrHasNone)
{
    const Widget area = create({{GlxNselectSecondaryContext, True}});
    const Widget single = create({{GlxNglxConfigSecondary, 0}});
    realize();
    EXPECT_EQ(attributes(secondary(area)).map_state, IsViewable);
    EXPECT_EQ(secondary(single), None);
    EXPECT_THAT(fsWarnings, ElementsAre());
    select(single, true);
    EXPECT_FALSE(get<Boolean>(single, GlxNselectSecondaryContext));
    EXPECT_EQ(fsWarnings.size(), 1u);
}

TEST_F(GlxMDraw, CoversItselfWithAnOverlay)
{
    XVisualInfo* visual = ordinaryVisual();
    const Colormap colormap = XCreateColormap(fDisplay, DefaultRootWindow(fDisplay), visual->visual, AllocNone);
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(visual)}});
    realize();
    const Window over = overlay(area);
    ASSERT_TRUE(over);
    EXPECT_EQ(parentOf(over), XtWindow(area));
    EXPECT_EQ(attributes(over).map_state, IsViewable);
    EXPECT_EQ(attributes(over).all_event_masks, ExposureMask);
    EXPECT_EQ(attributes(over).colormap, get<Colormap>(area, GlxNoverlayColormap));
    EXPECT_EQ(get<int>(area, GlxNoverlayDepth), visual->depth);
    int index = -1;
    glXGetConfig(fDisplay, visual, 36, &index);
    EXPECT_EQ(GlXTransparentIndexMDraw(), index);
    const GLXContext made = get<GLXContext>(area, GlxNoverlayGlxContext);
    EXPECT_TRUE(shareLists(made, context(area)));
    ASSERT_TRUE(waitUntil([&] { return !reports(GlxNoverlayExposeCallback).empty(); }));
    EXPECT_EQ(reports(GlxNoverlayExposeCallback)[0].window, over);
    EXPECT_EQ(reports(GlxNoverlayExposeCallback)[0].context, made);
    EXPECT_EQ(reports(GlxNoverlayExposeCallback)[0].reason, 38);

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
    EXPECT_TRUE(overlay(area));
    EXPECT_EQ(attributes(overlay(area)).visual, get<XVisualInfo*>(area, GlxNoverlayVisual)->visual);
    EXPECT_THAT(fsWarnings, ElementsAre());
}

TEST_F(GlxMDraw, SurvivesTheLossOfItsOverlay)
{
    XVisualInfo* visual = ordinaryVisual();
    for (const bool isSecondary : {false, true}) {
        for (const bool isNoticedFirst : {true, false}) {
            const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(visual)}});
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
            settle();
        }
    }
}

TEST_F(GlxMDraw, FailsQuietlyWithoutAVisual)
{
    ::testing::internal::CaptureStderr();
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlyGlxConfig, address(gsImpossible)}});
    const Widget bare =
        create({{GlxNglxConfig, address(gsImpossible)}, {GlxNglxConfigSecondary, address(gsImpossible)}});
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "glXChooseVisual failed, check XServer visual configurations\n");
    realize();
    EXPECT_EQ(overlay(area), None);
    EXPECT_TRUE(context(area));
    EXPECT_EQ(context(bare), nullptr);
    EXPECT_EQ(secondary(bare), None);
    EXPECT_TRUE(XtWindow(bare));
    XtVaSetValues(bare, XmNwidth, 120, nullptr);
    GlXCleanUpMDraw(bare);
    EXPECT_THAT(fsWarnings, ElementsAre());
}

TEST_F(GlxMDraw, WithoutAContextIsAnApplicationError)
{
    // A fork would close the X connections of this process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            GlRecorder::failNext("glXCreateContext", 1);
            create();
        },
        ::testing::ExitedWithCode(1), "GlxMDraw: OpenGL not supported on this display");
    const Widget area = create();
    EXPECT_TRUE(area);
    EXPECT_EXIT(
        {
            GlRecorder::failNext("glXCreateContext", 1);
            realize();
        },
        ::testing::ExitedWithCode(1), "GlxMDraw: OpenGL not supported on this display");
}

TEST_F(GlxMDraw, KeepsWhatCannotChange)
{
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(ordinaryVisual())}});
    realize();
    for (const char* name :
         {GlxNglxConfig, GlxNglxContext, GlxNmainWindow, GlxNglxContextSharedDisplayList, GlxNvisualInfo,
          GlxNalternateColormap, GlxNoverlayWindow, GlxNoverlayVisual, GlxNglxConfigSecondary, GlxNsecondaryWindow,
          GlxNalternateSecondaryColormap}) {
        fsWarnings.clear();
        const XtArgVal before = get<XtArgVal>(area, name);
        XtVaSetValues(area, name, XtArgVal(0x12345678), nullptr);
        EXPECT_EQ(get<XtArgVal>(area, name), before);
        EXPECT_THAT(fsWarnings, ElementsAre("GlxMDraw: XtSetValues cannot change " + std::string(name) + "\n"));
    }
    const int depth = get<int>(area, GlxNoverlayDepth);
    fsWarnings.clear();
    XtVaSetValues(area, GlxNoverrideColormap, False, GlxNoverlayDepth, 3, nullptr);
    EXPECT_TRUE(get<Boolean>(area, GlxNoverrideColormap));
    EXPECT_EQ(get<int>(area, GlxNoverlayDepth), depth);
    EXPECT_EQ(fsWarnings.size(), 2u);

    // What may change, and has no use for none.
    fsWarnings.clear();
    const GLXContext made = get<GLXContext>(area, GlxNoverlayGlxContext);
    XtVaSetValues(area, GlxNoverlayColormap, None, GlxNoverlayGlxContext, nullptr, nullptr);
    EXPECT_TRUE(get<Colormap>(area, GlxNoverlayColormap));
    EXPECT_EQ(get<GLXContext>(area, GlxNoverlayGlxContext), made);
    XtVaSetValues(area, GlxNoverlayGlxContext, context(area), GlxNoverlyGlxConfig, gsOrdinary, nullptr);
    EXPECT_EQ(get<GLXContext>(area, GlxNoverlayGlxContext), context(area));
    EXPECT_EQ(get<int*>(area, GlxNoverlyGlxConfig), gsOrdinary);
    EXPECT_THAT(fsWarnings, ElementsAre());
}

TEST_F(GlxMDraw, CleansUp)
{
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(ordinaryVisual())}});
    GlXCleanUpMDraw(area); // without windows there is nothing to clean
    EXPECT_TRUE(get<Boolean>(area, GlxNuseOverlay));
    realize();
    fReports.clear();
    for (const Window window : {XtWindow(area), overlay(area)})
        XClearArea(fDisplay, window, 0, 0, 0, 0, True);
    GlRecorder recorder;
    recorder.start();
    GlXCleanUpMDraw(area);
    recorder.stop();
    EXPECT_EQ(recorder.count("glFinish"), 1);
    EXPECT_EQ(glXGetCurrentContext(), context(area));
    EXPECT_EQ(overlay(area), None);
    EXPECT_FALSE(get<Boolean>(area, GlxNuseOverlay));
    settle();
    EXPECT_TRUE(fReports.empty());
}

TEST_F(GlxMDraw, GoesInAnyOrder)
{
    XVisualInfo* visual = ordinaryVisual();
    for (const std::array<int, 3>& order : std::vector<std::array<int, 3>>{{0, 1, 2}, {2, 1, 0}, {1, 2, 0}}) {
        std::array<Widget, 3> areas{};
        for (Widget& area : areas)
            area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(visual)}});
        realize();
        select(areas[1], true);
        settle();
        const Widget never = GlXCreateMDraw(fForm, "never", nullptr, 0);
        for (const int i : order) {
            XtDestroyWidget(areas[std::size_t(i)]);
            settle();
        }
        XtDestroyWidget(never);
    }
    // Windows that go and come again while the widget stays; the secondary one is still selected.
    const Widget area = create({{GlxNuseOverlay, True}, {GlxNoverlayVisual, address(visual)}});
    select(area, true);
    settle();
    XtUnrealizeWidget(fShell);
    XtVaSetValues(area, GlxNuseOverlay, False, nullptr);
    XtVaSetValues(area, GlxNuseOverlay, True, nullptr);
    settle();
    realize();
    EXPECT_EQ(attributes(secondary(area)).map_state, IsViewable);
    EXPECT_EQ(parentOf(overlay(area)), secondary(area));
    EXPECT_EQ(reports(GlxNginitCallback).back().context, context(area));
    XtDestroyWidget(fForm);
    settle();
}

} // namespace

// Stands before Xlib's own.
extern "C" Status XGetGeometry(Display* display, Drawable drawable, Window* root, int* x, int* y, unsigned* width,
                               unsigned* height, unsigned* border, unsigned* depth)
{
    static const auto real = reinterpret_cast<decltype(&XGetGeometry)>(dlsym(RTLD_NEXT, "XGetGeometry"));
    return gsIsGeometryLost ? 0 : real(display, drawable, root, x, y, width, height, border, depth);
}
