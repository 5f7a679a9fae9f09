#pragma once

#include "foundation/T4dDblMatrix.h"
#include "foundation/T4dDblVector.h"
#include "foundation/TportRect.h"

/**
 * The part of world space that is seen in a region of a picture: between four planes, in front of the eye. Tells quickly
 * what can't be seen there; what it lets pass may still lie outside, by the corners.
 */
class TpickVolume
{
public:
    /** @param region  in pixels, as @p viewport; both not empty */
    TpickVolume(const T4dDblMatrix& worldToClip, const TportRect& viewport, const TportRect& region);

    /** The same volume as seen by what was moved by @p offset. */
    TpickVolume movedFor(const T4dDblVector& offset) const;

    bool missesSphere(const T4dDblVector& centre, double radius) const
    {
        for (const Tplane& plane : fPlanes) {
            if (plane.distance(centre.x, centre.y, centre.z) < -radius)
                return true;
        }
        return false;
    }
    bool missesPoint(const float* p) const { return missesSphere({p[0], p[1], p[2]}, fSlack); }
    bool missesTriangle(const float* a, const float* b, const float* c) const
    {
        for (const Tplane& plane : fPlanes) {
            if (plane.distance(a[0], a[1], a[2]) < -fSlack && plane.distance(b[0], b[1], b[2]) < -fSlack &&
                plane.distance(c[0], c[1], c[2]) < -fSlack)
                return true;
        }
        return false;
    }

private:
    /** The inner side is positive; the normal has unit length. */
    struct Tplane
    {
        double x, y, z, d;

        double distance(double px, double py, double pz) const { return x * px + y * py + z * pz + d; }
    };

    Tplane fPlanes[5];
    double fSlack = 1e-6; ///< OpenGL clips with floats
};
