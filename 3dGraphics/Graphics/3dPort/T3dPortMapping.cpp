// Coordinate mapping and clipping.

#include "Graphics/3dPort/T3dPort.h"

#include "foundation/T4dDblVector.h"
#include "foundation/Tevent.h"
#include "foundation/Tline.h"

#include <algorithm>

namespace {

constexpr short kClipPlanes = 6;
constexpr double kNoLengthSquared = 1e-20;
constexpr double kLeastScale = 1e-10;

/** Towards zero, and to the nearest pixel position that there is. */
short pixelPosition(double v)
{
    constexpr double kLeast = std::numeric_limits<short>::min();
    constexpr double kMost = std::numeric_limits<short>::max();
    return std::isnan(v) ? short(0) : static_cast<short>(std::clamp(v, kLeast, kMost));
}

} // namespace

void T3dPort::updateViewportScale() const
{
    fViewportScale = TviewportScale(*fViewport);
}

int T3dPort::worldToPort(const T4dDblPoint& a, const T4dDblPoint& b, T4dDblPoint& outA, T4dDblPoint& outB) const
{
    T4dDblPoint ca = a * transform();
    T4dDblPoint cb = b * transform();
    for (short plane = 0; plane < kClipPlanes; ++plane) {
        const bool outsideA = isPointOutside(plane, ca);
        if (isPointOutside(plane, cb)) {
            if (outsideA)
                return -1;
            cb = intersection(plane, ca, cb);
        } else if (outsideA) {
            ca = intersection(plane, ca, cb);
        }
    }
    outA = scaleToPort(ca);
    outB = scaleToPort(cb);
    return 0;
}

bool T3dPort::isPointOutside(short plane, const T4dDblPoint& c) const
{
    switch (plane) {
    case 0:
        return c.y > c.w;
    case 1:
        return -c.w > c.y;
    case 2:
        return -c.w > c.x;
    case 3:
        return c.x > c.w;
    case 4:
        return c.z > c.w;
    case 5:
        return -c.w > c.z;
    default:
        return false;
    }
}

T4dDblPoint T3dPort::intersection(short plane, const T4dDblPoint& a, const T4dDblPoint& b) const
{
    const T4dDblPoint d(b.x - a.x, b.y - a.y, b.z - a.z, b.w - a.w);
    double t = 0;
    switch (plane) {
    case 0:
        t = (a.w - a.y) / (d.y - d.w);
        break;
    case 1:
        t = (-a.w - a.y) / (d.y + d.w);
        break;
    case 2:
        t = (-a.w - a.x) / (d.x + d.w);
        break;
    case 3:
        t = (a.w - a.x) / (d.x - d.w);
        break;
    case 4:
        t = (a.w - a.z) / (d.z - d.w);
        break;
    case 5:
        t = (-a.w - a.z) / (d.z + d.w);
        break;
    default:
        break;
    }
    return {a.x + t * d.x, a.y + t * d.y, a.z + t * d.z, a.w + t * d.w};
}

T4dDblPoint T3dPort::worldToDepth(const T4dDblPoint& p, double depth) const
{
    const T4dDblPoint c = p * transform();
    if (std::abs(c.w) <= TviewportScale::kLeastW)
        return p;
    return (T4dDblPoint(c.x / c.w, c.y / c.w, 2 * depth - 1) * inverseTransform()).cartesian();
}

Tpoint T3dPort::windowToPort(const Tpoint& p) const
{
    return Tpoint{p.x, static_cast<short>(fPortRect.height() - p.y)};
}

Tpoint T3dPort::portToWindow(const Tpoint& p) const
{
    return windowToPort(p);
}

void T3dPort::adjustEventLocalPosition(Tevent& event) const
{
    event.setLocalPosition(windowToPort(event.getLocalPosition(1)), 1);
}

double T3dPort::screenLengthScale(double pixels, const T4dDblPoint& p, const T4dDblVector& v) const
{
    if (v.lengthSquared() <= kNoLengthSquared)
        return 1.0;
    T4dDblPoint start;
    T4dDblPoint end;
    worldToPort(p, start);
    worldToPort(p + v, end);
    const T4dDblVector step = end - start;
    // A vector along the view direction changes the depth alone, and covers no pixels.
    if (step.x * step.x + step.y * step.y <= kNoLengthSquared)
        return 1.0;
    const T4dDblPoint reached = start + step.normalised() * pixels;

    Tline ray;
    portToWorld(Tpoint{pixelPosition(reached.x), pixelPosition(reached.y)}, ray.point, ray.direction);
    const T4dDblVector covered = ray.closestPoint(Tline{p, v}) - p;
    const double scale = covered.length() / v.length();
    return scale <= kLeastScale ? double(1e-5f) : scale;
}

void T3dPort::align(const T4dDblVector& up, const T4dDblVector& dir, const T4dDblPoint& origin)
{
    const T4dDblVector z = dir.normalised();
    const T4dDblVector x = up.cross(z).normalised();
    const T4dDblVector y = z.cross(x).normalised();
    const double frame[16] = {x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, origin.x, origin.y, origin.z, 1};
    multMatrix(T4dDblMatrix(frame));
}

void T3dPort::alignToCamera()
{
    const T4dDblMatrix toFrame = matrix().invert();
    const T4dDblVector toEye = T4dDblPoint::origin * toFrame - T4dDblPoint::origin;
    align(T4dDblVector(0, 1, 0) * toFrame, toEye, T4dDblPoint::origin);
}
