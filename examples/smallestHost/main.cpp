// The smallest host: a window with one port in it, and the command that draws it.

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Taction.h"
#include "foundation/TresourceMap.h"

#include <QApplication>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(480, 360);
    QVBoxLayout layout(&window);
    layout.setContentsMargins(0, 0, 0, 0);

    TresourceMap::Set("view", "saFrameBufferMode", "double");
    T3dPort port(&window, "view", false);
    if (!port.isOpen())
        return 1; // no display with GLX
    layout.addWidget(port.qControl());

    TfunctionAction draw([&](const Tevent&) {
        const TportRect& r = port.portRect();
        port.clearColor(TportColor(0.12f, 0.14f, 0.17f, 1));
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port.perspective(40, double(r.width()) / r.height(), 0.1, 100);
        port.loadIdentity();
        port.translate(0, 0, -3);
        port.rotate(0.4, 0.6, 0);
        port.color(TportColor(0.95f, 0.6f, 0.2f, 1));
        port.setCurrentContext(); // loads what of the matrices OpenGL does not have yet
        glBegin(GL_TRIANGLES);
        glVertex3d(-1, -0.7, 0);
        glVertex3d(1, -0.7, 0);
        glVertex3d(0, 1, 0);
        glEnd();
        port.swapBuffers();
        return true;
    });
    port.setUpdateCommand(&draw);

    window.show();
    return application.exec();
}
