// A window with a port in it; a drag turns what is drawn.

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/TresourceMap.h"

#include <QApplication>
#include <QVBoxLayout>
#include <QWidget>

namespace {

double gAzimuth = 30; // degrees

void draw(T3dPort& port)
{
    const TportRect& r = port.portRect();
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(30, double(r.width()) / r.height(), 0.1, 100);
    port.polarView(7, gAzimuth, 65, 0);
    port.translate(0, 0, -0.5);

    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.setGlobalAmbient(kCwhite);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(1, -1, 2));
    port.setDiffuseColor(TportColor(0.90f, 0.55f, 0.20f));
    port.box(T4dDblPoint(0, 0, 0), 1, 1, 0.3f, true);
    port.setDiffuseColor(TportColor(0.35f, 0.60f, 0.80f));
    port.sphere(T4dDblPoint(0, 0, 0.95), 0.65f, true);
    port.disableLighting();
    port.swapBuffers();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(480, 360);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);

    TresourceMap::Set("view", "saFrameBufferMode", "double");
    T3dPort port(&window, "view", false);
    if (!port.isOpen())
        return 1; // no display with OpenGL
    layout->addWidget(port.qControl());

    int lastX = 0;
    TfunctionAction update([&](const Tevent&) { draw(port); });
    TfunctionAction press([&](const Tevent& event) { lastX = event.getLocalPosition().x; });
    TfunctionAction drag([&](const Tevent& event) {
        gAzimuth -= 0.5 * (event.getLocalPosition().x - lastX);
        lastX = event.getLocalPosition().x;
        port.glWidget()->update();
    });
    port.setUpdateCommand(&update);
    port.setPressCommand(&press);
    port.setDragCommand(&drag);

    window.show();
    return application.exec();
}
