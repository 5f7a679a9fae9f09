#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include <QPixmap>

#include "foundation/Tevent.h"

#include <gtest/gtest.h>

namespace {

constexpr QRgb kBackground = 0xFF204060;
constexpr QRgb kQuad = 0xFFFF8000;
constexpr QRgb kCorner = 0xFF00FF00;

TportColor portColor(QRgb c)
{
    return TportColor(float(qRed(c)) / 255, float(qGreen(c)) / 255, float(qBlue(c)) / 255, 1);
}

/**
 * Half of the port in x, and a quarter in y, counted from its lower left corner: a quad of [-1, 1] that is rotated by a
 * right angle, scaled and moved, on a background; and a small viewport of its own in the upper right corner.
 */
void drawScene(T3dPort& port)
{
    const TportRect& r = port.portRect();
    port.clearColor(portColor(kBackground));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.ortho(0, r.width(), 0, r.height());
    port.loadIdentity();
    port.pushMatrix();
    port.translate(r.width() / 4.0, r.height() / 8.0, 0);
    port.scale(r.width() / 4.0, r.height() / 8.0, 1);
    port.rotate(0, 0, 1.5707963267948966);
    port.color(portColor(kQuad));
    port.setCurrentContext();
    glRectd(-1, -1, 1, 1);
    port.popMatrix();

    port.pushViewport(TportRect(short(r.width() - 10), short(r.height() - 10), r.width(), r.height()));
    port.color(portColor(kCorner));
    port.setCurrentContext();
    glRectd(0, 0, r.width(), r.height());
    port.popViewport();
    port.swapBuffers();
}

/** Compares with what drawScene leaves on a port of @p port pixels at the lower left of the image. */
testing::AssertionResult isScene(const QImage& image, const QSize& port)
{
    if (image.isNull())
        return testing::AssertionFailure() << "no image";
    for (int y = 0; y < port.height(); ++y) {
        for (int x = 0; x < port.width(); ++x) {
            const int row = image.height() - 1 - y;
            const bool inQuad = x < port.width() / 2 && y < port.height() / 4;
            const bool inCorner = x >= port.width() - 10 && y >= port.height() - 10;
            const QRgb wanted = inCorner ? kCorner : inQuad ? kQuad : kBackground;
            const QRgb got = image.pixel(x, row);
            if (std::abs(qRed(got) - qRed(wanted)) > 1 || std::abs(qGreen(got) - qGreen(wanted)) > 1 ||
                std::abs(qBlue(got) - qBlue(wanted)) > 1)
                return testing::AssertionFailure()
                       << "at " << x << "," << y << " from below: " << std::hex << got << ", wanted " << wanted;
        }
    }
    return testing::AssertionSuccess();
}

class PortOnScreen : public testing::TestWithParam<Buffering>
{
};

} // namespace

TEST_P(PortOnScreen, LandsInWindowAndPixmapWhereItShould)
{
    PortWindow<> made(120, 80, GetParam());
    T3dPort& port = made.port();
    TfunctionAction draw([&](const Tevent&) { drawScene(port); });
    port.setUpdateCommand(&draw);
    ASSERT_TRUE(made.show());
    // The first drawing after a size change fills the new size.
    const auto resizeAndCheck = [&](const QSize& size) {
        made.window().resize(size);
        const TportRect wanted(0, 0, short(size.width()), short(size.height()));
        ASSERT_TRUE(waitUntil([&] { return port.portRect() == wanted; }));
        EXPECT_TRUE(isScene(shownPixels(port), size)) << size.width() << " x " << size.height();
    };
    for (const QSize size : {QSize(200, 60), QSize(64, 160), QSize(120, 80)})
        resizeAndCheck(size);
    settle();
    PortWindow<> other(50, 50);
    other.port().setCurrentContext();
    EXPECT_TRUE(isScene(port.renderToPixmap(150, 100).toImage(), QSize(120, 80)));
    EXPECT_EQ(port.renderToPixmap(30, 12).toImage().pixel(15, 6), kQuad);
    for (const QSize none : {QSize(0, 10), QSize(10, 0), QSize(-1, -1)})
        EXPECT_TRUE(port.renderToPixmap(none.width(), none.height()).isNull());
    EXPECT_TRUE(isScene(shownPixels(port), QSize(120, 80))) << "is as it was";
    EXPECT_EQ(port.stateDifferences().length(), 0u);
    EXPECT_EQ(other.port().stateDifferences().length(), 0u);
    // Also when contexts were switched since the last frame.
    resizeAndCheck(QSize(200, 60));
}

INSTANTIATE_TEST_SUITE_P(Buffers, PortOnScreen, testing::Values(Buffering::kSingle, Buffering::kDouble),
                         [](const auto& info) { return info.param == Buffering::kSingle ? "Single" : "Double"; });
