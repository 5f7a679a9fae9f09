// Events of the pointer as the X server makes them, and device pixels at every scale.

#include <QApplication>
#include <QX11Info>

#include "QtExtensions/QlirnGLWidget.h"

#include "QtExtensions/OwnProcess.h"
#include "QtExtensions/RecordingPort.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Last, for its macros.
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <cstdlib>

namespace {

using ::testing::ElementsAre;

Display* display()
{
    return QX11Info::display();
}

/** Where the upper left corner of the port's own window is on the screen, asked of the server. */
QPoint cornerOf(const T3dPort& port)
{
    ::Window child = 0;
    int x = 0;
    int y = 0;
    XTranslateCoordinates(display(), port.glWidget()->glWindow(), DefaultRootWindow(display()), 0, 0, &x, &y, &child);
    return QPoint(x, y);
}

/** Presses, moves and turns in device pixels of the screen. */
struct Hand
{
    ~Hand() { to(QPoint(DisplayWidth(display(), 0) - 1, DisplayHeight(display(), 0) - 1)); }

    void to(const QPoint& at) const
    {
        XTestFakeMotionEvent(display(), -1, at.x(), at.y(), CurrentTime);
        XSync(display(), 0);
    }
    void button(unsigned number, bool down) const
    {
        XTestFakeButtonEvent(display(), number, down, CurrentTime);
        XSync(display(), 0);
    }
};

class PointerRealEvents : public ::testing::Test
{
protected:
    RecordingPort& port() { return fWindow.port(); }

    void SetUp() override
    {
        fHand.to(QPoint(DisplayWidth(display(), 0) - 1, DisplayHeight(display(), 0) - 1));
        fWindow.window().move(31, 17);
        ASSERT_TRUE(fWindow.show());
        port().forget();
    }

    /** The next @p count handler calls. */
    std::vector<std::string> next(std::size_t count)
    {
        waitUntil([&] { return port().calls().size() >= count; });
        settle();
        return port().take();
    }

    /** What the event picks where the pixel @p p, from above, is named 1 and one nearby 2; 0 for none or several. */
    unsigned pickedBy(Tevent event, const QPoint& p)
    {
        port().adjustEventLocalPosition(event);
        port().fSelectRect = port().makeSelectRect(event.getLocalPosition(1), 1);
        port().ortho(0, port().portRect().width(), port().portRect().height(), 0);
        unsigned hits[16] = {};
        port().beginSelect(hits, 16);
        port().pushName(0);
        for (const int i : {0, 1}) {
            const QRectF pixel(p.x() + 0.1 + 2 * i, p.y() + 0.1 - 2 * i, 0.8, 0.8);
            port().loadName(1 + i);
            port().rect(float(pixel.left()), float(pixel.top()), float(pixel.right()), float(pixel.bottom()), true);
        }
        return port().endSelect() == 1 ? hits[3] : 0;
    }

    PortWindow<RecordingPort> fWindow{160, 120, Buffering::kDouble};
    Hand fHand;
};

TEST_F(PointerRealEvents, ReachTheHandlers)
{
    const QPoint corner = cornerOf(port());
    fHand.to(corner + QPoint(40, 30));
    EXPECT_THAT(next(2), ElementsAre("enter 0 (0,0)", "move 0 (40,30)"));
    fHand.button(1, true);
    fHand.to(corner + QPoint(50, 35));
    fHand.button(3, true);
    fHand.to(corner + QPoint(51, 36));
    fHand.button(3, false);
    fHand.button(1, false);
    EXPECT_THAT(next(4), ElementsAre("press 1 (40,30)", "drag 1 (50,35)", "drag 1 (51,36)", "release 1 (51,36)"));
    fHand.button(4, true);
    fHand.button(4, false);
    ASSERT_TRUE(waitUntil([&] { return port().calls().size() == 1; }));
    EXPECT_EQ(port().calls()[0].event.mouseDelta(), 120);
    EXPECT_THAT(next(1), ElementsAre("wheel 0 (51,36)"));
    // The pointer held down keeps the port's events outside of it.
    fHand.button(2, true);
    fHand.to(corner + QPoint(-10, 200));
    fHand.button(2, false);
    const std::vector<std::string> dragged = next(3);
    ASSERT_GE(dragged.size(), 3u);
    EXPECT_EQ(dragged[0], "press 2 (51,36)");
    EXPECT_EQ(dragged[1], "drag 2 (-10,200)");
    EXPECT_THAT(dragged, ::testing::Contains("release 2 (-10,200)"));
}

TEST_F(PointerRealEvents, APortMayGoWhileAButtonIsDownOnIt)
{
    fHand.to(cornerOf(port()) + QPoint(9, 9));
    settle();
    fHand.button(1, true);
    ASSERT_TRUE(waitUntil([&] {
        return std::any_of(port().calls().begin(), port().calls().end(),
                           [](const auto& call) { return call.event.type() == Tevent::kPress; });
    }));
    fWindow.closePort();
    fWindow.window().hide();
    fHand.button(1, false);
    settle();
}

// Rectangle, viewport, window and pointer in the same pixels.
TEST_F(PointerRealEvents, AreInDevicePixelsAtEveryScale)
{
    if (!isRerun()) {
        for (const char* scale : {"1", "1.25", "1.5", "2"})
            rerun({{"QT_SCALE_FACTOR", scale}});
        return;
    }
    const double scale = std::atof(std::getenv("QT_SCALE_FACTOR"));
    QApplication::setDoubleClickInterval(0);
    for (const QSize& size : {QSize(160, 120), QSize(133, 77)}) {
        fWindow.window().resize(size);
        settle();
        const QSize device(qRound(size.width() * scale), qRound(size.height() * scale));
        XWindowAttributes window;
        XGetWindowAttributes(display(), port().glWidget()->glWindow(), &window);
        EXPECT_EQ(QSize(window.width, window.height), device);
        for (const TportRect& r : {port().portRect(), port().viewport()})
            EXPECT_EQ(QRect(r.left, r.bottom, r.width(), r.height()), QRect(QPoint(0, 0), device));
        port().setCurrentContext();
        GLint viewport[4] = {};
        glGetIntegerv(GL_VIEWPORT, viewport);
        EXPECT_EQ(QRect(viewport[0], viewport[1], viewport[2], viewport[3]), QRect(QPoint(0, 0), device));

        const QPoint corner = cornerOf(port());
        for (const QPoint& p : {QPoint(1, 1), QPoint(7, 5), QPoint(30, 21), QPoint(31, 22), QPoint(32, 23),
                                QPoint(device.width() - 1, device.height() - 1)}) {
            fHand.to(corner + p);
            settle();
            port().forget();
            fHand.button(1, true);
            fHand.button(1, false);
            // The pointer's coming into the window may be told as late as this.
            const auto press = [&] {
                return std::find_if(port().calls().begin(), port().calls().end(),
                                    [](const auto& call) { return call.event.type() == Tevent::kPress; });
            };
            ASSERT_TRUE(waitUntil([&] { return press() != port().calls().end(); }));
            const Tevent event = press()->event;
            EXPECT_EQ(QPoint(event.getLocalPosition(1).x, event.getLocalPosition(1).y), p);
            EXPECT_EQ(QPoint(event.getGlobalPosition().x, event.getGlobalPosition().y), corner + p);
            EXPECT_EQ(pickedBy(event, p), 1u);
        }
    }
}

} // namespace
