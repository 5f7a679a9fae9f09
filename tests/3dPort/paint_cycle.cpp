#include "3dPort/Calls.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tevent.h"
#include "foundation/Tpoint.h"
#include "foundation/Trect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Size = std::pair<int, int>;

class HookedPort : public T3dPort
{
public:
    using T3dPort::T3dPort;
    void resizeHook(unsigned short width, unsigned short height) override { fSizes.emplace_back(width, height); }

    std::vector<Size> fSizes;
};

Trect sized(int width, int height)
{
    Trect r;
    r.set(0, static_cast<short>(height), static_cast<short>(width), 0);
    return r;
}

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
        EXPECT_EQ(port.isDoubleBuffered(), buffering == Buffering::kDouble);

        EXPECT_EQ(T3dPortProbe::flags(port) & 0x3, 0u);
        EXPECT_EQ(port.portRect(), TportRect(0, 0, 48, 32));
        EXPECT_EQ(port.lastRow(), 31);
        EXPECT_THAT(port.fSizes, ElementsAre(Size(48, 32)));
        EXPECT_EQ(port.glContextRecord()->fRedBits, 8);
        EXPECT_EQ(port.mainDepth(), 24 + port.glContextRecord()->fAlphaBits);

        recorder.start();
        port.OnPaint();
        recorder.stop();
        expected = updateCalls("glViewport(0, 0, 48, 32)");
        expected.push_back("glFinish()");
        EXPECT_EQ(glCalls(recorder), expected);
        EXPECT_EQ(port.fSizes.size(), 1u);
    }
}

TEST(PortPaint, APortOfOnePixelIsWidenedForItsFirstPaint)
{
    const PortWindow<> keepsTheResourceWidget(60, 40);
    struct Row
    {
        int width, height;
        const char* viewport;
        TportRect region;
    };
    const Row rows[] = {
        {1, 300, "glViewport(0, 0, 401, 300)", {-200, 0, 201, 300}},
        {300, 1, "glViewport(0, 0, 300, 401)", {0, -200, 300, 201}},
        {1, 1, "glViewport(0, 0, 401, 401)", {-200, -200, 201, 201}},
        {2, 2, "glViewport(0, 0, 2, 2)", {0, 0, 2, 2}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.viewport);
        PortWindow<HookedPort> made(60, 40);
        HookedPort& port = made.port();
        port.glWidget()->setMinimumSize(0, 0);
        port.glWidget()->resize(row.width, row.height);
        TportRect painted;
        TfunctionAction draw([&](const Tevent& event) {
            EXPECT_EQ(event.type(), unsigned(Tevent::kUpdate));
            EXPECT_TRUE(port.portFlags().test(T3dPort::kPortInUpdate));
            painted = port.getUpdateRegion();
        });
        port.setUpdateCommand(&draw);

        GlRecorder recorder;
        recorder.start();
        port.OnPaint();
        recorder.stop();
        const auto afterDepths = from("glGetIntegerv(GL_STENCIL_BITS", glCalls(recorder));
        ASSERT_GE(afterDepths.size(), 2u);
        EXPECT_EQ(afterDepths[1], row.viewport);
        EXPECT_EQ(painted, row.region);
        const TportRect widget(0, 0, short(row.width), short(row.height));
        EXPECT_EQ(port.getUpdateRegion(), widget) << "outside an update";
        EXPECT_EQ(port.portRect(), widget);
        EXPECT_EQ(port.viewport(), widget);
        EXPECT_THAT(port.fSizes, ElementsAre(Size(row.width, row.height)));

        port.OnPaint();
        EXPECT_EQ(painted, widget) << "later paints are not widened";
        EXPECT_EQ(port.stateDifferences().length(), 0u);
    }
}

TEST(PortPaint, AnEmptyWidgetIsNotPainted)
{
    PortWindow<> made(60, 40);
    made.port().glWidget()->setMinimumSize(0, 0);
    for (const QSize size : {QSize(0, 20), QSize(20, 0), QSize(0, 0)}) {
        made.port().glWidget()->resize(size);
        GlRecorder recorder;
        recorder.start();
        made.port().OnPaint();
        EXPECT_THAT(glCalls(recorder), IsEmpty());
        EXPECT_TRUE(made.port().portFlags().test(T3dPort::kPortFirstPaintPending));
    }
}

TEST(PortPaint, AResizeRedrawsOnlyWhenTheSizeIsNew)
{
    PortWindow<HookedPort> made(60, 40);
    HookedPort& port = made.port();
    CountingAction update;
    port.setUpdateCommand(&update);
    struct Row
    {
        Trect given;
        Size size;
        int updates;
    };
    Trect moved;
    moved.set(10, 50, 90, 20);
    for (const Row& row : {Row{sized(80, 30), {80, 30}, 1}, Row{sized(80, 30), {80, 30}, 1}, Row{moved, {80, 30}, 1},
                           Row{sized(81, 30), {81, 30}, 2}, Row{sized(0, 0), {0, 0}, 3}}) {
        EXPECT_FALSE(port.resize(row.given));
        EXPECT_EQ(port.portRect(), TportRect(0, 0, short(row.size.first), short(row.size.second)));
        EXPECT_EQ(port.fSizes.back(), row.size);
        EXPECT_EQ(update.runs(), row.updates);
    }
    EXPECT_EQ(port.fSizes.size(), 5u);
    EXPECT_EQ(update.lastEvent().type(), unsigned(Tevent::kNone));
}

