// What the GL widget makes of Qt's events.

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QWheelEvent>

#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLWidget.h"

#include "QtExtensions/RecordingPort.h"
#include "foundation/TeventHandler.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "ui/QlirnQtHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr Qt::MouseButton kNone = Qt::NoButton;
constexpr Qt::MouseButton kLeft = Qt::LeftButton;
constexpr Qt::MouseButton kMiddle = Qt::MiddleButton;
constexpr Qt::MouseButton kRight = Qt::RightButton;

class WidgetEvents : public ::testing::Test
{
protected:
    RecordingPort& port() { return fWindow.port(); }
    QlirnGLWidget* widget() { return port().glWidget(); }

    void SetUp() override
    {
        ASSERT_TRUE(widget());
        port().forget();
    }

    /** Sends the event; whether it was accepted. */
    bool mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QMouseEvent event(type, at, at, at + QPointF(100, 200), button, buttons, keys);
        QApplication::sendEvent(widget(), &event);
        return event.isAccepted();
    }

    bool press(QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        return mouse(QEvent::MouseButtonPress, at, button, buttons);
    }
    bool move(QPointF at, Qt::MouseButtons buttons) { return mouse(QEvent::MouseMove, at, kNone, buttons); }
    bool release(QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        return mouse(QEvent::MouseButtonRelease, at, button, buttons);
    }

    bool wheel(QPoint angle, Qt::MouseButtons buttons = kNone)
    {
        QWheelEvent event(QPointF(7, 9), QPointF(107, 209), QPoint(), angle, buttons, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget(), &event);
        return event.isAccepted();
    }

    void tablet(QEvent::Type type, int device, double pressure, int pointer)
    {
        QTabletEvent event(type, QPointF(1, 1), QPointF(1, 1), device, pointer, pressure, 0, 0, 0, 0, 0,
                           Qt::NoModifier, 1, kLeft, kLeft);
        QApplication::sendEvent(widget(), &event);
        EXPECT_FALSE(event.isAccepted()) << "or Qt would not go on to make mouse events";
    }

    PortWindow<RecordingPort> fWindow{120, 90};
};

TEST_F(WidgetEvents, OnlyTheFirstPressAndTheLastReleaseArrive)
{
    EXPECT_TRUE(press({10, 20}, kLeft, kLeft));
    EXPECT_TRUE(Tevent::fsIsDragging);
    EXPECT_TRUE(press({11, 21}, kRight, kLeft | kRight));
    EXPECT_TRUE(move({12, 22}, kLeft | kRight));
    EXPECT_TRUE(release({13, 23}, kLeft, kRight));
    EXPECT_TRUE(Tevent::fsIsDragging);
    EXPECT_TRUE(release({14, 24}, kRight, kNone));
    EXPECT_FALSE(Tevent::fsIsDragging);
    EXPECT_TRUE(move({15, 25}, kNone));
    EXPECT_TRUE(mouse(QEvent::MouseButtonDblClick, {16, 26}, kMiddle, kMiddle));
    EXPECT_THAT(port().take(), ElementsAre("press 1 (10,20)", "drag 1 (12,22)", "release 3 (14,24)", "move 0 (15,25)",
                                           "double 2 (16,26)"));
}

TEST_F(WidgetEvents, CarryTypeKeysAndPositions)
{
    mouse(QEvent::MouseButtonPress, {10, 20}, kLeft, kLeft, Qt::ShiftModifier | Qt::AltModifier);
    move({11, 21}, kLeft);
    release({12, 22}, kLeft, kNone);
    move({13, 23}, kNone);
    mouse(QEvent::MouseButtonDblClick, {14, 24}, kLeft, kLeft);
    wheel({0, 120});
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(widget(), &enter);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(widget(), &leave);

    struct Row
    {
        unsigned type;
        bool pressed;
        bool global;
    };
    const Row rows[] = {{2, true, true},       {8, true, true},      {4, true, true},     {16384, false, true},
                        {32, false, false},    {0x400000, false, false}, {4096, false, false}, {8192, false, false}};
    const auto& calls = port().calls();
    ASSERT_EQ(calls.size(), std::size(rows));
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const Tevent& event = calls[i].event;
        EXPECT_EQ(event.type(), rows[i].type) << i;
        EXPECT_EQ(event.isPressed(), rows[i].pressed) << i;
        const Tpoint local = event.getLocalPosition(1);
        const Tpoint global = event.getGlobalPosition();
        EXPECT_EQ(global.x, rows[i].global ? local.x + 100 : 0) << i;
        EXPECT_EQ(global.y, rows[i].global ? local.y + 200 : 0) << i;
    }
    EXPECT_EQ(calls[0].event.modifiers(), unsigned(kShift) | unsigned(kAlt));
}

