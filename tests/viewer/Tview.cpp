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

TEST(TviewerWindow, KeysSwitchViewsAndCloseWhileAFileLoads)
{
    TviewerWindow window(QSize(400, 300), TviewScene::kFlat, false);
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
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}
