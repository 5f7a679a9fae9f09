#include "TfaceFiller.h"

#include <GL/glu.h>

#include <array>
#include <deque>

namespace {

using Tcoordinates = std::array<double, 3>;

struct Toutput
{
    std::vector<T4dDblVector>& fTriangles;
    std::deque<Tcoordinates> fPoints; // the tessellator keeps pointers to them
};

void GLAPIENTRY onVertex(void* vertex, void* output)
{
    const auto& p = *static_cast<const Tcoordinates*>(vertex);
    static_cast<Toutput*>(output)->fTriangles.emplace_back(p[0], p[1], p[2]);
}

void GLAPIENTRY onCombine(GLdouble at[3], void* [4], GLfloat[4], void** made, void* output)
{
    auto& points = static_cast<Toutput*>(output)->fPoints;
    points.push_back({at[0], at[1], at[2]});
    *made = &points.back();
}

// Registered, it keeps the tessellator from making fans and strips.
void GLAPIENTRY onEdgeFlag(GLboolean) {}

bool isConvexQuad(const std::vector<T4dDblVector>& polygon, const T4dDblVector& normal)
{
    if (polygon.size() != 4)
        return false;
    for (std::size_t i = 0; i < 4; ++i) {
        const T4dDblVector in = polygon[(i + 1) % 4] - polygon[i];
        const T4dDblVector out = polygon[(i + 2) % 4] - polygon[(i + 1) % 4];
        if (in.cross(out).dot(normal) < 0)
            return false;
    }
    return true;
}

} // namespace

TfaceFiller::TfaceFiller() : fTess(gluNewTess())
{
    gluTessCallback(fTess, GLU_TESS_VERTEX_DATA, reinterpret_cast<_GLUfuncptr>(onVertex));
    gluTessCallback(fTess, GLU_TESS_COMBINE_DATA, reinterpret_cast<_GLUfuncptr>(onCombine));
    gluTessCallback(fTess, GLU_TESS_EDGE_FLAG, reinterpret_cast<_GLUfuncptr>(onEdgeFlag));
}

TfaceFiller::~TfaceFiller()
{
    gluDeleteTess(fTess);
}

T4dDblVector TfaceFiller::areaNormal(const std::vector<T4dDblVector>& polygon)
{
    T4dDblVector sum;
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i)
        sum += (polygon[i] - polygon[0]).cross(polygon[i + 1] - polygon[0]);
    return sum;
}

void TfaceFiller::fill(const std::vector<T4dDblVector>& polygon, std::vector<T4dDblVector>& triangles)
{
    const T4dDblVector normal = areaNormal(polygon);
    if (polygon.size() < 3 || !(normal.lengthSquared() > 0))
        return;
    if (polygon.size() == 3) {
        triangles.insert(triangles.end(), polygon.begin(), polygon.end());
        return;
    }
    if (isConvexQuad(polygon, normal)) {
        for (const int corner : {0, 1, 2, 0, 2, 3})
            triangles.push_back(polygon[static_cast<std::size_t>(corner)]);
        return;
    }

    const std::size_t before = triangles.size();
    Toutput output{triangles, {}};
    gluTessNormal(fTess, normal.x, normal.y, normal.z);
    gluTessBeginPolygon(fTess, &output);
    gluTessBeginContour(fTess);
    for (const T4dDblVector& p : polygon) {
        output.fPoints.push_back({p.x, p.y, p.z});
        gluTessVertex(fTess, output.fPoints.back().data(), &output.fPoints.back());
    }
    gluTessEndContour(fTess);
    gluTessEndPolygon(fTess);
    triangles.resize(triangles.size() - (triangles.size() - before) % 3);
}
