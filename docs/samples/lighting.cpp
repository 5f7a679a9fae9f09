// Three lights and a row of materials.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TglLight.h"
#include "foundation/Tangle.h"

#include <cmath>

namespace {

T4dDblMatrix placedAt(double x, double y, double z)
{
    T4dDblMatrix place;
    place[12] = x;
    place[13] = y;
    place[14] = z;
    return place;
}

void turnLightsOn(T3dPort& port)
{
    port.setGlobalAmbient(TportColor(0.25f, 0.25f, 0.28f));
    port.setLightingModel(); // lighting on, and the model that the port was given
    port.disableAllLights();

    port.setLightColor(TportColor(0.50f, 0.50f, 0.48f));
    port.setDefaultLight(0, T4dDblVector(-1, -2, 2)); // from there, in the current matrix

    TglLight lamp(TglLight::kPoint);
    lamp.fColor = TportColor(0.25f, 0.40f, 0.75f);
    lamp.fQuadraticAttenuation = 0.08f;
    TglLight spot(TglLight::kSpot); // shines along its -z
    spot.fColor = TportColor(1.0f, 0.75f, 0.40f);
    spot.fSpotCutoff = 22;
    spot.fSpotExponent = 6;
    port.setCurrentContext(); // lights are placed with OpenGL's matrix: load it first
    lamp.setLight(1, placedAt(-3, 1.5, 1.2));
    spot.setLight(2, placedAt(0.9, 0.2, 4.5));
}

/** Finer than the port's sphere: OpenGL lights corners, and a highlight falls between those of a coarse one. */
void drawBall(T3dPort& port, const T4dDblVector& centre)
{
    port.pushMatrix();
    port.translate(centre);
    port.setCurrentContext();
    for (int i = 0; i < 48; ++i) {
        glBegin(GL_QUAD_STRIP);
        for (int j = 0; j <= 96; ++j) {
            for (int k = 0; k < 2; ++k) {
                const double a = (i + k) * Tangle::kPi / 48;
                const double b = j * Tangle::kPi / 48;
                const T4dDblVector n(std::sin(a) * std::cos(b), std::sin(a) * std::sin(b), std::cos(a));
                glNormal3d(n.x, n.y, n.z);
                glVertex3d(0.75 * n.x, 0.75 * n.y, 0.75 * n.z);
            }
        }
        glEnd();
    }
    port.popMatrix();
}

/** Of small squares, for the same reason. */
void drawFloor(T3dPort& port)
{
    constexpr double kSide = 0.03;
    port.setCurrentContext();
    glNormal3d(0, 0, 1);
    for (int i = -206; i < 206; ++i) {
        glBegin(GL_QUAD_STRIP);
        for (int j = -93; j <= 93; ++j) {
            glVertex3d(i * kSide, j * kSide, -0.76);
            glVertex3d((i + 1) * kSide, j * kSide, -0.76);
        }
        glEnd();
    }
}

void drawMaterials(T3dPort& port)
{
    const TportColor colours[] = {{0.80f, 0.28f, 0.25f},
                                  {0.88f, 0.62f, 0.22f},
                                  {0.35f, 0.62f, 0.40f},
                                  {0.30f, 0.52f, 0.78f},
                                  {0.60f, 0.45f, 0.75f}};
    for (int i = 0; i < 5; ++i) {
        port.setDiffuseColor(colours[i]);
        port.setAmbientMaterialColor(colours[i]);
        const float gloss = 0.2f * static_cast<float>(i);
        port.setSpecularColor(TportColor(gloss, gloss, gloss));
        port.setShininess(8 + 28 * i);
        drawBall(port, T4dDblVector(1.8 * (i - 2), 0, 0));
    }
}

void draw(T3dPort& port)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(24, double(port.portRect().width()) / port.portRect().height(), 1, 40);
    port.polarView(13.5, 0, 62, 0);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    turnLightsOn(port);
    drawMaterials(port);
    port.setSpecularColor(kCblack);
    port.setDiffuseColor(TportColor(0.62f, 0.64f, 0.68f));
    port.setAmbientMaterialColor(TportColor(0.3f, 0.31f, 0.33f));
    drawFloor(port);
    port.disableAllLights();
    port.disableLighting();
}

const Sample sample("lighting", [] { return Sample::drawing(QSize(560, 300), 2, draw); });

} // namespace
