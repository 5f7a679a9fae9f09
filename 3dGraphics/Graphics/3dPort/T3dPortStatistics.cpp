// Geometry statistics.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/T3dPortGeometryStats.h"

bool T3dPort::smpPolyCount = false;

void T3dPort::add(std::uint32_t T3dPortGeometryStats::*counter, int n)
{
    if (fGeometryStats)
        fGeometryStats->*counter += static_cast<std::uint32_t>(n);
}

unsigned T3dPort::count(std::uint32_t T3dPortGeometryStats::*counter) const
{
    return fGeometryStats ? fGeometryStats->*counter : 0;
}

void T3dPort::toggleGeometryStats()
{
    enableGeometryStats(!isEnabledGeometryStats());
}

void T3dPort::countTmesh(int verts, int edges, int faces, int uvs, int triangles)
{
    add(&T3dPortGeometryStats::fTmeshes, 1);
    add(&T3dPortGeometryStats::fVerts, verts);
    add(&T3dPortGeometryStats::fEdges, edges);
    add(&T3dPortGeometryStats::fFaces, faces);
    add(&T3dPortGeometryStats::fUVs, uvs);
    add(&T3dPortGeometryStats::fTriangles, triangles);
}

void T3dPort::resetGeometryStats()
{
    if (!fGeometryStats)
        return;
    const std::uint32_t tmeshes = fGeometryStats->fTmeshes;
    *fGeometryStats = T3dPortGeometryStats();
    fGeometryStats->fTmeshes = tmeshes;
}

void T3dPort::countActiveFaces(int n)
{
    add(&T3dPortGeometryStats::fActiveFaces, n);
}

void T3dPort::countActiveEdges(int n)
{
    add(&T3dPortGeometryStats::fActiveEdges, n);
}

void T3dPort::countActiveVerts(int n)
{
    add(&T3dPortGeometryStats::fActiveVerts, n);
}

void T3dPort::countActiveUVs(int n)
{
    add(&T3dPortGeometryStats::fActiveUVs, n);
}

void T3dPort::countActiveTriangles(int n)
{
    add(&T3dPortGeometryStats::fActiveTriangles, n);
}

void T3dPort::countActivePolyFaces(int n)
{
    add(&T3dPortGeometryStats::fActivePolyFaces, n);
}

void T3dPort::countActivePolyEdges(int n)
{
    add(&T3dPortGeometryStats::fActivePolyEdges, n);
}

void T3dPort::countActivePolyVerts(int n)
{
    add(&T3dPortGeometryStats::fActivePolyVerts, n);
}

void T3dPort::countActivePolyUVs(int n)
{
    add(&T3dPortGeometryStats::fActivePolyUVs, n);
}

void T3dPort::countActivePolyTriangles(int n)
{
    add(&T3dPortGeometryStats::fActivePolyTriangles, n);
}

unsigned T3dPort::getCountPolyFaces() const
{
    return count(&T3dPortGeometryStats::fFaces);
}

unsigned T3dPort::getCountPolyEdges() const
{
    return count(&T3dPortGeometryStats::fEdges);
}

unsigned T3dPort::getCountPolyVerts() const
{
    return count(&T3dPortGeometryStats::fVerts);
}

unsigned T3dPort::getCountPolyUVs() const
{
    return count(&T3dPortGeometryStats::fUVs);
}

unsigned T3dPort::getCountPolyTriangles() const
{
    return count(&T3dPortGeometryStats::fTriangles);
}

unsigned T3dPort::getCountActiveFaces() const
{
    return count(&T3dPortGeometryStats::fActiveFaces);
}

unsigned T3dPort::getCountActiveEdges() const
{
    return count(&T3dPortGeometryStats::fActiveEdges);
}

unsigned T3dPort::getCountActiveVerts() const
{
    return count(&T3dPortGeometryStats::fActiveVerts);
}

unsigned T3dPort::getCountActiveUVs() const
{
    return count(&T3dPortGeometryStats::fActiveUVs);
}

unsigned T3dPort::getCountActiveTriangles() const
{
    return count(&T3dPortGeometryStats::fActiveTriangles);
}

unsigned T3dPort::getCountActivePolyFaces() const
{
    return count(&T3dPortGeometryStats::fActivePolyFaces);
}

unsigned T3dPort::getCountActivePolyEdges() const
{
    return count(&T3dPortGeometryStats::fActivePolyEdges);
}

unsigned T3dPort::getCountActivePolyVerts() const
{
    return count(&T3dPortGeometryStats::fActivePolyVerts);
}

unsigned T3dPort::getCountActivePolyUVs() const
{
    return count(&T3dPortGeometryStats::fActivePolyUVs);
}

unsigned T3dPort::getCountActivePolyTriangles() const
{
    return count(&T3dPortGeometryStats::fActivePolyTriangles);
}
