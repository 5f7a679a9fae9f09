#pragma once

#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"

class T3dPort;
class Tpoint;

/**
 * Arrows along the axes at a place in the scene, and a square that faces the camera, all of one size in the picture. An
 * arrow moves along its axis, the square in the plane of the picture. The port's matrices are those that the scene is seen
 * with.
 */
class TmoveManipulator
{
public:
    enum Thandle { kNone = 0, kX = 1, kY = 2, kZ = 3, kPlane = 4 };

    /** @param grabbed  is drawn as held */
    static void draw(T3dPort& port, const T4dDblPoint& at, double pixelRatio, Thandle grabbed);

    /** The handle seen at the pixel; the square where it and an arrow are. */
    static Thandle handleAt(T3dPort& port, const T4dDblPoint& at, double pixelRatio, const Tpoint& pixel);

    /** Takes hold of a handle that was seen at the pixel. */
    void grab(const T3dPort& port, Thandle handle, const T4dDblPoint& at, const Tpoint& pixel);
    void release() { fHandle = kNone; }
    Thandle grabbed() const { return fHandle; }
    /** How far from the place of grab() the handle has to be, to be seen at the pixel; null when there is no telling. */
    T4dDblVector moved(const T3dPort& port, const Tpoint& pixel) const;

private:
    static void drawHandles(T3dPort& port, const T4dDblPoint& at, double pixelRatio, Thandle grabbed);
    bool find(const T3dPort& port, const Tpoint& pixel, T4dDblPoint& found) const;

    Thandle fHandle = kNone;
    T4dDblPoint fAt;
    T4dDblVector fToEye;
    T4dDblPoint fStart; ///< on the axis or in the plane
};