TEST_F(WidgetEvents, PressMakesCurrent)
{
    ASSERT_TRUE(fWindow.show());
    PortWindow<> other(40, 40);
    ASSERT_TRUE(other.show());
    other.port().makeCurrent();
    press({1, 1}, kLeft, kLeft);
    EXPECT_EQ(glXGetCurrentContext(), widget()->glContext()->getActiveContext());
    EXPECT_EQ(T3dPort::currentPort(), &port());
    release({1, 1}, kLeft, kNone);
}

TEST_F(WidgetEvents, PopupMenuTakesThePress)
{
    QMenu menu;
    menu.addAction("entry");
    QlirnQtHelper::setPopupMenu(widget(), &menu, kRight);
    press({10, 20}, kRight, kRight);
    EXPECT_THAT(port().take(), IsEmpty());
    menu.hide();
    press({10, 20}, kLeft, kLeft);
    EXPECT_THAT(port().take(), ElementsAre("press 1 (10,20)"));
}

TEST_F(WidgetEvents, WheelTurnsUnlessItMayNot)
{
    struct Row
    {
        const char* what;
        bool use;
        QPoint angle;
        Qt::MouseButtons buttons;
        int delta; ///< 0: nothing arrives
    };
    const Row rows[] = {
        {"away", true, {0, 120}, kNone, 120},
        {"towards", true, {0, -240}, kNone, -240},
        {"sideways, as Alt makes it", true, {120, 0}, kNone, 120},
        {"beyond what the event holds", true, {0, 70000}, kNone, 32767},
        {"with a button down", true, {0, 120}, kMiddle, 0},
        {"switched off", false, {0, 120}, kNone, 0},
    };
    const bool before = TeventHandler::fsUseScrollWheel;
    for (const Row& row : rows) {
        TeventHandler::fsUseScrollWheel = row.use;
        EXPECT_TRUE(wheel(row.angle, row.buttons)) << row.what;
        ASSERT_EQ(port().calls().size(), row.delta ? 1u : 0u) << row.what;
        if (row.delta) {
            EXPECT_EQ(port().calls()[0].event.mouseDelta(), row.delta) << row.what;
            EXPECT_THAT(port().take(), ElementsAre("wheel 0 (7,9)"));
        }
    }
    TeventHandler::fsUseScrollWheel = before;
}

TEST_F(WidgetEvents, TabletSetsPressureAndTellsMovesApart)
{
    tablet(QEvent::TabletPress, QTabletEvent::Stylus, 1.7, QTabletEvent::Pen);
    EXPECT_TRUE(Tevent::fsUseDevice);
    EXPECT_EQ(Tevent::fsDevicePressure, 1.0);
    EXPECT_EQ(Tevent::fsTabletPointerType, 1);
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.25, QTabletEvent::Eraser);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.25);
    EXPECT_EQ(Tevent::fsTabletPointerType, 3);
    move({1, 2}, kLeft); // the mouse event that Qt makes of it, while the device is on
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.5, QTabletEvent::Pen);
    tablet(QEvent::TabletRelease, QTabletEvent::Stylus, 0.0, QTabletEvent::Pen);
    EXPECT_FALSE(Tevent::fsUseDevice);
    move({3, 4}, kLeft); // right after a stylus move, the device off
    move({5, 6}, kLeft); // the mouse's own
    EXPECT_THAT(port().take(), ElementsAre("drag 1 (1,2)", "move 1 (3,4)", "drag 1 (5,6)"));

    // Another device than a stylus tells its pointer only.
    tablet(QEvent::TabletPress, QTabletEvent::Airbrush, 0.9, QTabletEvent::Eraser);
    EXPECT_FALSE(Tevent::fsUseDevice);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.5);
    EXPECT_EQ(Tevent::fsTabletPointerType, 3);
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.9, QTabletEvent::Cursor);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.5) << "moves count while the stylus touches";
    EXPECT_EQ(Tevent::fsTabletPointerType, 1);
}

