// Clicks and drags as the X server makes them, in the window of the viewer.

#include <QApplication>
#include <QX11Info>

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "TviewerWindow.h"
#include "foundation/T4dDblPoint.h"
#include "support/PortWindow.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>

// Last, for its macros.
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

Display* display()
{
    return QX11Info::display();
}

/** Qt reads events in a thread of its own, which may be behind the server. */
void deliver()
{
    XSync(display(), 0);
    waitUntil([] { return false; }, 60);
}

void key(KeySym symbol, bool down)
{
    XTestFakeKeyEvent(display(), XKeysymToKeycode(display(), symbol), down, CurrentTime);
    deliver();
}

void button(bool down)
{
    XTestFakeButtonEvent(display(), 1, down, CurrentTime);
    deliver();
}

/** Two squares that face the front, the smaller one in front of the other's right half. */
const char kSquares[] = "v -2 -1 0\nv 2 -1 0\nv 2 1 0\nv -2 1 0\nv 0.5 -0.5 1\nv 1.5 -0.5 1\nv 1.5 0.5 1\nv 0.5 0.5 1\n"
                        "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                        "o back\nf 1/1 2/2 3/3 4/4\no front\nf 5 6 7 8\n";

class ClicksRealEvents : public ::testing::Test
{
protected:
    ~ClicksRealEvents() override { at(QPoint(DisplayWidth(display(), 0) - 1, DisplayHeight(display(), 0) - 1)); }

    void SetUp() override
    {
        std::ofstream(fFolder.filePath(QStringLiteral("squares.obj")).toStdString()) << kSquares;
        fWindow.move(20, 20);
        static_cast<QWidget&>(fWindow).show();
        bool opened = false;
        QObject::connect(&fWindow, &TviewerWindow::opened, [&] { opened = true; });
        fWindow.open(fFolder.filePath(QStringLiteral("squares.obj")));
        // What seen() answers holds only once a first picture has framed the model.
        ASSERT_TRUE(waitUntil([&] { return opened && port().fGeometryStats->fFaces == 2; }));
        settle();
    }

    T3dPort& port() { return *T3dPort::allPorts().last(); }

    /** The screen's pixel where a point of the file is seen. */
    QPoint seen(double x, double y, double z)
    {
        const TobjModel& model = *fWindow.scene().model();
        const T4dDblVector p = (T4dDblVector(x, y, z) - model.centre()) * model.scale();
        T4dDblPoint pixel;
        port().worldToPort(T4dDblPoint(p.x, p.y, p.z), pixel);
        ::Window child = 0;
        int left = 0, top = 0;
        XTranslateCoordinates(display(), port().glWidget()->glWindow(), DefaultRootWindow(display()), 0, 0, &left, &top,
                              &child);
        return {left + static_cast<int>(pixel.x), top + port().portRect().height() - 1 - static_cast<int>(pixel.y)};
    }

    void at(const QPoint& p)
    {
        XTestFakeMotionEvent(display(), -1, p.x(), p.y(), CurrentTime);
        deliver();
    }
    void drag(const QPoint& from, const QPoint& to)
    {
        at(from);
        button(true);
        if (to != from) {
            at((from + to) / 2);
            at(to);
        }
        button(false);
    }
    void strike(KeySym symbol)
    {
        fWindow.setFocus();
        key(symbol, true);
        key(symbol, false);
    }
    void click(const QPoint& p, KeySym modifier = NoSymbol)
    {
        if (modifier != NoSymbol)
            key(modifier, true);
        drag(p, p);
        if (modifier != NoSymbol)
            key(modifier, false);
    }

    void clickNothing()
    {
        click(seen(-2.6, 1.5, 0));
        expectPicked({});
    }
    void expectPicked(const std::vector<Tselection::Titem>& expected)
    {
        const auto& items = fWindow.scene().selection().items();
        waitUntil([&] { return items == expected; }, 2000);
        ASSERT_EQ(items, expected);
    }

    QTemporaryDir fFolder;
    TviewerWindow fWindow{QSize(420, 320), {}, false};
};

/** The colours that the X server shows of the window's place. */
QImage onScreen(const QWidget& window)
{
    return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

using Items = std::vector<Tselection::Titem>;

} // namespace

