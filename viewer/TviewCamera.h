#pragma once

#include "foundation/T4dDblMatrix.h"
#include "foundation/T4dDblVector.h"

/**
 * The camera of a view: it looks from a distance at a centre of interest. An orthographic one shows what a perspective
 * one would show in the plane through the centre. Y is up.
 */
class TviewCamera
{
public:
    enum Tprojection { kPerspective, kTop, kFront, kSide };

    /** Nearest and farthest the camera goes, in scene units. */
    static constexpr double kMinDistance = 0.02;
    static constexpr double kMaxDistance = 500;

    explicit TviewCamera(Tprojection projection);

    /** "perspective", "top", "front" or "side". */
    static const char* nameOf(Tprojection projection);

    Tprojection projection() const { return fProjection; }
    bool isPerspective() const { return fProjection == kPerspective; }
    const T4dDblVector& centre() const { return fCentre; }
    double distance() const { return fDistance; }
    T4dDblVector eye() const;

    /** Orbits about the centre, angles in radians; up to straight above and below. Orthographic cameras stay. */
    void tumble(double azimuth, double elevation);
    /** Moves camera and centre in the picture's plane, in heights of the picture. */
    void track(double right, double up, double aspect);
    /** Multiplies the distance, and with it what an orthographic camera shows. Ignores what is not positive. */
    void dolly(double factor);
    /** Shows the whole box: its centre becomes the centre of interest, the direction stays. */
    void frame(const T4dDblVector& lower, const T4dDblVector& upper, double aspect);

    /** World to camera: right, up and backward are x, y and z. */
    T4dDblMatrix orientation() const;
    /** The model-view matrix. */
    T4dDblMatrix view() const;

    /** Whole view angle in y, in degrees. In a picture higher than wide the one in x stays as it would be in a square.
     */
    double fovy(double aspect) const;
    /** Half the height shown in the plane through the centre. */
    double halfHeight(double aspect) const;
    /** The depth range that holds the sphere of @p radius about the origin; for an orthographic camera all of it. */
    void depths(double radius, double& zNear, double& zFar) const;

private:
    Tprojection fProjection;
    T4dDblVector fCentre;
    double fAzimuth = 0;
    double fElevation = 0;
    double fDistance = 4;
};
