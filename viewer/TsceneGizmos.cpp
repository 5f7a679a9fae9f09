#include "TsceneGizmos.h"

#include "Graphics/3dPort/T3dPort.h"
#include "TsavedState.h"
#include "TsceneLights.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Tangle.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr TportColor kBulbColour{1.0f, 0.93f, 0.66f};
constexpr TportColor kSocketColour{0.55f, 0.58f, 0.62f};
constexpr TportColor kBeamColour{0.62f, 0.62f, 0.55f};

void drawArrow(T3dPort& port)
{
    port.cylinder(T4dDblPoint(0, 0, 0), 0.05f, 0.62f, true, false);
    port.cone(T4dDblPoint(0, 0, 0.6), 0.15f, 0.4f, true);
}

/** The letter of @p axis around a place in the picture. */
void drawLetter(int axis, double x, double y, double size)
{
    struct Tstroke
    {
        double fX1, fY1, fX2, fY2;
    };
    static constexpr Tstroke kNoStroke{0, 0, 0, 0};
    static constexpr Tstroke kLetters[3][3] = {
        {{-0.7, -1, 0.7, 1}, {-0.7, 1, 0.7, -1}, kNoStroke},
        {{0, -1, 0, 0}, {0, 0, -0.7, 1}, {0, 0, 0.7, 1}},
        {{-0.7, 1, 0.7, 1}, {0.7, 1, -0.7, -1}, {-0.7, -1, 0.7, -1}},
    };
    glBegin(GL_LINES);
    for (const Tstroke& stroke : kLetters[axis]) {
        glVertex3d(x + stroke.fX1 * size, y + stroke.fY1 * size, 1.5);
        glVertex3d(x + stroke.fX2 * size, y + stroke.fY2 * size, 1.5);
    }
    glEnd();
}

} // namespace

TportColor TsceneGizmos::axisColour(int index)
{
    const float* c = kAxisColours[index];
    return {c[0], c[1], c[2]};
}

void TsceneGizmos::turnTo(T3dPort& port, int index)
{
    if (index == 0)
        port.rotate(0, Tangle::kPi / 2, 0);
    else if (index == 1)
        port.rotate(-Tangle::kPi / 2, 0, 0);
}

void TsceneGizmos::drawAxes(T3dPort& port, const TviewCamera& camera, double pixelRatio)
{
    constexpr double kSide = 84;
    constexpr double kRange = 1.4;
    const TportRect whole = port.portRect();
    const auto side = static_cast<short>(std::min({kSide * pixelRatio, whole.width() / 3.0, whole.height() / 3.0}));
    if (side < 24)
        return;

    const auto edge = static_cast<short>(4 * pixelRatio);
    const TportRect corner(edge, edge, static_cast<short>(edge + side), static_cast<short>(edge + side));
    port.pushViewport(corner);
    // Whatever the scene has in this corner is behind the axes.
    port.scissor(corner, true);
    port.clear(GL_DEPTH_BUFFER_BIT);
    port.scissor(whole, false);
    port.ortho(-kRange, kRange, -kRange, kRange, -2, 2);
    port.matrixMode(GL_MODELVIEW);
    const T4dDblMatrix m = camera.orientation();
    port.loadMatrix(m);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);

    TsceneLights::turnOnHeadlight(port);
    port.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, false);
    for (int axis = 0; axis < 3; ++axis) {
        port.color(axisColour(axis));
        port.pushMatrix();
        turnTo(port, axis);
        drawArrow(port);
        port.popMatrix();
    }
    port.color(kSocketColour);
    port.sphere(T4dDblPoint(0, 0, 0), 0.1f, true);
    port.disableColorMaterial(T3dPort::kMaterialDiffuse, false);
    TsceneLights::turnOff(port);

    port.loadIdentity();
    port.depthTest(false);
    port.lineWidth(static_cast<float>(1.5 * pixelRatio));
    port.lineSmoothing(true);
    for (int axis = 0; axis < 3; ++axis) {
        const double x = m[4 * axis];
        const double y = m[4 * axis + 1];
        const double length = std::hypot(x, y);
        if (length < 0.3)
            continue;
        const double out = 1 + 0.22 / length;
        port.color(axisColour(axis));
        port.setCurrentContext();
        drawLetter(axis, x * out, y * out, 0.11);
    }
    port.lineSmoothing(false);
    port.lineWidth(1);
    port.popViewport();
}

void TsceneGizmos::drawLamp(T3dPort& port, const TviewCamera& camera, double pixelRatio)
{
    constexpr int kRays = 12;
    constexpr double kRadius = 0.06;
    const T4dDblVector at = TsceneLights::lampPlace();
    port.lineWidth(static_cast<float>(pixelRatio));
    port.color(kBeamColour);
    port.lineStipple(TglLineStipple::kShortDotted);
    port.setCurrentContext();
    glBegin(GL_LINES);
    glVertex3d(at.x, at.y, at.z);
    glVertex3d(0, 0, 0);
    glEnd();
    port.lineStipple(TglLineStipple::kSolid);

    port.pushMatrix();
    port.translate(at);
    port.color(kSocketColour);
    port.pushMatrix();
    turnTo(port, 1);
    port.cylinder(T4dDblPoint(0, 0, 0.7 * kRadius), 0.5f * kRadius, 0.9f * kRadius, true, true);
    port.popMatrix();
    port.color(kBulbColour);
    port.sphere(T4dDblPoint(0, 0, 0), kRadius, true);
    // The rays lie in the picture's plane, wherever one looks from.
    port.multMatrix(camera.orientation().invert());
    port.lineSmoothing(true);
    for (int ray = 0; ray < kRays; ++ray) {
        port.line(1.5f * kRadius, 0, (ray % 2 ? 2.0f : 2.5f) * kRadius, 0);
        port.rotate(0, 0, static_cast<float>(2 * Tangle::kPi / kRays));
    }
    port.lineSmoothing(false);
    port.popMatrix();
    port.lineWidth(1);
}
