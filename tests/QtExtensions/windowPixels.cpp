// What is to be seen of a port: at every size, in every window, uncovered, and in a pixmap.

#include <QApplication>
#include <QPixmap>
#include <QX11Info>

#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLWidget.h"

#include "foundation/Taction.h"
#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr int kMark = 6;

/** Fills the port with one colour and marks its corners: red, green, blue and white from the lower left around. */
void drawCorners(T3dPort& port, const TportColor& ground)
{
    const TportRect& r = port.portRect();
    const auto fill = [&port](const TportColor& c, int left, int bottom, int right, int top) {
        port.scissor(TportRect(short(left), short(bottom), short(right), short(top)), true);
        port.clearColor(c);
        port.clear(GL_COLOR_BUFFER_BIT);
    };
    fill(ground, 0, 0, r.width(), r.height());
    fill(TportColor(1, 0, 0, 1), 0, 0, kMark, kMark);
    fill(TportColor(0, 1, 0, 1), r.width() - kMark, 0, r.width(), kMark);
    fill(TportColor(0, 0, 1, 1), r.width() - kMark, r.height() - kMark, r.width(), r.height());
    fill(TportColor(1, 1, 1, 1), 0, r.height() - kMark, kMark, r.height());
    port.scissor(TportRect(0, 0, r.width(), r.height()), false);
    port.swapBuffers();
}

/** The faults of a picture that drawCorners() made, in a rectangle of @p image; empty when there are none. */
std::string cornerFaults(const QImage& image, const QRect& part, const QColor& ground)
{
    if (!image.rect().contains(part))
        return "the picture is too small: " + std::to_string(image.width()) + " x " + std::to_string(image.height());
    struct Spot
    {
        QPoint at;
        QColor colour;
        const char* name;
    };
    const Spot spots[] = {
        {part.bottomLeft(), Qt::red, "lower left"},
        {part.bottomLeft() + QPoint(kMark, -kMark), ground, "lower left, beyond"},
        {part.bottomRight(), Qt::green, "lower right"},
        {part.topRight(), Qt::blue, "upper right"},
        {part.topRight() + QPoint(-kMark, kMark), ground, "upper right, beyond"},
        {part.topLeft(), Qt::white, "upper left"},
        {part.center(), ground, "middle"},
    };
    std::string faults;
    for (const Spot& spot : spots) {
        const QColor seen = image.pixelColor(spot.at);
        if (seen != spot.colour)
            faults += std::string(spot.name) + " is " + seen.name().toStdString() + "; ";
    }
    return faults;
}

/** A window whose port draws its corners, on magenta. */
class CornerWindow : public PortWindow<>
{
public:
    CornerWindow(int width, int height, Buffering buffering)
        : PortWindow<>(width, height, buffering), fDraw([this](const Tevent&) {
              ++fDrawn;
              if (fBefore)
                  fBefore();
              drawCorners(port(), TportColor(1, 0, 1, 1));
          })
    {
        port().setUpdateCommand(&fDraw);
    }

    int drawn() const { return fDrawn; }
    void before(std::function<void()> action) { fBefore = std::move(action); }

    std::string faults()
    {
        const QImage image = shownPixels(port());
        const TportRect& r = port().portRect();
        if (image.size() != QSize(r.width(), r.height()))
            return "port and window differ in size";
        return cornerFaults(image, image.rect(), Qt::magenta);
    }

private:
    int fDrawn = 0;
    std::function<void()> fBefore;
    TfunctionAction fDraw;
};

