#include "TmoveManipulator.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TpickBuffer.h"
#include "TsceneGizmos.h"
#include "TsceneLights.h"
#include "foundation/Tline.h"
#include "foundation/Tpoint.h"

#include <cmath>

namespace {

constexpr double kLength = 90;       // of an arrow, in pixels
constexpr float kSquareHalf = 0.09f; // of an arrow
constexpr int kReach = 5;            // of the pointer, in pixels
constexpr TportColor kGrabbedColour{1.0f, 0.93f, 0.42f};
constexpr TportColor kSquareColour{0.62f, 0.86f, 0.92f};

using Thandle = TmoveManipulator::Thandle;

T4dDblVector axis(Thandle handle)
{
    return {handle == TmoveManipulator::kX ? 1.0 : 0.0, handle == TmoveManipulator::kY ? 1.0 : 0.0,
            handle == TmoveManipulator::kZ ? 1.0 : 0.0};
}

} // namespace

void TmoveManipulator::drawHandles(T3dPort& port, const T4dDblPoint& at, double pixelRatio, Thandle grabbed)
{
    T4dDblMatrix view;
    port.getModelViewMatrix(view);
    // The picture's own direction to the right, which nothing foreshortens.
    const T4dDblVector right(view[0], view[4], view[8]);
    const double scale = port.screenLengthScale(kLength * pixelRatio, at, right.normalised());

    port.pushMatrix();
    port.translate(at.x, at.y, at.z);
    port.scale(scale, scale, scale);
    for (const Thandle handle : {kX, kY, kZ}) {
        port.color(handle == grabbed ? kGrabbedColour : TsceneGizmos::axisColour(handle - kX));
        port.loadName(handle);
        port.pushMatrix();
        TsceneGizmos::turnTo(port, handle - kX);
        port.cylinder(T4dDblPoint(0, 0, kSquareHalf), 0.012f, 0.8f, true, false);
        port.cone(T4dDblPoint(0, 0, 0.78), 0.06f, 0.22f, true);
        port.popMatrix();
    }
    port.color(kPlane == grabbed ? kGrabbedColour : kSquareColour);
    port.loadName(kPlane);
    port.alignToCamera();
    port.setCurrentContext();
    glNormal3f(0, 0, 1);
    port.rect(-kSquareHalf, -kSquareHalf, kSquareHalf, kSquareHalf, true);
    port.popMatrix();
}

void TmoveManipulator::draw(T3dPort& port, const T4dDblPoint& at, double pixelRatio, Thandle grabbed)
{
    // In front of everything, and of itself in the right order.
    port.depthMask(true);
    port.clear(GL_DEPTH_BUFFER_BIT);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    TsceneLights::turnOnHeadlight(port);
    port.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, false);
    drawHandles(port, at, pixelRatio, grabbed);
    port.disableColorMaterial(T3dPort::kMaterialDiffuse, false);
    TsceneLights::turnOff(port);
    port.depthTest(false);
}

Thandle TmoveManipulator::handleAt(T3dPort& port, const T4dDblPoint& at, double pixelRatio, const Tpoint& pixel)
{
    port.fSelectRect = port.makeSelectRect(pixel, static_cast<unsigned short>(std::lround(kReach * pixelRatio)));
    if (port.fSelectRect.isEmpty())
        return kNone;
    port.beginSelect(nullptr, 0);
    port.pushName(kNone);
    drawHandles(port, at, pixelRatio, kNone);
    port.popName();
    const int hits = port.endSelect();
    const TpickBuffer records(T3dPort::kSelectBufferSize, T3dPort::fsSelectBuffer);
    unsigned depth = 0;
    unsigned count = 0;
    unsigned priority = 0;
    const unsigned* names = records.closestElem(hits, kPlane, depth, count, priority);
    return names && names[0] <= kPlane ? static_cast<Thandle>(names[0]) : kNone;
}

void TmoveManipulator::grab(const T3dPort& port, Thandle handle, const T4dDblPoint& at, const Tpoint& pixel)
{
    T4dDblMatrix view;
    port.getModelViewMatrix(view);
    fHandle = handle;
    fAt = at;
    fToEye = T4dDblVector(view[2], view[6], view[10]).normalised();
    if (!find(port, pixel, fStart))
        fHandle = kNone;
}

T4dDblVector TmoveManipulator::moved(const T3dPort& port, const Tpoint& pixel) const
{
    T4dDblPoint now;
    return fHandle != kNone && find(port, pixel, now) ? now - fStart : T4dDblVector();
}

bool TmoveManipulator::find(const T3dPort& port, const Tpoint& pixel, T4dDblPoint& found) const
{
    constexpr double kLeastSine = 0.02; // nearer to the line of sight, a pixel is too far along the axis
    Tline ray;
    port.portToWorld(pixel, ray.point, ray.direction);
    if (fHandle == kPlane) {
        const double slope = ray.direction.dot(fToEye);
        if (std::fabs(slope) < kLeastSine)
            return false;
        found = ray.point + ray.direction * ((fAt - ray.point).dot(fToEye) / slope);
        return true;
    }
    const Tline line{fAt, axis(fHandle)};
    if (ray.direction.cross(line.direction).length() < kLeastSine)
        return false;
    found = line.closestPoint(ray);
    return true;
}
