#include "3dPort/Calls.h"
#include "support/HostProbes.h"
#include "support/T3dPortProbe.h"

#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tevent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

using Size = std::pair<int, int>;

class HookedPort : public T3dPort
{
public:
    using T3dPort::T3dPort;
    void resizeHook(unsigned short width, unsigned short height) override { fSizes.emplace_back(width, height); }

    std::vector<Size> fSizes;
};

void append(std::vector<std::string>& calls, const std::vector<std::string>& more)
{
    calls.insert(calls.end(), more.begin(), more.end());
}

/** What an update sends before the host's command draws. */
std::vector<std::string> updateCalls(const std::string& viewport)
{
    return {"glMatrixMode(GL_PROJECTION)", kLoadIdentity, "glMatrixMode(GL_MODELVIEW)", kLoadIdentity, viewport};
}

const std::vector<std::string> kReadDepths = {
    "glGetIntegerv(GL_RED_BITS, pointer)", "glGetIntegerv(GL_GREEN_BITS, pointer)",
    "glGetIntegerv(GL_BLUE_BITS, pointer)", "glGetIntegerv(GL_ALPHA_BITS, pointer)",
    "glGetIntegerv(GL_STENCIL_BITS, pointer)"};

} // namespace

TEST(PortPaint, FirstPaintSizesThePortAndDraws)
{
    const ScopedEnv noAudit("LIRN_DEBUG_Q3DPORT_STATE", nullptr);
    const ScopedEnv viewportOnlyWhenItChanges("LIRN_FORCE_VP_SIZE", nullptr);
    const PortWindow<> keepsTheResourceWidget(60, 40);
    for (const Buffering buffering : {Buffering::kSingle, Buffering::kDouble}) {
        PortWindow<HookedPort> made(60, 40, buffering);
        HookedPort& port = made.port();
        port.glWidget()->resize(48, 32);
        TfunctionAction draw([](const Tevent&) { glFinish(); });
        port.setUpdateCommand(&draw);

        GlRecorder recorder;
        recorder.start();
        port.OnPaint();
        recorder.stop();
        std::vector<std::string> expected = updateCalls("glViewport(0, 0, 48, 32)"); // the new rectangle's
        append(expected, kReadDepths);
        expected.push_back("glViewport(0, 0, 48, 32)");
        if (buffering == Buffering::kSingle)
            expected.push_back("glDrawBuffer(GL_FRONT)");
        append(expected, updateCalls("glViewport(0, 0, 48, 32)"));
        expected.push_back("glFinish()");
        EXPECT_EQ(glCalls(recorder), expected);
        EXPECT_EQ(recorder.count("glXMakeCurrent"), 0);
        EXPECT_EQ(recorder.count("glXSwapBuffers"), 0) << "that is the update command's business";

        EXPECT_EQ(port.portRect(), TportRect(0, 0, 48, 32));
        EXPECT_THAT(port.fSizes, ElementsAre(Size(48, 32)));
        EXPECT_EQ(port.mainDepth(), 24 + port.glContextRecord()->fAlphaBits);

        recorder.start();
        port.OnPaint();
        recorder.stop();
        expected = updateCalls("glViewport(0, 0, 48, 32)");
        expected.push_back("glFinish()");
        EXPECT_EQ(glCalls(recorder), expected);
    }
}

TEST(PortPaint, APortOfOnePixelIsWidenedForItsFirstPaint)
{
    PortWindow<HookedPort> made(60, 40);
    HookedPort& port = made.port();
    port.glWidget()->setMinimumSize(0, 0);
    port.glWidget()->resize(300, 1);
    TportRect painted;
    TfunctionAction draw([&](const Tevent&) { painted = port.getUpdateRegion(); });
    port.setUpdateCommand(&draw);

    GlRecorder recorder;
    recorder.start();
    port.OnPaint();
    recorder.stop();
    EXPECT_EQ(from("glGetIntegerv(GL_STENCIL_BITS", glCalls(recorder)).at(1), "glViewport(0, 0, 300, 401)");
    EXPECT_EQ(painted, TportRect(0, -200, 300, 201));
    EXPECT_EQ(port.getUpdateRegion(), TportRect(0, 0, 300, 1)) << "outside an update";
    EXPECT_EQ(port.portRect(), TportRect(0, 0, 300, 1));
    EXPECT_THAT(port.fSizes, ElementsAre(Size(300, 1)));
    port.OnPaint();
    EXPECT_EQ(painted, TportRect(0, 0, 300, 1)) << "later paints are not widened";
}

TEST(PortPaint, SwapsOrFlushes)
{
    const PortWindow<> keepsTheResourceWidget(60, 40);
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    struct Row
    {
        Buffering buffering;
        bool noSwap;
        bool contextCanSwap;
        bool swaps;
    };
    const Row rows[] = {{Buffering::kSingle, false, true, false},
                        {Buffering::kDouble, false, true, true},
                        {Buffering::kDouble, true, true, false},
                        {Buffering::kDouble, false, false, false}};
    for (const Row& row : rows) {
        PortWindow<> made(60, 40, row.buffering);
        T3dPort& port = made.port();
        ASSERT_TRUE(made.show());
        port.setNoSwap(row.noSwap);
        T3dPortProbe::context(port)->fDirtyBits.assign(TglContext::kHasDoubleBuffer, row.contextCanSwap);
        GlRecorder recorder;
        const StdoutCapture output;
        recorder.start();
        port.swapBuffers();
        recorder.stop();
        EXPECT_EQ(recorder.count("glXSwapBuffers"), row.swaps ? 1 : 0);
        EXPECT_EQ(recorder.count("glFlush"), row.swaps ? 0 : 1);
        EXPECT_EQ(output.text(), row.swaps ? "T3dPort::swapBuffers - swap\n" : "T3dPort::swapBuffers - flush\n");
    }
}

TEST(PortPaint, TracesItsRectangle)
{
    const ScopedEnv noMatrices("LIRN_DEBUG_Q3DPORT_MATRICES", nullptr);
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    PortWindow<> made(60, 40);
    made.port().qControl()->setGeometry(7, 9, 50, 30);
    const StdoutCapture output;
    made.port().setPortRect(TportRect(1, 2, 31, 22));
    EXPECT_EQ(output.text(), "T3dPort::setPortRect(w=30, h=20, x:[1,31], y:[2,22], \n"
                             "T3dPort::setPortRect() - widget: w=50, h=30, geometry={x:[7,56], y:[38,9]}, "
                             "frame={x:[7,56], y:[38,9]}\n");
}
