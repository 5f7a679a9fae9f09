// Geometry statistics: what counts where, and what is reset.

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/T3dPortGeometryStats.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

TEST(GeometryStats, EachOperationHasItsWord)
{
    // From the thirteenth word on, in the order of the record.
    constexpr void (T3dPort::*kCounters[])(int) = {&T3dPort::countActiveFaces,     &T3dPort::countActiveEdges,
                                                   &T3dPort::countActiveVerts,     &T3dPort::countActiveUVs,
                                                   &T3dPort::countActiveTriangles, &T3dPort::countActivePolyFaces,
                                                   &T3dPort::countActivePolyEdges, &T3dPort::countActivePolyVerts,
                                                   &T3dPort::countActivePolyUVs,   &T3dPort::countActivePolyTriangles};
    using Words = std::array<std::uint32_t, 22>;
    T3dPort port(nullptr, "stats", false);
    port.countTmesh(1, 2, 3, 4, 5); // without a record
    port.resetGeometryStats();
    T3dPortGeometryStats stats;
    port.fGeometryStats = &stats;
    const auto words = [&stats] {
        Words all;
        static_assert(sizeof all == sizeof stats);
        std::memcpy(all.data(), &stats, sizeof all);
        return all;
    };
    int word = 12;
    for (const auto counter : kCounters) {
        (port.*counter)(word);
        ++word;
    }
    port.countTmesh(100, 200, 300, 400, 500);
    EXPECT_EQ((Words{0, 0, 0, 0, 0, 0, 1, 300, 200, 100, 400, 500, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}), words());
    port.resetGeometryStats();
    EXPECT_EQ((Words{0, 0, 0, 0, 0, 0, 1}), words()) << "the meshes are spared";
}
