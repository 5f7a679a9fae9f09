#include "TfaceFiller.h"

#include <GL/glu.h>

#include <array>
#include <deque>

namespace {

struct Tcorner
{
    std::array<double, 3> fAt;
    std::uint32_t fIndex;
};

struct Toutput
{
    std::vector<T4dDblVector>& fPolygon;
    std::vector<std::uint32_t>& fTriangles;
    std::deque<Tcorner> fPoints; // the tessellator keeps pointers to them
};

void GLAPIENTRY onVertex(void* vertex, void* output)
{
    static_cast<Toutput*>(output)->fTriangles.push_back(static_cast<const Tcorner*>(vertex)->fIndex);
}

void GLAPIENTRY onCombine(GLdouble at[3], void* [4], GLfloat[4], void** made, void* output)
{
    auto& out = *static_cast<Toutput*>(output);
    out.fPoints.push_back({{at[0], at[1], at[2]}, static_cast<std::uint32_t>(out.fPolygon.size())});
    out.fPolygon.emplace_back(at[0], at[1], at[2]);
    *made = &out.fPoints.back();
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

void TfaceFiller::fill(std::vector<T4dDblVector>& polygon, std::vector<std::uint32_t>& triangles)
{
    const T4dDblVector normal = areaNormal(polygon);
    if (polygon.size() < 3 || !(normal.lengthSquared() > 0))
        return;
    if (polygon.size() == 3) {
        triangles.insert(triangles.end(), {0, 1, 2});
        return;
    }
    if (isConvexQuad(polygon, normal)) {
        triangles.insert(triangles.end(), {0, 1, 2, 0, 2, 3});
        return;
    }

    const std::size_t before = triangles.size();
    const std::size_t corners = polygon.size();
    Toutput output{polygon, triangles, {}};
    gluTessNormal(fTess, normal.x, normal.y, normal.z);
    gluTessBeginPolygon(fTess, &output);
    gluTessBeginContour(fTess);
    for (std::size_t i = 0; i < corners; ++i) {
        const T4dDblVector& p = polygon[i];
        output.fPoints.push_back({{p.x, p.y, p.z}, static_cast<std::uint32_t>(i)});
        gluTessVertex(fTess, output.fPoints.back().fAt.data(), &output.fPoints.back());
    }
    gluTessEndContour(fTess);
    gluTessEndPolygon(fTess);
    triangles.resize(triangles.size() - (triangles.size() - before) % 3);
}
