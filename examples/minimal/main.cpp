// The smallest host: a window with one port in it, and the command that draws it.
//   minimal                      shows a winding staircase
//   minimal --snapshot FILE.png  keeps a picture of it and ends

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Taction.h"
#include "foundation/TpixelMap.h"
#include "foundation/TresourceMap.h"

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

namespace {

void drawStairs(T3dPort& port)
{
    constexpr int steps = 36;
    constexpr double rise = 0.11;
    port.cylinder({0, 0, 0}, 0.22f, float(steps * rise + 0.4), true, true);
    for (int i = 0; i < steps; ++i) {
        const QColor hue = QColor::fromHsvF(double(i) / steps, 0.65, 0.95);
        port.color(TportColor(float(hue.redF()), float(hue.greenF()), float(hue.blueF()), 1));
        port.pushMatrix();
        port.rotate(0, 0, i * 0.27);
        port.box({0.85, 0, (i + 0.5) * rise}, 0.6f, 0.19f, 0.05f, true);
        port.sphere({1.35, 0, (i + 0.5) * rise + 0.17}, 0.09f, true);
        port.popMatrix();
    }
}

void draw(T3dPort& port)
{
    const TportRect& r = port.portRect();
    port.clearColor(TportColor(0.11f, 0.13f, 0.17f, 1));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.depthTest(true);
    port.perspective(32, double(r.width()) / r.height(), 0.1, 100);
    port.matrixMode(GL_MODELVIEW);
    port.loadIdentity();
    port.setDefaultLight(0, {0.3, 0.5, 0.8}); // from the eye's right, above
    port.setLightingModel();
    port.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, false);
    port.translate(0, 0, -8.6);
    port.rotate(-1.1, 0, 0); // z is up
    port.translate(0, 0, -2.1);
    port.color(TportColor(0.85f, 0.86f, 0.9f, 1));
    drawStairs(port);
    port.disableColorMaterial(T3dPort::kMaterialDiffuse, false);
    port.disableLighting();
    port.swapBuffers();
}

bool savePicture(T3dPort& port, const QString& file)
{
    TpixelMap pixels; // blue first, the bottom row first
    port.setSnapShotRect(port.portRect());
    return port.snapShot(pixels) &&
           QImage(pixels.pixels(), pixels.width(), pixels.height(), QImage::Format_RGB32).mirrored().save(file);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(480, 480);
    QVBoxLayout layout(&window);
    layout.setContentsMargins(0, 0, 0, 0);

    TresourceMap::Set("view", "saFrameBufferMode", "double");
    T3dPort port(&window, "view", false);
    if (!port.isOpen())
        return 1; // no display with GLX
    layout.addWidget(port.qControl());

    TfunctionAction update([&](const Tevent&) { draw(port); });
    port.setUpdateCommand(&update);
    window.show();

    const QStringList arguments = application.arguments();
    if (arguments.size() == 3 && arguments[1] == "--snapshot")
        QTimer::singleShot(300, &window, [&] { QApplication::exit(savePicture(port, arguments[2]) ? 0 : 1); });
    return QApplication::exec();
}