TEST_F(ClicksRealEvents, PickWhatIsUnderThePointerAndMoveIt)
{
    for (const int way : {0, 1}) {
        SCOPED_TRACE(way ? "rasterization" : "selection");
        click(seen(-1.5, 0, 0));
        expectPicked(Items{{0, 0}});
        clickNothing(); // arrows would be in the way
        click(seen(1.4, 0.4, 1));
        expectPicked(Items{{1, 0}}); // the nearer one
        clickNothing();
        click(seen(1.4, 0.4, 1), XK_Shift_L);
        expectPicked(Items{{1, 1}});
        EXPECT_EQ(fWindow.scene().selection().kind(), Tselection::kFaces);
        click(seen(-1.98, -0.98, 0), XK_Control_L);
        expectPicked(Items{{0, 0}});
        EXPECT_EQ(fWindow.scene().selection().kind(), Tselection::kVertices);
        clickNothing();
        drag(seen(-2.2, 1.3, 0), seen(2.3, -1.4, 0));
        expectPicked(Items{{0, 0}, {1, 0}});
        clickNothing();
        strike(XK_r);
    }

    click(seen(1.4, 0.4, 1));
    expectPicked(Items{{1, 0}});
    const TobjModel& model = *fWindow.scene().model();
    const T4dDblVector centre = model.objects()[1].centre();
    T4dDblPoint from, to;
    port().worldToPort(T4dDblPoint(centre.x, centre.y, centre.z), from);
    port().worldToPort(T4dDblPoint(centre.x, centre.y + 0.2, centre.z), to);
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const QPoint start = seen(1, 0, 1);
    // The arrow of y leads upwards; half way along it, and 0.2 of the scene further.
    const QPoint grip = start - QPoint(0, 45);
    drag(grip, grip - QPoint(0, static_cast<int>(std::lround(length))));
    waitUntil([&] { return fWindow.scene().offset(1).y > 0.15; }, 2000);
    const T4dDblVector offset = fWindow.scene().offset(1);
    EXPECT_NEAR(offset.y, 0.2, 0.02);
    EXPECT_EQ(offset.x, 0);
    EXPECT_EQ(offset.z, 0);
    EXPECT_EQ(fWindow.scene().offset(0), T4dDblVector());
    expectPicked(Items{{1, 0}});
}

TEST_F(ClicksRealEvents, MarqueesAreErasedWithoutDrawingTheSceneAgain)
{
    at(seen(-2.2, 1.3, 0));
    const auto labels = fWindow.statusBar()->findChildren<QLabel*>();
    const auto showsView = [](const QLabel* label) { return label->text() == QLatin1String("perspective"); };
    ASSERT_TRUE(waitUntil([&] { return std::any_of(labels.begin(), labels.end(), showsView); }));
    settle();
    const QImage before = onScreen(fWindow);
    button(true);
    at(seen(-1, 0.5, 0));
    at(seen(0, 0, 0));
    EXPECT_TRUE(waitUntil([&] { return port().isBackingSaved(); }));
    at(seen(2.3, -1.4, 0));
    EXPECT_TRUE(port().isBackingSaved());
    EXPECT_NE(onScreen(fWindow), before);
    at(seen(-2.2, 1.3, 0));
    button(false);
    EXPECT_TRUE(waitUntil([&] { return !port().isBackingSaved(); }));
    EXPECT_TRUE(waitUntil([&] { return onScreen(fWindow) == before; })) << "something of a marquee is left";
    EXPECT_FALSE(port().isUsingBackingStore());
}

TEST_F(ClicksRealEvents, WhatIsOnTheScreenIsSaved)
{
    const QString former = QDir::currentPath();
    QDir::setCurrent(fFolder.path());
    at(seen(0, 0, 0)); // without a window manager keys go where the pointer is
    strike(XK_p);
    waitUntil([] { return QFile::exists(QStringLiteral("portview-1.png")); }, 2000);
    const QImage saved = QImage(QStringLiteral("portview-1.png")).convertToFormat(QImage::Format_RGB32);
    QDir::setCurrent(former);
    ASSERT_FALSE(saved.isNull());
    EXPECT_EQ(saved, onScreen(fWindow).copy(saved.rect()));
}

TEST_F(ClicksRealEvents, TheBrushPaintsUnderThePointer)
{
    at(seen(0, 0, 0));
    strike(XK_b);
    const auto redness = [&](double x) {
        const QRgb pixel = onScreen(fWindow).pixel(seen(x, 0.6, 0) - fWindow.pos());
        return qRed(pixel) - std::max(qGreen(pixel), qBlue(pixel));
    };
    drag(seen(-1.5, 0.6, 0), seen(-0.5, 0.6, 0));
    EXPECT_TRUE(waitUntil([&] { return redness(-0.6) > 60; }, 2000));
    for (const double x : {-1.5, -1.2, -0.9, -0.5})
        EXPECT_GT(redness(x), 60) << x;
    for (const double x : {-1.8, -0.2})
        EXPECT_LT(redness(x), 30) << x;
    expectPicked({});
}
