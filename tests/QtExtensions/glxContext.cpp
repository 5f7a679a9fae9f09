// The choice of a visual, and the GLX context of a port's widget.

#include <QGLFormat>
#include <QGLWidget>
#include <QX11Info>

#include "QtExtensions/QlirnGLContextLinux.h"

#include "QtExtensions/OwnProcess.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tevent.h"
#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string differences(const T3dPort& port)
{
    std::string text;
    const TstringArray lines = port.stateDifferences();
    for (unsigned i = 0; i < lines.length(); ++i)
        text += std::string(lines[i].asChar()) + "\n";
    return text;
}

QGLFormat emptyFormat()
{
    QGLFormat format;
    for (const QGL::FormatOption option : {QGL::DoubleBuffer, QGL::DepthBuffer, QGL::Rgba, QGL::AlphaChannel,
                                           QGL::AccumBuffer, QGL::StencilBuffer, QGL::StereoBuffers,
                                           QGL::SampleBuffers})
        format.setOption(QGL::FormatOption(option << 16));
    return format;
}

QGLFormat fullFormat()
{
    QGLFormat format = emptyFormat();
    for (const QGL::FormatOption option : {QGL::DoubleBuffer, QGL::DepthBuffer, QGL::Rgba, QGL::AlphaChannel,
                                           QGL::AccumBuffer, QGL::StencilBuffer, QGL::StereoBuffers,
                                           QGL::SampleBuffers})
        format.setOption(option);
    return format;
}

std::vector<int> attributesOf(const QGLFormat& format)
{
    std::vector<int> list(QlirnGLContextLinux::kMaxAttribs + 4, -77);
    QlirnGLContextLinux::QGLFormatToAttribs(format, list.data());
    for (std::size_t i = QlirnGLContextLinux::kMaxAttribs; i < list.size(); ++i)
        EXPECT_EQ(list[i], -77) << "written behind the end";
    // The end is the first 0 where an attribute stands.
    std::size_t n = 0;
    while (n < list.size() && list[n] != 0) {
        const bool single = list[n] == GLX_DOUBLEBUFFER || list[n] == GLX_RGBA || list[n] == GLX_STEREO;
        n += single ? 1 : 2;
    }
    list.resize(std::min(n + 1, list.size()));
    return list;
}