TEST(PortPaint, KeepsRectanglesAndViewportsOnStacks)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    const TportRect a(0, 0, 60, 40);
    const TportRect b(5, 6, 20, 30);
    port.setPortRect(a);
    GlRecorder recorder;
    recorder.start();
    port.popPortRect(); // none is saved
    EXPECT_EQ(port.portRect(), a);
    port.pushPortRect(b);
    port.pushPortRect(port.portRect());
    EXPECT_EQ(port.portRect(), b);
    port.popPortRect();
    EXPECT_EQ(port.portRect(), b);
    port.popPortRect();
    EXPECT_EQ(port.portRect(), a);
    EXPECT_THAT(recorder.calls(), IsEmpty());

    port.setCurrentContext();
    recorder.start();
    port.popViewport(); // the last one stays
    for (short i = 1; i <= 40; ++i)
        port.pushViewport(TportRect(i, 2, short(i + 10), 8));
    EXPECT_EQ(recorder.calls().back(), "glViewport(40, 2, 10, 6)");
    EXPECT_EQ(recorder.calls().size(), 40u) << "nothing but viewports: the matrices stay as loaded";
    port.pushViewport(port.viewport());
    for (int i = 0; i < 40; ++i)
        port.popViewport();
    EXPECT_EQ(recorder.calls().back(), "glViewport(1, 2, 10, 6)");
    port.popViewport();
    EXPECT_EQ(recorder.calls().back(), "glViewport(0, 0, 60, 40)");
    EXPECT_EQ(port.viewport(), a);
    EXPECT_EQ(recorder.calls().size(), 82u);
}

TEST(PortPaint, NotesTheLastRowOfAnyRectangleSet)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    port.setPortRect(TportRect(0, 0, 60, 40));
    port.pushPortRect(TportRect(0, 0, 60, 20));
    EXPECT_EQ(port.lastRow(), 39);
    GlRecorder recorder;
    recorder.start();
    port.setPortRect(TportRect(0, 0, 60, 20));
    EXPECT_EQ(port.lastRow(), 19);
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST(PortPaint, KnowsItsPointsAndWhetherItCanBeSeen)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    EXPECT_TRUE(port.isFullyObscured()) << "not shown";
    ASSERT_TRUE(made.show());
    EXPECT_FALSE(port.isFullyObscured());
    EXPECT_FALSE(port.isPartiallyObscured());
    port.pushPortRect(TportRect(-5, 3, 10, 8));
    const std::pair<Tpoint, bool> points[] = {{{-5, 3}, true},   {{9, 7}, true},   {{10, 7}, false}, {{9, 8}, false},
                                              {{-6, 3}, false}, {{-5, 2}, false}, {{0, 5}, true},
                                              {{-32768, 32767}, false}};
    for (const auto& [point, inside] : points)
        EXPECT_EQ(port.isPtInPortRect(point), inside) << point.x << "," << point.y;
    for (const TportRect& empty : {TportRect(3, 0, 3, 5), TportRect(0, 5, 3, 4)}) {
        port.pushPortRect(empty);
        EXPECT_TRUE(port.isFullyObscured());
    }
    port.setPlayblastPortRect(TportRect(1, 2, 3, 4));
    EXPECT_EQ(port.playblastPortRect(), TportRect(1, 2, 3, 4));
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
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    PortWindow<> made(60, 40);
    made.port().qControl()->setGeometry(7, 9, 50, 30);
    const StdoutCapture output;
    made.port().setPortRect(TportRect(1, 2, 31, 22));
    EXPECT_EQ(output.text(), "T3dPort::setPortRect(w=30, h=20, x:[1,31], y:[2,22], \n"
                             "T3dPort::setPortRect() - widget: w=50, h=30, geometry={x:[7,56], y:[38,9]}, "
                             "frame={x:[7,56], y:[38,9]}\n");
}

TEST(PortPaint, RedrawsWhenItsWindowMovesIfAsked)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    ASSERT_TRUE(made.show());
    // What is uncovered by the moves is painted too; only these redraws have an event of no type.
    int redraws = 0;
    TfunctionAction update([&](const Tevent& event) { redraws += event.type() == Tevent::kNone; });
    port.setUpdateCommand(&update);
    QWidget another;
    another.show();
    settle();

    int x = 10;
    const auto redrawsOf = [&](QWidget& window) {
        const int before = redraws;
        window.move(x += 10, 20);
        waitUntil([&] { return redraws > before; }, 100);
        settle();
        return redraws - before;
    };
    EXPECT_EQ(redrawsOf(made.window()), 0);
    port.parentWindowMoveNotify();
    EXPECT_EQ(redraws, 0);
    for (int i = 0; i < 2; ++i)
        port.setDoUpdateOnMove(true);
    EXPECT_EQ(redrawsOf(made.window()), 1) << "switched on twice, connected once";
    EXPECT_EQ(redrawsOf(another), 0);
    port.setDoUpdateOnMove(false);
    EXPECT_EQ(redrawsOf(made.window()), 0);
}
