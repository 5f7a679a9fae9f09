#include <QApplication>
#include <QMouseEvent>
#include <QTabletEvent>

#include "QtExtensions/QlirnGLWidget.h"

#include "QtExtensions/RecordingPort.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

class TabletEvents : public ::testing::Test
{
protected:
    void drag(QPointF at)
    {
        QMouseEvent event(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(fWindow.port().glWidget(), &event);
    }

    void tablet(QEvent::Type type, int device, double pressure, int pointer)
    {
        QTabletEvent event(type, QPointF(1, 1), QPointF(1, 1), device, pointer, pressure, 0, 0, 0, 0, 0, Qt::NoModifier,
                           1, Qt::LeftButton, Qt::LeftButton);
        QApplication::sendEvent(fWindow.port().glWidget(), &event);
        EXPECT_FALSE(event.isAccepted()) << "or Qt would not go on to make mouse events";
    }

    PortWindow<RecordingPort> fWindow{120, 90};
};

TEST_F(TabletEvents, SetPressureAndTellMovesApart)
{
    fWindow.port().forget();
    tablet(QEvent::TabletPress, QTabletEvent::Stylus, 1.7, QTabletEvent::Pen);
    EXPECT_TRUE(Tevent::fsUseDevice);
    EXPECT_EQ(Tevent::fsDevicePressure, 1.0);
    EXPECT_EQ(Tevent::fsTabletPointerType, 1);
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.25, QTabletEvent::Eraser);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.25);
    EXPECT_EQ(Tevent::fsTabletPointerType, 3);
    drag({1, 2}); // the mouse event that Qt makes of it, while the device is on
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.5, QTabletEvent::Pen);
    tablet(QEvent::TabletRelease, QTabletEvent::Stylus, 0.0, QTabletEvent::Pen);
    EXPECT_FALSE(Tevent::fsUseDevice);
    drag({3, 4}); // right after a stylus move, the device off
    drag({5, 6}); // the mouse's own
    EXPECT_THAT(fWindow.port().take(), ElementsAre("drag 1 (1,2)", "move 1 (3,4)", "drag 1 (5,6)"));

    // Another device than a stylus tells its pointer only.
    tablet(QEvent::TabletPress, QTabletEvent::Airbrush, 0.9, QTabletEvent::Eraser);
    EXPECT_FALSE(Tevent::fsUseDevice);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.5);
    EXPECT_EQ(Tevent::fsTabletPointerType, 3);
    tablet(QEvent::TabletMove, QTabletEvent::Stylus, 0.9, QTabletEvent::Cursor);
    EXPECT_EQ(Tevent::fsDevicePressure, 0.5) << "moves count while the stylus touches";
    EXPECT_EQ(Tevent::fsTabletPointerType, 1);
}

} // namespace
