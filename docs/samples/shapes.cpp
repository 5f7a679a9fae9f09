// A shelf of solids, and a dial of flat shapes.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "Graphics/glResources/TglPolyStipple.h"
#include "Graphics/glResources/TgluNurbsObject.h"

namespace {

void drawSolids(T3dPort& port, bool filled)
{
    port.box(T4dDblPoint(-3, 1.6, 0), 0.7f, 0.7f, 0.7f, filled);
    port.cone(T4dDblPoint(-1, 1.6, -0.8), 0.8f, 1.7f, filled);
    port.sphere(T4dDblPoint(1, 1.6, 0), 0.85f, filled);
    port.cylinder(T4dDblPoint(3, 1.6, -0.8), 0.7f, 1.6f, filled, true);
    port.octahedron(T4dDblPoint(-3, -1.6, 0), 0.95f, filled);
    port.pushMatrix();
    port.translate(-1.1, -1.6, -0.7);
    port.rotate(0, 0, -0.9); // an edge to the front
    port.tetrahedron(T4dDblPoint(-0.4, -0.4, 0), 1.5f, filled);
    port.popMatrix();
    if (filled)
        port.ring(T4dDblPoint(1, -1.6, -0.6), 0.85f, 0.45f, false);
}

void drawPatch(T3dPort& port, const TgluNurbsObject& surface)
{
    const double knots[] = {0, 0, 0, 0, 1, 1, 1, 1};
    const double heights[4][4] = {{0, 0.5, 0.3, 0}, {0.4, 2.2, -1.4, 0.2}, {0.2, -1.6, 2.0, 0.3}, {0, 0.4, 0.2, 0}};
    double control[8 * 8 * 3] = {}; // a row of as many points as there are knots, of which GLU reads four
    for (int s = 0; s < 4; ++s) {
        for (int t = 0; t < 4; ++t) {
            double* point = control + (s * 8 + t) * 3;
            point[0] = 2.25 + 0.5 * s;
            point[1] = -2.35 + 0.5 * t;
            point[2] = 0.6 * heights[s][t];
        }
    }
    port.setCurrentContext();
    glPushAttrib(GL_ENABLE_BIT | GL_EVAL_BIT | GL_POLYGON_BIT);
    glEnable(GL_AUTO_NORMAL);
    surface.begin();
    surface.nurbsSurface(8, knots, 8, knots, 8 * 3, 3, control, 4, 4, TgluNurbsObject::kVertex3);
    surface.end();
    glPopAttrib();
}

void drawDial(T3dPort& port, double value)
{
    const T4dDblPoint centre(0, 0, 0);
    port.color(TportColor(0.86f, 0.87f, 0.88f));
    port.arc(centre, 1, -120, 120, true); // from +y towards +x
    port.color(TportColor(0.35f, 0.60f, 0.80f));
    port.polygonStipple(TglPolyStipple::kHalftone);
    port.arc(centre, 1, -120, -120 + 240 * value, true);
    port.polygonStipple(TglPolyStipple::kSolid);
    port.color(TportColor(0.20f, 0.24f, 0.28f));
    port.lineWidth(3);
    port.arc(centre, 1, -120, 120, false);
    port.lineStipple(TglLineStipple::kDashed);
    port.circle(centre, 0.62f, false);
    port.lineStipple(TglLineStipple::kSolid);
    port.pushMatrix();
    port.rotate(0, 0, (120 - 240 * value) * 3.14159265 / 180);
    port.rect(-0.03f, 0, 0.03f, 0.9f, true);
    port.popMatrix();
    port.circle(centre, 0.09f, true);
    port.lineWidth(1);
}

void drawShelf(T3dPort& port)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(24, double(port.portRect().width()) / port.portRect().height(), 1, 40);
    port.polarView(15.8, 15, 50, 0);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.setGlobalAmbient(kCwhite);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(-1, -1, 2));
    port.setDiffuseColor(TportColor(0.90f, 0.55f, 0.20f));
    port.setAmbientMaterialColor(TportColor(0.36f, 0.23f, 0.12f));
    drawSolids(port, true);
    port.setDiffuseColor(TportColor(0.35f, 0.60f, 0.80f));
    port.setAmbientMaterialColor(TportColor(0.14f, 0.22f, 0.28f));
    static const TgluNurbsObject surface(TgluNurbsObject::kFill);
    drawPatch(port, surface);
    port.disableLighting();
    port.depthTest(false);
}

void drawDials(T3dPort& port)
{
    port.clearColor(TportColor(0.95f, 0.95f, 0.94f));
    port.clear(GL_COLOR_BUFFER_BIT);
    port.ortho(-1.3, 1.3, -2.6, 2.6);
    for (int i = 0; i < 2; ++i) {
        port.loadIdentity();
        port.translate(0, 1.25 - 2.5 * i, 0);
        drawDial(port, i ? 0.8 : 0.35);
    }
}

const Sample sample("shapes", [] {
    return Sample::sideBySide(
        {Sample::drawing(QSize(440, 300), 3, drawShelf), Sample::drawing(QSize(150, 300), 2, drawDials)});
});

} // namespace
