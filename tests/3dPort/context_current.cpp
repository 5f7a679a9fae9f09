#include "3dPort/Calls.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include <QCursor>

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/TglobalTranslatorBase.h"
#include "foundation/Tpoint.h"
#include "ui/TcursorShape.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

/** What a switch to a port sends: its viewport and its matrices. */
std::vector<std::string> switchCalls(const std::string& viewport)
{
    return {viewport, "glMatrixMode(GL_PROJECTION)", kLoadIdentity, "glMatrixMode(GL_MODELVIEW)", kLoadIdentity};
}

} // namespace

TEST(CurrentPort, TwoPortsInTurnSwitchAndOneDrawnTwiceDoesNot)
{
    PortWindow<> first(60, 40);
    PortWindow<> second(30, 20);
    ASSERT_TRUE(first.show());
    ASSERT_TRUE(second.show());
    first.port().setCurrentContext();

    GlRecorder recorder;
    for (int i = 0; i < 2; ++i) {
        recorder.start();
        second.port().setCurrentContext();
        EXPECT_EQ(glCalls(recorder), switchCalls("glViewport(0, 0, 30, 20)"));
        EXPECT_EQ(recorder.count("glXMakeCurrent"), 1);
        EXPECT_EQ(T3dPort::currentPort(), &second.port());

        recorder.start();
        second.port().setCurrentContext();
        second.port().pointSmoothing(false);
        second.port().setCurrentContext();
        EXPECT_THAT(recorder.calls(), ElementsAre("glDisable(GL_POINT_SMOOTH)"));

        recorder.start();
        first.port().setCurrentContext();
        EXPECT_EQ(glCalls(recorder), switchCalls("glViewport(0, 0, 60, 40)"));
        EXPECT_EQ(recorder.count("glXMakeCurrent"), 1);
    }
    // A setter with the recorded value does not even switch.
    recorder.start();
    second.port().color(second.port().glContextRecord()->fColor);
    second.port().clearColor(second.port().glContextRecord()->fClearColor);
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST(CurrentPort, IsNotTrustedWhileTheSceneIsBeingReplaced)
{
    PortWindow<> made(60, 40);
    made.port().setCurrentContext();
    struct Row
    {
        const char* name;
        void (*set)(bool);
    };
    const Row rows[] = {{"new file", TglobalTranslatorBase::setNewingFileCondition},
                        {"flush", TglobalTranslatorBase::setFlushingSceneCondition}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        GlRecorder recorder;
        row.set(true);
        recorder.start();
        made.port().setCurrentContext();
        EXPECT_GE(recorder.count("glXGetCurrentContext"), 1);
        EXPECT_THAT(glCalls(recorder), IsEmpty()) << "the context was the right one";
        row.set(false);
        recorder.start();
        made.port().setCurrentContext();
        EXPECT_THAT(recorder.calls(), IsEmpty());
    }
}

TEST(CurrentPort, FindsBackAfterOthersHaveSwitchedContexts)
{
    PortWindow<> made(60, 40);
    PortWindow<> other(60, 40);
    T3dPort& port = made.port();
    const std::pair<const char*, void (*)(PortWindow<>&)> ways[] = {
        {"resource context", [](PortWindow<>&) { T3dPort::getHardwareConfig(nullptr, false); }},
        {"target made and deleted",
         [](PortWindow<>& m) {
             m.port().q3dPort()->createOffscreenTarget(QSize(8, 8), nullptr);
             m.port().q3dPort()->deleteOffscreenTarget();
         }},
        {"released", [](PortWindow<>& m) { m.port().glWidget()->doneCurrent(); }},
        {"a port made", [](PortWindow<>& m) { T3dPort(&m.window(), "testPort", false); }},
        {"a pixmap", [](PortWindow<>& m) { m.port().renderToPixmap(5, 5); }},
    };
    for (const auto& [name, disturb] : ways) {
        SCOPED_TRACE(name);
        for (PortWindow<>* disturbed : {&made, &other}) {
            port.setCurrentContext();
            disturb(*disturbed);
            port.color(TportColor(0.5f, 0.25f, 0, 1));
            port.color(TportColor(0, 0.25f, 0.5f, 1));
            EXPECT_EQ(port.stateDifferences().length(), 0u);
            EXPECT_EQ(other.port().stateDifferences().length(), 0u);
        }
    }
}

TEST(CurrentPort, SendsTheViewportWithEachBindingWhenForced)
{
    const ScopedEnv forced("LIRN_FORCE_VP_SIZE", "1");
    PortWindow<> made(60, 40);
    ASSERT_TRUE(made.show());
    GlRecorder recorder;
    recorder.start();
    made.port().makeCurrent();
    made.port().setCurrentContext();
    EXPECT_EQ(glCalls(recorder), switchCalls("glViewport(0, 0, 60, 40)"));
    EXPECT_EQ(recorder.count("glXMakeCurrent"), 0);
}

TEST(CurrentPort, LeavesAnOffscreenTargetInUseBound)
{
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    PortWindow<> made(60, 40);
    PortWindow<> other(60, 40);
    QlirnGLRenderTarget* target = made.port().q3dPort()->createOffscreenTarget(QSize(16, 16), nullptr);
    ASSERT_NE(target, nullptr);
    other.port().setCurrentContext();

    target->setInUse(true);
    GlRecorder recorder;
    {
        const StdoutCapture output;
        recorder.start();
        made.port().makeCurrent();
        recorder.stop();
        EXPECT_EQ(output.text(), "Using offscreen. Disallow make current\n");
    }
    EXPECT_EQ(recorder.count("glXMakeCurrent"), 0);
    EXPECT_EQ(glCalls(recorder).size(), 1u) << "the viewport";
    EXPECT_EQ(T3dPortProbe::matrixValid(made.port()) & 0x3F, 0u);

    target->setInUse(false);
    recorder.start();
    made.port().makeCurrent();
    EXPECT_EQ(recorder.count("glXMakeCurrent"), 1);
}

TEST(CurrentPort, TracesItsSwitches)
{
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    PortWindow<> made(60, 40);
    PortWindow<> other(60, 40);
    const auto traced = [](auto&& work) {
        const StdoutCapture output;
        work();
        return output.text();
    };
    T3dPort& port = made.port();
    EXPECT_THAT(traced([&] { port.makeCurrent(); }),
                testing::MatchesRegex("T3dPort::makeCurrent 0x[0-9a-f]+ -> 0x[0-9a-f]+\n"));
    EXPECT_EQ(traced([&] { port.makeCurrent(); }), "");
    EXPECT_EQ(traced([&] { port.setDrawingPlanes(T3dPort::kMainPlanes); }), "");
    EXPECT_EQ(traced([&] { port.setDrawingPlanes(T3dPort::kSecondPlanes); }),
              "T3dPort::setDrawingPlanes(BAD PLANES)\n");
    EXPECT_EQ(port.drawingPlanes(), T3dPort::kSecondPlanes);
    EXPECT_EQ(traced([&] { port.setContext(T3dPort::kPrimaryContext); }),
              "T3dPort::setContext(kPrimaryContext)\nT3dPort::setDrawingPlanes(kMainPlanes)\n");
    EXPECT_EQ(port.drawingPlanes(), T3dPort::kMainPlanes);
    EXPECT_EQ(traced([&] { port.setDrawingPlanes(static_cast<T3dPort::TdrawingPlanes>(70000)); }),
              "T3dPort::setDrawingPlanes(BAD PLANES)\n");
    port.setCurrentContext(); // no table is read beyond its end
}

TEST(CurrentPort, LoadsMatricesForEachKindOfPlanesByItself)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    port.setCurrentContext();
    GlRecorder recorder;
    recorder.start();
    port.setDrawingPlanes(T3dPort::kSecondPlanes);
    EXPECT_THAT(recorder.calls(), IsEmpty());
    port.setCurrentContext();
    EXPECT_EQ(recorder.count("glLoadMatrixd"), 2);
    port.setDrawingPlanes(T3dPort::kMainPlanes);
    recorder.start();
    port.setCurrentContext();
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST(CurrentPort, ReturningToThePrimaryContextKeepsTheCursor)
{
    PortWindow<> made(60, 40);
    QWidget* widget = made.port().qControl();
    made.window().setCursor(Qt::WaitCursor);
    made.port().setContext(T3dPort::kPrimaryContext);
    EXPECT_FALSE(widget->testAttribute(Qt::WA_SetCursor));
    EXPECT_EQ(widget->cursor().shape(), Qt::WaitCursor) << "the window's";

    widget->setCursor(Qt::CrossCursor);
    made.port().setContext(T3dPort::kPrimaryContext);
    EXPECT_TRUE(widget->testAttribute(Qt::WA_SetCursor));
    EXPECT_EQ(widget->cursor().shape(), Qt::CrossCursor);
}

TEST(CurrentPort, TellsWhereItIsOnTheScreen)
{
    PortWindow<> made(60, 40);
    made.window().move(31, 17);
    ASSERT_TRUE(made.show());
    Tpoint at{0, 0};
    made.port().getPositionAbs(at);
    const QPoint corner = made.port().qControl()->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(QPoint(at.x, at.y), corner);
    EXPECT_EQ(corner, QPoint(31, 17));
}

TEST(CurrentPort, SendsRecordedColoursAgain)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    struct Row
    {
        TportColor color;
        std::vector<std::string> calls;
    };
    const Row rows[] = {
        {{0.25f, 0.5f, 1, 1},
         {"glColor3fv([0.75 0.5 1])", "glColor3fv([0.25 0.5 1])", "glClearColor(0.75, 0.5, 1, 1)",
          "glClearColor(0.25, 0.5, 1, 1)"}},
        // Its complement is the same, and still both must reach OpenGL.
        {{0.5f, 0.5f, 0, 1},
         {"glColor3fv([0 0.5 0])", "glColor3fv([0.5 0.5 0])", "glClearColor(0, 0.5, 0, 1)",
          "glClearColor(0.5, 0.5, 0, 1)"}},
    };
    for (const Row& row : rows) {
        port.color(row.color);
        port.clearColor(row.color);
        // Behind the record's back.
        glColor3f(0.1f, 0.2f, 0.3f);
        glClearColor(0.1f, 0.2f, 0.3f, 0);
        GlRecorder recorder;
        recorder.start();
        port.initContext();
        recorder.stop();
        EXPECT_EQ(recorder.calls(), row.calls);
        EXPECT_EQ(port.glContextRecord()->fColor, row.color);
        EXPECT_EQ(port.glContextRecord()->fHardwareIndex, TglContext::kUnknownIndex);
        EXPECT_EQ(port.stateDifferences().length(), 0u);
    }
}

TEST(CurrentPort, ASizeChangeMakesTheWholePortTheViewport)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    port.setCurrentContext();
    port.pushViewport(TportRect(1, 2, 3, 4));
    port.pushPortRect(TportRect(10, 20, 60, 50));
    GlRecorder recorder;
    recorder.start();
    port.resizeDrawingPlanes();
    std::vector<std::string> expected = {"glMatrixMode(GL_PROJECTION)", kLoadIdentity, "glMatrixMode(GL_MODELVIEW)",
                                         kLoadIdentity, "glViewport(0, 0, 50, 30)"};
    EXPECT_EQ(glCalls(recorder), expected);
    EXPECT_EQ(port.viewport(), TportRect(0, 0, 50, 30));
}
