#include "TviewCamera.h"

#include "foundation/Tangle.h"
#include "foundation/Tquaternion.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kHalfPi = Tangle::kPi / 2;
constexpr double kSlope = 0.3153; // tan of half of 35 degrees
constexpr double kMargin = 1.08;
constexpr double kNearestPart = 0.005; // of the distance; keeps the depth buffer fine enough
constexpr double kSmallestAspect = 1e-3;

/** The slope of the picture's upper edge. */
double slopeY(double aspect)
{
    return kSlope / std::clamp(aspect, kSmallestAspect, 1.0);
}

} // namespace

TviewCamera::TviewCamera(Tprojection projection) : fProjection(projection)
{
    switch (projection) {
    case kPerspective:
        fAzimuth = Tangle::fromDegrees(35).radians;
        fElevation = Tangle::fromDegrees(22).radians;
        break;
    case kTop:
        fElevation = kHalfPi;
        break;
    case kFront:
        break;
    case kSide:
        fAzimuth = kHalfPi;
        break;
    }
}

const char* TviewCamera::nameOf(Tprojection projection)
{
    switch (projection) {
    case kPerspective:
        return "perspective";
    case kTop:
        return "top";
    case kFront:
        return "front";
    case kSide:
        return "side";
    }
    return "";
}

T4dDblVector TviewCamera::eye() const
{
    const T4dDblMatrix m = orientation();
    return fCentre + T4dDblVector(m[2], m[6], m[10]) * fDistance;
}

void TviewCamera::tumble(double azimuth, double elevation)
{
    if (!isPerspective() || !std::isfinite(azimuth) || !std::isfinite(elevation))
        return;
    fAzimuth = std::remainder(fAzimuth + azimuth, 2 * Tangle::kPi);
    fElevation = std::clamp(fElevation + elevation, -kHalfPi, kHalfPi);
}

void TviewCamera::track(double right, double up, double aspect)
{
    if (!std::isfinite(right) || !std::isfinite(up))
        return;
    const double height = 2 * halfHeight(aspect);
    const T4dDblMatrix m = orientation();
    fCentre += T4dDblVector(m[0], m[4], m[8]) * (right * height) + T4dDblVector(m[1], m[5], m[9]) * (up * height);
    for (double* each : {&fCentre.x, &fCentre.y, &fCentre.z})
        *each = std::clamp(*each, -kMaxDistance, kMaxDistance);
}

void TviewCamera::dolly(double factor)
{
    if (factor > 0)
        fDistance = std::clamp(fDistance * factor, kMinDistance, kMaxDistance);
}

void TviewCamera::frame(const T4dDblVector& lower, const T4dDblVector& upper, double aspect)
{
    fCentre = (lower + upper) * 0.5;
    const T4dDblMatrix m = orientation();
    const double y = slopeY(aspect);
    const double x = y * std::max(aspect, kSmallestAspect);
    double distance = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const T4dDblVector at(corner & 1 ? upper.x : lower.x, corner & 2 ? upper.y : lower.y,
                              corner & 4 ? upper.z : lower.z);
        const T4dDblVector seen = (at - fCentre) * m;
        const double depth = isPerspective() ? seen.z : 0;
        distance = std::max({distance, depth + std::fabs(seen.x) / x, depth + std::fabs(seen.y) / y});
    }
    fDistance = std::clamp(distance * kMargin, kMinDistance, kMaxDistance);
}

T4dDblMatrix TviewCamera::orientation() const
{
    const T4dDblMatrix heading = Tquaternion::fromAxisAngle({0, 1, 0}, -fAzimuth);
    const T4dDblMatrix pitch = Tquaternion::fromAxisAngle({1, 0, 0}, fElevation);
    return heading * pitch;
}

T4dDblMatrix TviewCamera::view() const
{
    T4dDblMatrix m = orientation();
    const T4dDblVector moved = -fCentre * m;
    m[12] = moved.x;
    m[13] = moved.y;
    m[14] = moved.z - fDistance;
    return m;
}

double TviewCamera::fovy(double aspect) const
{
    return 2 * Tangle{std::atan(slopeY(aspect))}.degrees();
}

double TviewCamera::halfHeight(double aspect) const
{
    return fDistance * slopeY(aspect);
}

void TviewCamera::depths(double radius, double& zNear, double& zFar) const
{
    const double middle = -view()[14];
    zNear = middle - radius;
    zFar = middle + radius;
    if (isPerspective()) {
        zNear = std::max(zNear, fDistance * kNearestPart);
        zFar = std::max(zFar, 2 * zNear);
    }
}
