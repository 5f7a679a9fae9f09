// Two ports, one list.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "foundation/Taction.h"
#include "foundation/Tangle.h"
#include "foundation/TerrorHandler.h"

#include <QWidget>

#include <cmath>
#include <cstdio>

namespace {

void drawKnot(T3dPort& port)
{
    port.setCurrentContext();
    for (int i = 0; i < 240; ++i) {
        glBegin(GL_QUAD_STRIP);
        for (int j = 0; j <= 18; ++j) {
            for (int k = 0; k < 2; ++k) {
                const double t = (i + k) * Tangle::kPi / 120;
                const double a = j * Tangle::kPi / 9;
                const double r = 1 + 0.3 * std::cos(3 * t);
                const T4dDblVector middle(r * std::cos(2 * t), r * std::sin(2 * t), 0.3 * std::sin(3 * t));
                const T4dDblVector out = T4dDblVector(std::cos(2 * t), std::sin(2 * t), 0) * std::cos(a) +
                                         T4dDblVector(0, 0, 1) * std::sin(a);
                const T4dDblVector at = middle + out * 0.16;
                glNormal3d(out.x, out.y, out.z);
                glVertex3d(at.x, at.y, at.z);
            }
        }
        glEnd();
    }
}

void look(T3dPort& port, const TportColor& background)
{
    port.clearColor(background);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(26, double(port.portRect().width()) / port.portRect().height(), 1, 20);
    port.polarView(6.4, 20, 50, 0);
    port.depthTest(true);
}

QImage run()
{
    const auto listening = TerrorHandler::subscribe([](TerrorHandler::Tseverity, const Tstring& message) {
        std::fprintf(stderr, "reported: %s\n", message.asChar());
    });
    QWidget window;
    T3dPort shaded(&window, "shaded", false);
    T3dPort wire(&window, "wire", false);

    TglDisplayList knot;
    shaded.newList(knot, T3dPort::kCompile);
    drawKnot(shaded);
    shaded.endList();

    TfunctionAction drawShaded([&](const Tevent&) {
        look(shaded, TportColor(0.17f, 0.19f, 0.21f));
        shaded.shadeModel(T3dPort::kShadeSmooth);
        shaded.setLightingModel();
        shaded.setDefaultLight(0, T4dDblVector(1, -1, 2));
        shaded.setDiffuseColor(TportColor(0.90f, 0.55f, 0.20f));
        shaded.setCurrentContext();
        knot.call();
        shaded.disableLighting();
        shaded.swapBuffers();
    });
    TfunctionAction drawWire([&](const Tevent&) {
        look(wire, TportColor(0.95f, 0.95f, 0.94f));
        wire.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonLine);
        wire.color(TportColor(0.15f, 0.30f, 0.45f));
        wire.setCurrentContext();
        knot.call();
        wire.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonFill);
        wire.swapBuffers();
    });
    shaded.setUpdateCommand(&drawShaded);
    wire.setUpdateCommand(&drawWire);
    return Sample::sideBySide({Sample::picture(shaded, QSize(270, 210), 3), Sample::picture(wire, QSize(270, 210), 3)});
}

const Sample sample("concepts", run);

} // namespace
