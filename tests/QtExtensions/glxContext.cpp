// The choice of a visual, and the GLX context of a port's widget.

#include <QGLFormat>
#include <QX11Info>

#include "QtExtensions/QlirnGLContextLinux.h"

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tevent.h"
#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::HasSubstr;

QGLFormat formatWith(bool on)
{
    QGLFormat format;
    for (const QGL::FormatOption option :
         {QGL::DoubleBuffer, QGL::DepthBuffer, QGL::Rgba, QGL::AlphaChannel, QGL::AccumBuffer, QGL::StencilBuffer,
          QGL::StereoBuffers, QGL::SampleBuffers})
        format.setOption(on ? option : QGL::FormatOption(option << 16));
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
    QGLFormat usual = formatWith(false);
    usual.setDoubleBuffer(true);
    usual.setRgba(true);
    usual.setRedBufferSize(8);
    usual.setGreenBufferSize(8);
    usual.setBlueBufferSize(8);
    usual.setAlphaBufferSize(8);
    usual.setDepthBufferSize(24);
    usual.setStencilBufferSize(8);

    QGLFormat deep = formatWith(false);
    deep.setRgba(true);
    deep.setRedBufferSize(5);
    deep.setGreenBufferSize(6);
    deep.setBlueBufferSize(4);
    deep.setAccumBufferSize(16);
    deep.setSamples(2);

    QGLFormat indexed = formatWith(true);
    indexed.setRgba(false);

    // clang-format off
    const Row rows[] = {
        {"nothing", formatWith(false), {0}},
        {"sizes given",
         usual,
         {GLX_DOUBLEBUFFER, GLX_RGBA, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_ALPHA_SIZE, 8,
          GLX_BUFFER_SIZE, 32, GLX_STENCIL_SIZE, 8, GLX_DEPTH_SIZE, 24, 0}},
        {"everything, no size given",
         formatWith(true),
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
    // clang-format on
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
        QGLFormat format = formatWith(true);
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

    QGLFormat format = formatWith(true);
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
    const ScopedEnv noMatrices("LIRN_DEBUG_Q3DPORT_MATRICES", nullptr);
    ASSERT_TRUE(Q3dPort::resourceWidget());
    StderrCapture err;
    ErrorCollector errors;
    GlRecorder::failNext("glXChooseVisual", 100);
    {
        PortWindow<> window(120, 80, Buffering::kDouble);
        GlRecorder::resetOverrides();
        T3dPort& port = window.port();
        QlirnGLWidget* widget = port.glWidget();
        ASSERT_TRUE(widget);
        EXPECT_EQ(widget->glContext()->visual(), nullptr);
        EXPECT_EQ(widget->glWindow(), 0u);

        window.window().show();
        settle();
        port.setCurrentContext();
        port.color(TportColor(1, 0, 0, 1));
        port.OnPaint();
        widget->swapBuffers();
        widget->useSharedContext(false);
        window.window().resize(200, 90);
        settle();
        port.doPress(Tevent(Tevent::kPress));
        port.renderToPixmap(10, 10);
        EXPECT_EQ(port.stateDifferences().length(), 0u);
    }
    settle();
    EXPECT_EQ(err.text(), "");
    EXPECT_TRUE(errors.messages().empty());
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 0);
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
    recorder.stop();
    EXPECT_EQ(recorder.count("glXSwapBuffers"), 0);
}

} // namespace

TEST(GlxVersion, RaisesWhatIsAskedForAndNothingBelow33)
{
    // The driver here reports at least 3.3.
    QGLFormat old;
    old.setVersion(2, 1);
    QlirnGLContext::setBestGLVersion(old);
    EXPECT_GE(old.majorVersion() * 10 + old.minorVersion(), 33);

    QGLFormat beyond;
    beyond.setVersion(9, 0);
    QlirnGLContext::setBestGLVersion(beyond);
    EXPECT_EQ(beyond.majorVersion(), 9);

    // A probe that finds no visual, and one that finds no context, leave 3.3.
    for (const char* failing : {"glXChooseVisual", "glXCreateContext"}) {
        GlRecorder::failNext(failing, 100);
        QGLFormat format;
        format.setVersion(2, 1);
        QlirnGLContext::setBestGLVersion(format);
        EXPECT_EQ(format.majorVersion() * 10 + format.minorVersion(), 33) << failing;
        GlRecorder::resetOverrides();
    }
}