TEST_F(WidgetEvents, DebugTraces)
{
    widget()->setDebugMode(true);
    StdoutCapture out;
    press({10, 20}, kLeft, kLeft);
    move({11, 21}, kLeft);
    release({12, 22}, kLeft, kNone);
    mouse(QEvent::MouseButtonDblClick, {13, 23}, kLeft, kLeft);
    wheel({0, 120});
    widget()->resizeGL(5, 6);
    EXPECT_THAT(out.text(), HasSubstr("QlirnGLWidget - mouse press (Local 10,20. Global 110,220)\n"
                                      "QlirnGLWidget - mouse move (Local 11,21. Global 111,221). Drag = 1\n"
                                      "QlirnGLWidget::mouseReleaseEvent()\n"
                                      "QlirnGLWidget - mouse release (Local 12,22. Global 112,222)\n"
                                      "QlirnGLWidget::mouseDoubleClickEvent()\n"
                                      "QlirnGLWidget::mouseWheelEvent()\n"
                                      "QlirnGLWidget - resizeGL w=5, h=6\n"
                                      "QlirnGLWidget - w="));
    widget()->setDebugMode(false);
}

TEST_F(WidgetEvents, ShowingHidingAndMovingTheWindow)
{
    ASSERT_TRUE(fWindow.show());
    port().forget();
    fWindow.window().hide();
    fWindow.window().show();
    settle();
    EXPECT_THAT(port().take(), ElementsAre("hidden 0 (0,0)", "shown 0 (0,0)"));

    QWidget other;
    other.show();
    settle();
    port().setDoUpdateOnMove(true);
    other.move(60, 70);
    settle();
    EXPECT_THAT(port().take(), IsEmpty()) << "another window";
    fWindow.window().move(50, 40);
    settle();
    EXPECT_THAT(port().take(), ::testing::Contains("moved 0 (0,0)"));
    port().setDoUpdateOnMove(false);
    fWindow.window().move(20, 30);
    settle();
    EXPECT_THAT(port().take(), IsEmpty());
}

TEST_F(WidgetEvents, WithoutAPortAreDropped)
{
    const QGLFormat format;
    QWidget parent;
    QlirnGLWidget lonely(nullptr, format, &parent, nullptr, Qt::WindowFlags());
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick}) {
        QMouseEvent event(type, QPointF(1, 2), kLeft, type == QEvent::MouseButtonRelease ? kNone : kLeft,
                          Qt::NoModifier);
        QApplication::sendEvent(&lonely, &event);
    }
    QWheelEvent wheelEvent(QPointF(7, 9), QPointF(), QPoint(), QPoint(0, 120), kNone, Qt::NoModifier,
                           Qt::NoScrollPhase, false);
    QApplication::sendEvent(&lonely, &wheelEvent);
    for (const QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
        QEvent event(type);
        QApplication::sendEvent(&lonely, &event);
    }
    parent.show();
    settle();
    parent.resize(70, 80);
    settle();
    lonely.useSharedContext(true);
    EXPECT_TRUE(lonely.renderPixmap(4, 4).isNull() || lonely.renderPixmap(4, 4).width() == 4);
    lonely.parentWindowMoveNotify(&parent);
    EXPECT_THAT(port().take(), IsEmpty());
}

} // namespace
