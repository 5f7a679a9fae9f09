#include "3dPort/Calls.h"
#include "support/HostProbes.h"

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(CurrentPort, FindsBackAfterOthersHaveSwitchedContexts)
{
    PortWindow<> made(60, 40);
    PortWindow<> other(60, 40);
    T3dPort& port = made.port();
    const std::pair<const char*, void (*)(PortWindow<>&)> ways[] = {
        {"resource context", [](PortWindow<>&) { T3dPort::getHardwareConfig(nullptr, false); }},
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

TEST(CurrentPort, TracesItsSwitches)
{
    const ScopedEnv noMatrices("LIRN_DEBUG_Q3DPORT_MATRICES", nullptr);
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
    EXPECT_EQ(traced([&] { port.setDrawingPlanes(T3dPort::kSecondPlanes); }),
              "T3dPort::setDrawingPlanes(BAD PLANES)\n");
    EXPECT_EQ(traced([&] { port.setContext(T3dPort::kPrimaryContext); }),
              "T3dPort::setContext(kPrimaryContext)\nT3dPort::setDrawingPlanes(kMainPlanes)\n");
    EXPECT_EQ(traced([&] { port.setDrawingPlanes(static_cast<T3dPort::TdrawingPlanes>(70000)); }),
              "T3dPort::setDrawingPlanes(BAD PLANES)\n");
    port.setCurrentContext(); // no table is read beyond its end
}

// A red of exactly a half is its own complement: both colours must reach OpenGL all the same.
TEST_F(ShownPort, SendsBothColoursAgain)
{
    for (const float red : {0.5f, 0.25f, 1.0f}) {
        port().color(TportColor(red, 0, 1, 1));
        port().clearColor(TportColor(red, 1, 0, 1));
        glColor3f(0.1f, 0.1f, 0.1f);
        glClearColor(0.1f, 0.1f, 0.1f, 1);
        port().initContext();
        EXPECT_EQ(port().stateDifferences().length(), 0u) << red;
    }
}
