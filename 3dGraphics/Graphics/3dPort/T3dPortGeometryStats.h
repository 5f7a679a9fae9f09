#pragma once

#include <cstdint>

/** What a frame drew and what of it was active. A host attaches one to a port (T3dPort::fGeometryStats) to count. */
struct T3dPortGeometryStats
{
    std::uint32_t fHost[6] = {}; ///< the host's own
    std::uint32_t fTmeshes = 0;  ///< not reset with the others
    std::uint32_t fFaces = 0;
    std::uint32_t fEdges = 0;
    std::uint32_t fVerts = 0;
    std::uint32_t fUVs = 0;
    std::uint32_t fTriangles = 0;
    std::uint32_t fActiveFaces = 0;
    std::uint32_t fActiveEdges = 0;
    std::uint32_t fActiveVerts = 0;
    std::uint32_t fActiveUVs = 0;
    std::uint32_t fActiveTriangles = 0;
    std::uint32_t fActivePolyFaces = 0;
    std::uint32_t fActivePolyEdges = 0;
    std::uint32_t fActivePolyVerts = 0;
    std::uint32_t fActivePolyUVs = 0;
    std::uint32_t fActivePolyTriangles = 0;
};

static_assert(sizeof(T3dPortGeometryStats) == 22 * sizeof(std::uint32_t), "22 counters, shared with the host");