class PortOnScreen : public ::testing::TestWithParam<Buffering>
{
protected:
    CornerWindow fWindow{200, 150, GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Buffers, PortOnScreen, ::testing::Values(Buffering::kSingle, Buffering::kDouble),
                         [](const auto& info) { return info.param == Buffering::kSingle ? "Single" : "Double"; });

TEST_P(PortOnScreen, FirstSightAndEverySizeAreDrawnInFull)
{
    fWindow.window().show();
    ASSERT_TRUE(waitUntil([&] { return fWindow.drawn() > 0; }));
    settle();
    EXPECT_EQ(fWindow.faults(), "") << "at first sight";
    for (const QSize& size : {QSize(333, 222), QSize(640, 480), QSize(90, 300), QSize(41, 33), QSize(500, 40)}) {
        fWindow.window().resize(size);
        settle();
        EXPECT_EQ(fWindow.port().glWidget()->deviceSize(), size);
        EXPECT_EQ(fWindow.faults(), "") << size.width() << " x " << size.height();
    }
}

class BareWindow : public QWidget
{
public:
    using QWidget::create;
    using QWidget::destroy;
};

TEST_P(PortOnScreen, MovesIntoOtherWindowsAndFloats)
{
    ASSERT_TRUE(fWindow.show());
    T3dPort& port = fWindow.port();
    QWidget* control = port.qControl();
    const auto expectDrawn = [&](const char* where) {
        settle();
        port.glWidget()->update();
        settle();
        EXPECT_EQ(fWindow.faults(), "") << where;
        EXPECT_EQ(port.stateDifferences().length(), 0u) << where;
        // The window drawn in lies in the widget's own.
        ::Window root = 0;
        ::Window above = 0;
        ::Window* children = nullptr;
        unsigned count = 0;
        ASSERT_TRUE(XQueryTree(QX11Info::display(), port.glWidget()->glWindow(), &root, &above, &children, &count));
        if (children)
            XFree(children);
        EXPECT_EQ(above, port.glWidget()->internalWinId()) << where;
    };
    expectDrawn("where it was made");
    {
        BareWindow second;
        second.resize(260, 180);
        auto* layout = new QVBoxLayout(&second);
        layout->addWidget(control);
        second.show();
        control->show();
        expectDrawn("in another window");
        port.setCurrentContext();
        port.clear(GL_COLOR_BUFFER_BIT); // left unflushed in the window that goes
        second.destroy();
        second.create();
        second.show();
        expectDrawn("in a window made anew");

        control->setParent(nullptr, Qt::Tool);
        control->resize(170, 140);
        control->show();
        expectDrawn("floating");
        fWindow.window().layout()->addWidget(control);
        control->show();
    }
    expectDrawn("back again");
}

TEST(PixmapOnScreen, IsThePortAtItsOwnSizeFromTheLowerLeft)
{
    const PortWindow<> keepsTheSharedWidget(10, 10);
    for (const Buffering buffering : {Buffering::kSingle, Buffering::kDouble}) {
        for (const bool shownBefore : {false, true}) {
            CornerWindow window(60, 50, buffering);
            if (shownBefore) {
                ASSERT_TRUE(window.show());
            } else {
                window.window().layout()->activate();
            }
            const QSize port = window.port().glWidget()->deviceSize();
            window.port().lineWidth(3);
            window.port().depthFunc(T3dPort::kDepthGreater);
            window.port().depthTest(true);
            window.port().setFogEnabled(true);
            window.before([&] {
                EXPECT_EQ(window.port().stateDifferences().length(), 0u) << "state goes to the pixmap's context";
                window.port().lineWidth(5);
                window.port().depthMask(false);
            });
            GlRecorder recorder;
            recorder.start();
            const QPixmap exact = window.port().renderToPixmap(port.width(), port.height());
            recorder.stop();
            EXPECT_EQ(recorder.count("glXSwapBuffers"), 0);
            EXPECT_EQ(cornerFaults(exact.toImage(), exact.rect(), Qt::magenta), "");

            const QPixmap large = window.port().renderToPixmap(port.width() + 31, port.height() + 17);
            EXPECT_EQ(large.size(), port + QSize(31, 17));
            EXPECT_EQ(cornerFaults(large.toImage(), QRect(QPoint(0, 17), port), Qt::magenta), "");

            const QImage part = window.port().renderToPixmap(9, 8).toImage();
            EXPECT_EQ(part.pixelColor(0, 7), QColor(Qt::red));
            EXPECT_EQ(part.pixelColor(8, 0), QColor(Qt::magenta));

            EXPECT_EQ(window.port().stateDifferences().length(), 0u);
            if (shownBefore) {
                settle();
                EXPECT_EQ(window.faults(), "") << "the window itself is as it was";
            }
        }
    }
}

} // namespace
