#pragma once

#include "Graphics/glResources/TglDisplayList.h"
#include "foundation/T4dDblMatrix.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"
#include "foundation/Tquaternion.h"

#include <GL/gl.h>

/** What the flat and the solid shapes of a port are made with. */
namespace TunitShapes {

/** The steps that circles are walked in, radians. */
constexpr double k6Degrees = 0.10471975511965977;
constexpr double k24Degrees = 0.41887902047863906;
constexpr double k36Degrees = 0.6283185307179586;

/** The points of every unit circle. */
constexpr int kCirclePoints = 60;

inline T4dDblMatrix rotation(double radians, const T4dDblVector& axis)
{
    return static_cast<T4dDblMatrix>(Tquaternion::fromAxisAngle(axis, radians));
}

/** About +z: positive angles turn +y towards -x. */
inline T4dDblMatrix rotationAboutZ(double radians)
{
    return rotation(radians, T4dDblVector{0, 0, 1});
}

/** Fills @p points with @p start turned about z again and again, each point from the one before. */
template <int count> void turn(T4dDblPoint (&points)[count], const T4dDblPoint& start, double step)
{
    const T4dDblMatrix rotation = rotationAboutZ(step);
    points[0] = start;
    for (int i = 1; i < count; ++i)
        points[i] = points[i - 1] * rotation;
}

/** The 60 points of the unit circle, from (0, 1) on. */
inline const T4dDblPoint (&circlePoints())[kCirclePoints]
{
    struct Circle
    {
        Circle() { turn(fPoints, T4dDblPoint{0, 1, 0, 1}, k6Degrees); }
        T4dDblPoint fPoints[kCirclePoints];
    };
    static const Circle circle;
    return circle.fPoints;
}

/**
 * Draws a shape by its display list, which the first use compiles from what @p send sends. While somebody compiles a list
 * of his own, a shape that has none yet is sent directly: lists do not nest.
 */
template <class Send> void drawCompiled(TglDisplayList& list, bool draw, Send send)
{
    if (!list.isCompiled()) {
        const TcountedPtr<TglListId> made = TglListId::toCompile();
        if (!made) {
            if (draw)
                send();
            return;
        }
        list.fList = made;
        glNewList(list.name(), GL_COMPILE);
        send();
        glEndList();
    }
    if (draw)
        list.call();
}

/** Sends what @p draw draws moved to @p centre and scaled. */
template <class Draw> void drawPlaced(const T4dDblPoint& centre, float sx, float sy, float sz, Draw draw)
{
    glPushMatrix();
    glTranslated(centre.x, centre.y, centre.z);
    glScalef(sx, sy, sz);
    draw();
    glPopMatrix();
}

} // namespace TunitShapes
