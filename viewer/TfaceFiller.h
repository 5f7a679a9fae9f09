#pragma once

#include "foundation/T4dDblVector.h"

#include <cstdint>
#include <vector>

class GLUtesselator;

/** Cuts polygons into triangles, concave and crossing ones too (gluTessBeginPolygon and the like, no OpenGL context).
 */
class TfaceFiller
{
public:
    TfaceFiller();
    ~TfaceFiller();
    TfaceFiller(const TfaceFiller&) = delete;
    TfaceFiller& operator=(const TfaceFiller&) = delete;

    /**
     * Appends the triangles of the polygon, three indices of its points each; none for a polygon without area. Where
     * its edges cross, points are added to the polygon.
     */
    void fill(std::vector<T4dDblVector>& polygon, std::vector<std::uint32_t>& triangles);

    /** The normal of a polygon by Newell's method, of twice its area's length. */
    static T4dDblVector areaNormal(const std::vector<T4dDblVector>& polygon);

private:
    GLUtesselator* fTess;
};
