#include "Tview.h"

#include "Tbrush.h"
#include "TselectTool.h"
#include "TviewerWindow.h"
#include "foundation/Tevent.h"
#include "support/PortWindow.h"

#include <QApplication>
#include <QKeyEvent>

#include <gtest/gtest.h>

TEST(Tview, ButtonsTumbleTrackAndDolly)
{
    TviewScene scene;
    TselectTool tool(scene);
    Tbrush brush(scene);
    const TviewScene::Tstyle style;
    QWidget window;
    const Tview keepsTheSharedWidget(&window, TviewCamera::kFront, scene, style, tool, brush);
    for (const auto projection : {TviewCamera::kPerspective, TviewCamera::kTop}) {
        Tview view(&window, projection, scene, style, tool, brush);
        const TviewCamera& camera = view.camera();
        const T4dDblMatrix orientation = camera.orientation();
        const double distance = camera.distance();
        const auto drag = [](int button, short x, short y, unsigned modifiers = 0) {
            T3dPort& port = *T3dPort::allPorts().last();
            port.doPress(TpressEvent({100, 100}, modifiers, button));
            port.doDrag(TdragEvent({x, y}, modifiers, button));
        };
        drag(3, 140, 100);
        EXPECT_EQ(camera.orientation() != orientation, projection == TviewCamera::kPerspective);
        EXPECT_EQ(camera.distance(), distance);
        drag(2, 100, 120);
        EXPECT_GT(camera.centre().length(), 0.05);
        drag(3, 130, 100, kAlt);
        EXPECT_LT(camera.distance(), distance);
    }
}

TEST(TviewerWindow, KeysSwitchViewsAndCloseWhileAFileLoads)
{
    TviewerWindow window(QSize(400, 300), {}, false);
    static_cast<QWidget&>(window).show();
    bool failed = false;
    QObject::connect(&window, &TviewerWindow::failed, [&] { failed = true; });
    window.open(QStringLiteral("/nowhere/model.obj"));
    const auto press = [&](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    };
    const unsigned before = T3dPort::allPorts().length();
    press(Qt::Key_Space);
    EXPECT_TRUE(window.hasFourViews());
    EXPECT_EQ(T3dPort::allPorts().length(), before + 3);
    EXPECT_TRUE(waitUntil([&] { return failed; }));
    press(Qt::Key_D);
    press(Qt::Key_G);
    press(Qt::Key_X);
    press(Qt::Key_G);
    EXPECT_EQ(window.style().fShading, TviewScene::kFlat);
    EXPECT_TRUE(window.style().fXray);
    EXPECT_FALSE(window.style().fGhosted);
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}