TEST(GlxAttributes, ListByFormat)
{
    struct Row
    {
        const char* what;
        QGLFormat format;
        std::vector<int> list;
    };
    QGLFormat usual = emptyFormat();
    usual.setDoubleBuffer(true);
    usual.setRgba(true);
    usual.setRedBufferSize(8);
    usual.setGreenBufferSize(8);
    usual.setBlueBufferSize(8);
    usual.setAlphaBufferSize(8);
    usual.setDepthBufferSize(24);
    usual.setStencilBufferSize(8);

    QGLFormat deep = emptyFormat();
    deep.setRgba(true);
    deep.setRedBufferSize(5);
    deep.setGreenBufferSize(6);
    deep.setBlueBufferSize(4);
    deep.setAccumBufferSize(16);
    deep.setSamples(2);

    QGLFormat indexed = fullFormat();
    indexed.setRgba(false);

    const Row rows[] = {
        {"nothing", emptyFormat(), {0}},
        {"sizes given",
         usual,
         {GLX_DOUBLEBUFFER, GLX_RGBA, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_ALPHA_SIZE, 8,
          GLX_BUFFER_SIZE, 32, GLX_STENCIL_SIZE, 8, GLX_DEPTH_SIZE, 24, 0}},
        {"everything, no size given",
         fullFormat(),
         {GLX_DOUBLEBUFFER, GLX_RGBA, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_ALPHA_SIZE, 8,
          GLX_BUFFER_SIZE, 32, GLX_ACCUM_RED_SIZE, 1, GLX_ACCUM_GREEN_SIZE, 1, GLX_ACCUM_BLUE_SIZE, 1,
          GLX_ACCUM_ALPHA_SIZE, 1, GLX_STEREO, GLX_STENCIL_SIZE, 8, GLX_DEPTH_SIZE, 32, GLX_SAMPLE_BUFFERS_ARB, 1,
          GLX_SAMPLES_ARB, 4, 0}},
        {"no alpha: none in the sum nor in the accumulation buffer",
         deep,
         {GLX_RGBA, GLX_RED_SIZE, 5, GLX_GREEN_SIZE, 6, GLX_BLUE_SIZE, 4, GLX_BUFFER_SIZE, 15, GLX_ACCUM_RED_SIZE, 16,
          GLX_ACCUM_GREEN_SIZE, 16, GLX_ACCUM_BLUE_SIZE, 16, GLX_SAMPLE_BUFFERS_ARB, 1, GLX_SAMPLES_ARB, 2, 0}},
        {"colour index: no colours at all",
         indexed,
         {GLX_DOUBLEBUFFER, GLX_STEREO, GLX_STENCIL_SIZE, 8, GLX_DEPTH_SIZE, 32, GLX_SAMPLE_BUFFERS_ARB, 1,
          GLX_SAMPLES_ARB, 4, 0}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(attributesOf(row.format), row.list) << row.what;
}

TEST(GlxVisual, EachFailedSearchDropsTheNextRequirement)
{
    const QGL::FormatOption order[] = {QGL::StereoBuffers, QGL::AccumBuffer, QGL::StencilBuffer,
                                       QGL::AlphaChannel,  QGL::DepthBuffer, QGL::DoubleBuffer};
    Display* display = QX11Info::display();
    GlRecorder recorder;
    for (int failures = 0; failures <= 6; ++failures) {
        QGLFormat format = fullFormat();
        format.setDepthBufferSize(24);
        format.setSampleBuffers(false); // the display has them with few of the others
        recorder.start();
        GlRecorder::failNext("glXChooseVisual", failures);
        XVisualInfo* visual = QlirnGLContextLinux::chooseVisual(display, QX11Info::appScreen(), format);
        recorder.stop();
        GlRecorder::resetOverrides();
        // The display has no stereo, so that the search without a failure goes one further by itself.
        const int dropped = std::max(failures, 1);
        EXPECT_EQ(recorder.count("glXChooseVisual"), dropped + 1);
        EXPECT_TRUE(visual) << failures;
        if (visual)
            XFree(visual);
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(format.testOption(order[i]), i >= dropped) << "option " << i << " after " << failures;
        EXPECT_TRUE(format.testOption(QGL::Rgba));
    }

    QGLFormat format = fullFormat();
    recorder.start();
    GlRecorder::failNext("glXChooseVisual", 100);
    EXPECT_EQ(QlirnGLContextLinux::chooseVisual(display, QX11Info::appScreen(), format), nullptr);
    recorder.stop();
    EXPECT_EQ(recorder.count("glXChooseVisual"), 7);
    EXPECT_THAT(recorder.calls().back(), HasSubstr("GLX_RGBA"));
    EXPECT_THAT(recorder.calls().back(), HasSubstr("100001=4")) << "the samples, by number";
    EXPECT_FALSE(QlirnGLContext::reduceQGLFormatRequirement(format));
}

TEST(GlxVisual, NoneAtAllGivesAQuietPortWithoutContext)
{
    ASSERT_TRUE(Q3dPort::resourceWidget());
    StdoutCapture out;
    StderrCapture err;
    ErrorCollector errors;
    GlRecorder::failNext("glXChooseVisual", 100);
    {
        PortWindow<> window(120, 80, Buffering::kDouble);
        GlRecorder::resetOverrides();
        T3dPort& port = window.port();
        QlirnGLWidget* widget = port.glWidget();
        ASSERT_TRUE(widget);
        EXPECT_EQ(widget->glContext()->getActiveContext(), nullptr);
        EXPECT_EQ(widget->glContext()->visual(), nullptr);
        EXPECT_EQ(widget->glWindow(), 0u);
        EXPECT_FALSE(T3dPort::sHasStencilBuffer() && widget->glContext()->format().stencil());

        window.window().show();
        settle();
        port.setCurrentContext();
        port.color(TportColor(1, 0, 0, 1));
        port.OnPaint();
        port.swapBuffers();
        widget->swapBuffers();
        widget->useSharedContext(false);
        window.window().resize(200, 90);
        settle();
        port.doPress(Tevent(Tevent::kPress));
        port.renderToPixmap(10, 10);
        EXPECT_EQ(differences(port), "");
    }
    settle();
    EXPECT_EQ(out.text(), "");
    EXPECT_EQ(err.text(), "");
    EXPECT_TRUE(errors.messages().empty());
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 0);
}

// What the format says against what the driver says of the context that came of it.
TEST(GlxContext, ObtainedFormatIsTheDrivers)
{
    struct Row
    {
        const char* what;
        void (*ask)(QGLFormat&);
    };
    const Row rows[] = {
        {"single", [](QGLFormat& f) { f.setDoubleBuffer(false); }},
        {"double", [](QGLFormat& f) { f.setDoubleBuffer(true); }},
        {"alpha and stencil", [](QGLFormat& f) { f.setAlphaBufferSize(8), f.setStencilBufferSize(8); }},
        {"no depth", [](QGLFormat& f) { f.setDepth(false), f.setStencil(false), f.setAlpha(false); }},
        {"deep", [](QGLFormat& f) { f.setDepthBufferSize(32); }},
        {"accumulation", [](QGLFormat& f) { f.setAccumBufferSize(8), f.setDepthBufferSize(24); }},
        {"samples", [](QGLFormat& f) { f.setSamples(4); }},
        {"stereo, which is not to be had", [](QGLFormat& f) { f.setStereo(true); }},
    };
    const auto driver = [](GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        QGLFormat wanted;
        wanted.setRgba(true);
        row.ask(wanted);
        QWidget parent;
        QlirnGLWidget widget(nullptr, wanted, &parent, Q3dPort::resourceWidget(), Qt::WindowFlags());
        const QGLFormat& got = widget.glContext()->format();
        ASSERT_EQ(glXGetCurrentContext(), widget.glContext()->getActiveContext());
        EXPECT_EQ(got.doubleBuffer(), driver(GL_DOUBLEBUFFER) != 0);
        EXPECT_EQ(got.stereo(), driver(GL_STEREO) != 0);
        EXPECT_EQ(got.redBufferSize(), driver(GL_RED_BITS));
        EXPECT_EQ(got.greenBufferSize(), driver(GL_GREEN_BITS));
        EXPECT_EQ(got.blueBufferSize(), driver(GL_BLUE_BITS));
        EXPECT_EQ(got.alpha() ? got.alphaBufferSize() : 0, driver(GL_ALPHA_BITS));
        EXPECT_EQ(got.depth() ? got.depthBufferSize() : 0, driver(GL_DEPTH_BITS));
        EXPECT_EQ(got.stencil() ? got.stencilBufferSize() : 0, driver(GL_STENCIL_BITS));
        EXPECT_EQ(got.accum() ? got.accumBufferSize() : 0, driver(GL_ACCUM_RED_BITS));
        EXPECT_EQ(got.sampleBuffers() ? got.samples() : 0, driver(GL_SAMPLES));
        EXPECT_EQ(got.directRendering(), glXIsDirect(QX11Info::display(), glXGetCurrentContext()) != 0);
        EXPECT_EQ(got.plane(), 0);
        EXPECT_TRUE(got.doubleBuffer() || !wanted.doubleBuffer());
        EXPECT_TRUE(got.accum() || !wanted.accum());
        EXPECT_TRUE(got.sampleBuffers() || !wanted.sampleBuffers());
    }
}

TEST(GlxContext, BindsOnceAndOnlyWhereItMay)
{
    PortWindow<> first(80, 60, Buffering::kDouble);
    PortWindow<> second(80, 60, Buffering::kDouble);
    ASSERT_TRUE(first.show());
    ASSERT_TRUE(second.show());
    QlirnGLWidget* widget = first.port().glWidget();
    second.port().glWidget()->makeCurrent();

    const auto bindings = [&](auto action) {
        GlRecorder recorder;
        recorder.start();
        action();
        recorder.stop();
        return recorder.count("glXMakeCurrent");
    };
    EXPECT_EQ(bindings([&] { widget->makeCurrent(), widget->makeCurrent(); }), 1);
    EXPECT_EQ(glXGetCurrentDrawable(), widget->glWindow());
    // The same context on another window is not the widget's.
    ASSERT_TRUE(glXMakeCurrent(QX11Info::display(), 0, nullptr));
    EXPECT_EQ(bindings([&] { widget->makeCurrent(), widget->glContext()->makeCurrent(); }), 1);

    second.port().glWidget()->makeCurrent();
    widget->hide();
    EXPECT_EQ(bindings([&] { widget->makeCurrent(); }), 0);
    GlRecorder recorder;
    recorder.start();
    widget->swapBuffers();
    widget->show();
    widget->makeCurrent();
    glXMakeCurrent(QX11Info::display(), 0, nullptr);
    widget->glContext()->swapBuffers();
    recorder.stop();
    EXPECT_EQ(recorder.count("glXSwapBuffers"), 0) << "hidden, or nothing current";
}

// Setters of a port whose widget is hidden reach no context; once it is back, record and driver must agree.
TEST(GlxContext, StateSetWhileHiddenIsSentWhenItComesBack)
{
    PortWindow<> shown(80, 60);
    PortWindow<> hidden(80, 60);
    ASSERT_TRUE(shown.show());
    ASSERT_TRUE(hidden.show());
    T3dPort& port = hidden.port();
    port.glWidget()->hide();
    ASSERT_TRUE(glXMakeCurrent(QX11Info::display(), 0, nullptr));
    T3dPort::nativeBindingMoved();
    port.color(TportColor(0.25f, 0.5f, 0.75f, 1));
    port.lineWidth(3);
    port.renderToPixmap(20, 20);
    port.clearColor(TportColor(0.5f, 0.25f, 0, 1));

    port.glWidget()->show();
    settle();
    port.setCurrentContext();
    EXPECT_EQ(differences(port), "");
}

TEST(GlxContext, SharedContextComesAndGoes)
{
    // GLX binds the resource context to windows of its visual only.
    TresourceMap::Set("testPort", "saAlphabuffer", "1");
    TresourceMap::Set("testPort", "saStencilbuffer", "1");
    PortWindow<> window(80, 60, Buffering::kDouble);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    QlirnGLWidget* widget = port.glWidget();
    const GLXContext own = widget->glContext()->getOriginalContext();
    const GLXContext resource = QlirnGLContext::nativeContext(Q3dPort::resourceContext());
    ASSERT_TRUE(own && resource && own != resource);
    EXPECT_FALSE(widget->isSharedContext());
    port.lineWidth(4);

    widget->useSharedContext(true);
    EXPECT_TRUE(widget->isSharedContext());
    EXPECT_EQ(widget->glContext()->getOriginalContext(), own);
    EXPECT_FALSE(const_cast<QlirnGLContext*>(widget->glContext())->useSharedContext(true)) << "no change";
    EXPECT_EQ(glXGetCurrentContext(), resource);
    EXPECT_EQ(glXGetCurrentDrawable(), widget->glWindow());
    EXPECT_EQ(differences(port), "");

    port.lineWidth(2);
    widget->useSharedContext(false);
    EXPECT_FALSE(widget->isSharedContext());
    EXPECT_EQ(glXGetCurrentContext(), own);
    EXPECT_EQ(differences(port), "");
}

struct VersionRow
{
    const char* driver;
    int major;
    int minor;
    int gotMajor;
    int gotMinor;
};

// With a driver that reports the version of the environment.
TEST(BestGLVersion, OfTheDriver)
{
    const VersionRow rows[] = {
        {"4.5", 4, 1, 4, 5}, // equal majors: the minor rises
        {"4.5", 2, 1, 4, 5},
        {"4.5", 4, 6, 4, 6},
        {"3.3", 3, 1, 3, 3},
        {"3.3", 4, 1, 4, 1}, // never lowered
        {"3.2", 2, 1, 2, 1}, // too old to be worth anything
        {"3.0", 2, 1, 2, 1},
    };
    if (!isRerun()) {
        for (const char* driver : {"4.5", "3.3", "3.2", "3.0"}) {
            const std::string version = std::string(driver) + "COMPAT";
            rerun({{"MESA_GL_VERSION_OVERRIDE", version.c_str()}});
        }
        return;
    }
    const std::string version = std::getenv("MESA_GL_VERSION_OVERRIDE");
    for (const VersionRow& row : rows) {
        if (version.compare(0, 3, row.driver) != 0)
            continue;
        QGLFormat format;
        format.setVersion(row.major, row.minor);
        QlirnGLContext::setBestGLVersion(format);
        EXPECT_EQ(std::make_pair(format.majorVersion(), format.minorVersion()),
                  std::make_pair(row.gotMajor, row.gotMinor))
            << row.major << "." << row.minor << " on " << row.driver;
    }
}

TEST(BestGLVersion, IsThreeThreeWhereNothingCanBeAsked)
{
    const auto raised = [] {
        QGLFormat format;
        format.setVersion(2, 1);
        QlirnGLContext::setBestGLVersion(format);
        return std::make_pair(format.majorVersion(), format.minorVersion());
    };
    const auto threeThree = std::make_pair(3, 3);
    {
        const ScopedEnv nowhere("DISPLAY", ":4711");
        EXPECT_EQ(raised(), threeThree) << "no display";
    }
    for (const char* function : {"glXChooseVisual", "glXCreateContext", "glXMakeCurrent", "glGetIntegerv"}) {
        GlRecorder::failNext(function, 100);
        EXPECT_EQ(raised(), threeThree) << function;
        GlRecorder::resetOverrides();
    }
}

TEST(BestGLVersion, ProbeLeavesNothingBehind)
{
    PortWindow<> window(80, 60);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.makeCurrent();
    const GLXContext context = glXGetCurrentContext();
    const GLXDrawable drawable = glXGetCurrentDrawable();
    GlRecorder recorder;
    recorder.start();
    QGLFormat format;
    QlirnGLContext::setBestGLVersion(format);
    recorder.stop();
    EXPECT_EQ(recorder.count("glXCreateContext"), 1);
    EXPECT_EQ(recorder.count("glXDestroyContext"), 1);
    EXPECT_EQ(glXGetCurrentContext(), context);
    EXPECT_EQ(glXGetCurrentDrawable(), drawable);
    port.pointSize(5);
    EXPECT_EQ(differences(port), "");
}

} // namespace
