// Two arms of three joints, with their edges.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Tangle.h"

#include <cmath>

namespace {

double radians(double degrees)
{
    return Tangle::fromDegrees(degrees).radians;
}

void drawLink(T3dPort& port, double length)
{
    const float half = static_cast<float>(length / 2);
    port.box(T4dDblPoint(0, 0, half), 0.15f, 0.15f, half, true);
    port.sphere(T4dDblPoint(0, 0, 0), 0.24f, true);
}

void drawArm(T3dPort& port, double shoulder, double elbow, double wrist)
{
    port.pushMatrix();
    port.rotate(0, radians(shoulder), 0);
    drawLink(port, 1.6);
    port.translate(0, 0, 1.6); // from here on relative to the shoulder's link
    port.rotate(0, radians(elbow), 0);
    drawLink(port, 1.3);
    port.translate(0, 0, 1.3);
    port.rotate(0, radians(wrist), 0);
    drawLink(port, 0.3);
    port.cone(T4dDblPoint(0, 0, 0.3), 0.3f, 0.5f, true);
    port.popMatrix();
}

void drawEdged(T3dPort& port, const std::function<void()>& shape)
{
    port.setCurrentContext();
    glEnable(GL_POLYGON_OFFSET_FILL); // the port sets the offset, the switch is OpenGL's
    port.polygonOffsetLower();        // the faces back, so that the lines win
    shape();
    glDisable(GL_POLYGON_OFFSET_FILL);
    port.disableLighting();
    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonLine);
    port.depthMask(false);
    port.depthFunc(T3dPort::kDepthLequal);
    port.color(TportColor(0.10f, 0.13f, 0.16f));
    shape();
    port.depthFunc(T3dPort::kDepthLess);
    port.depthMask(true);
    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonFill);
    port.setLighting(true);
}

// Code that knows nothing of ports.
void otherLibraryDraws()
{
    glLineWidth(6);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDisable(GL_LIGHTING);
    glColor4f(1, 0.75f, 0.3f, 0.7f);
    glBegin(GL_LINE_STRIP);
    for (int i = 0; i <= 48; ++i) {
        const double a = radians(-60 + 2.5 * i);
        glVertex3d(2.9 * std::sin(a), 0, 2.9 * std::cos(a));
    }
    glEnd();
}

void draw(T3dPort& port)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(28, double(port.portRect().width()) / port.portRect().height(), 1, 30);
    port.polarView(9, 15, 72, 0);
    port.translate(0, 0, -1.1);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(1, -2, 2));
    port.lineWidth(2);

    port.setDiffuseColor(TportColor(0.55f, 0.58f, 0.62f));
    port.box(T4dDblPoint(0, 0, -0.25), 1.4f, 0.9f, 0.1f, true);
    port.setDiffuseColor(TportColor(0.35f, 0.60f, 0.80f));
    drawEdged(port, [&] { drawArm(port, 35, 40, 50); });
    port.setDiffuseColor(TportColor(0.90f, 0.55f, 0.20f));
    drawEdged(port, [&] { drawArm(port, -40, 30, -60); });

    port.beginForeignGL(); // port current, matrices loaded
    otherLibraryDraws();
    port.endForeignGL(); // port bound again, all recorded state sent again
    port.disableLighting();
}

const Sample sample("state", [] { return Sample::drawing(QSize(480, 320), 3, draw); });

} // namespace
