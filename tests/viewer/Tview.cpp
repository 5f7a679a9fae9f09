#include "Tview.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "TviewerWindow.h"
#include "foundation/Tevent.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

template <class F> bool within10Seconds(F condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 10000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

class TviewEvents : public ::testing::TestWithParam<TviewCamera::Tprojection>
{
protected:
    TviewEvents()
    {
        fWindow.resize(300, 200);
        fView = std::make_unique<Tview>(&fWindow, GetParam(), fScene, fStyle);
        fLayout.addWidget(fView->widget());
        fWindow.show();
        fPort = T3dPort::allPorts().last();
        EXPECT_TRUE(within10Seconds([this] { return !fPort->portFlags().test(T3dPort::kPortFirstPaintPending); }));
    }

    void drag(int button, short dx, short dy)
    {
        fPort->doPress(TpressEvent({100, 100}, 0, button));
        fPort->doDrag(TdragEvent({short(100 + dx), short(100 + dy)}, 0, button));
    }

    TviewScene fScene;
    TviewScene::Tstyle fStyle;
    QWidget fWindow;
    QVBoxLayout fLayout{&fWindow};
    std::unique_ptr<Tview> fView;
    T3dPort* fPort = nullptr;
};

} // namespace

TEST_P(TviewEvents, ButtonsTumbleTrackAndDolly)
{
    const bool tumbles = fView->camera().isPerspective();
    const T4dDblMatrix orientation = fView->camera().orientation();
    const double distance = fView->camera().distance();

    drag(1, 40, 0);
    EXPECT_EQ(fView->camera().orientation() != orientation, tumbles);
    EXPECT_EQ(fView->camera().distance(), distance);
    drag(2, 0, 20);
    EXPECT_GT(fView->camera().centre().length(), 0.05);
    drag(3, 30, 0);
    EXPECT_LT(fView->camera().distance(), distance);

    // The second press of a double click counts as a press: what is dragged next starts there.
    const T4dDblVector centre = fView->camera().centre();
    Tevent doubleClick(Tevent::kDoubleClick, 0, 2);
    doubleClick.setLocalPosition({10, 10});
    fPort->doDoubleClick(doubleClick);
    fPort->doDrag(TdragEvent({10, 10}, 0, 2));
    EXPECT_EQ(fView->camera().centre(), centre);
}

TEST_P(TviewEvents, WheelDolliesAndFramingUndoesIt)
{
    const double distance = fView->camera().distance();
    const auto turn = [this](int delta) {
        QWheelEvent wheel(QPointF(50, 50), QPointF(50, 50), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(fPort->glWidget(), &wheel);
    };
    turn(120);
    EXPECT_LT(fView->camera().distance(), 0.95 * distance);
    turn(-240);
    EXPECT_GT(fView->camera().distance(), 1.05 * distance);
    fView->frame();
    EXPECT_TRUE(within10Seconds([&] { return std::abs(fView->camera().distance() - distance) < 1e-9; }));
}

INSTANTIATE_TEST_SUITE_P(Projections, TviewEvents, ::testing::Values(TviewCamera::kPerspective, TviewCamera::kTop));

TEST(Tview, CountsWhatADrawingDrewWithoutOpenGLErrors)
{
    TviewScene scene;
    scene.setModel(TobjModel::torusKnot());
    const std::size_t faces = scene.model()->faceCount();
    QWidget parent;
    TviewScene::Tstyle style;
    Tview view(&parent, TviewCamera::kPerspective, scene, style);
    const auto port = T3dPort::allPorts().last();
    int drawings = 0;
    view.setDrawnHook([&] {
        ++drawings;
        EXPECT_EQ(port->error(), 0) << T3dPort::getErrorString().asChar();
    });
    style.fGhosted = style.fXray = style.fEdges = style.fLamp = true;
    const struct
    {
        TviewScene::Tshading shading;
        std::size_t triangles;
    } cases[] = {{TviewScene::kSmooth, 2 * faces}, {TviewScene::kFlat, 2 * faces}, {TviewScene::kWire, 0}};
    for (const auto& each : cases) {
        style.fShading = each.shading;
        view.picture(QSize(64, 48));
        EXPECT_EQ(view.statistics().fTmeshes, 1u);
        EXPECT_EQ(view.statistics().fFaces, faces);
        EXPECT_EQ(view.statistics().fEdges, 2 * faces);
        EXPECT_EQ(view.statistics().fVerts, faces);
        EXPECT_EQ(view.statistics().fTriangles, each.triangles);
    }
    EXPECT_GE(drawings, 3);
    scene.setModel(nullptr);
    view.picture(QSize(64, 48));
    EXPECT_EQ(view.statistics().fFaces, 0u);
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
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    EXPECT_EQ(T3dPort::allPorts().length(), before + 3);
    EXPECT_TRUE(within10Seconds([&] { return failed; }));
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
