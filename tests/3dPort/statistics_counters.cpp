// Geometry statistics: what counts where, and what is reset.

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/T3dPortGeometryStats.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

namespace {

constexpr int kWords = 22;
constexpr int kMeshWord = 6;

using Words = std::array<std::uint32_t, kWords>;

/** The record as a host reads it. */
Words wordsOf(const T3dPortGeometryStats& stats)
{
    Words words;
    static_assert(sizeof words == sizeof stats);
    std::memcpy(words.data(), &stats, sizeof words);
    return words;
}

T3dPortGeometryStats statsOf(const Words& words)
{
    T3dPortGeometryStats stats;
    std::memcpy(static_cast<void*>(&stats), words.data(), sizeof stats);
    return stats;
}

struct Counter
{
    int word;
    unsigned (T3dPort::*get)() const;
    void (T3dPort::*add)(int) = nullptr; ///< null for a counter that countTmesh adds to
};

constexpr Counter kCounters[] = {
    {7, &T3dPort::getCountPolyFaces},
    {8, &T3dPort::getCountPolyEdges},
    {9, &T3dPort::getCountPolyVerts},
    {10, &T3dPort::getCountPolyUVs},
    {11, &T3dPort::getCountPolyTriangles},
    {12, &T3dPort::getCountActiveFaces, &T3dPort::countActiveFaces},
    {13, &T3dPort::getCountActiveEdges, &T3dPort::countActiveEdges},
    {14, &T3dPort::getCountActiveVerts, &T3dPort::countActiveVerts},
    {15, &T3dPort::getCountActiveUVs, &T3dPort::countActiveUVs},
    {16, &T3dPort::getCountActiveTriangles, &T3dPort::countActiveTriangles},
    {17, &T3dPort::getCountActivePolyFaces, &T3dPort::countActivePolyFaces},
    {18, &T3dPort::getCountActivePolyEdges, &T3dPort::countActivePolyEdges},
    {19, &T3dPort::getCountActivePolyVerts, &T3dPort::countActivePolyVerts},
    {20, &T3dPort::getCountActivePolyUVs, &T3dPort::countActivePolyUVs},
    {21, &T3dPort::getCountActivePolyTriangles, &T3dPort::countActivePolyTriangles},
};

/** Every word different, so that a mix-up shows. */
Words distinctWords()
{
    Words words;
    for (int i = 0; i < kWords; ++i)
        words[i] = 1000u + 7u * unsigned(i);
    return words;
}

} // namespace

TEST(GeometryStats, EachOperationHasItsWord)
{
    T3dPort port(nullptr, "stats", false);
    T3dPortGeometryStats stats = statsOf(distinctWords());
    port.fGeometryStats = &stats;
    Words expected = distinctWords();
    for (const Counter& counter : kCounters) {
        EXPECT_EQ(expected[counter.word], (port.*counter.get)()) << "word " << counter.word;
        if (!counter.add)
            continue;
        (port.*counter.add)(counter.word);
        expected[counter.word] += unsigned(counter.word);
        EXPECT_EQ(expected, wordsOf(stats)) << "word " << counter.word;
    }
    port.countTmesh(100, 200, 300, 400, 500);
    const std::pair<int, unsigned> added[] = {{6, 1}, {9, 100}, {8, 200}, {7, 300}, {10, 400}, {11, 500}};
    for (const auto& [word, count] : added)
        expected[word] += count;
    EXPECT_EQ(expected, wordsOf(stats));
}

TEST(GeometryStats, NegativeCountsWrap)
{
    T3dPort port(nullptr, "stats", false);
    T3dPortGeometryStats stats;
    port.fGeometryStats = &stats;
    port.countActiveVerts(-3);
    EXPECT_EQ(0xFFFFFFFDu, port.getCountActiveVerts());
    port.countActiveVerts(5);
    EXPECT_EQ(2u, port.getCountActiveVerts());
    port.countTmesh(-1, -2, -3, -4, -5);
    EXPECT_EQ(0xFFFFFFFFu, port.getCountPolyVerts());
    EXPECT_EQ(0xFFFFFFFBu, port.getCountPolyTriangles());
}

TEST(GeometryStats, AResetSparesTheMeshesOnly)
{
    T3dPort port(nullptr, "stats", false);
    T3dPortGeometryStats stats = statsOf(distinctWords());
    port.fGeometryStats = &stats;
    port.resetGeometryStats();
    Words expected{};
    expected[kMeshWord] = distinctWords()[kMeshWord];
    EXPECT_EQ(expected, wordsOf(stats));
    port.countTmesh(3, 3, 1, 3, 1);
    port.resetGeometryStats();
    ++expected[kMeshWord];
    EXPECT_EQ(expected, wordsOf(stats));
}

TEST(GeometryStats, NothingCountsWithoutARecordAndTheSwitchIsTheCallers)
{
    T3dPort port(nullptr, "stats", false);
    const auto countAll = [&port] {
        port.countTmesh(1, 1, 1, 1, 1);
        for (const Counter& counter : kCounters)
            if (counter.add)
                (port.*counter.add)(5);
    };
    port.enableGeometryStats(true);
    countAll();
    port.resetGeometryStats();
    for (const Counter& counter : kCounters)
        EXPECT_EQ(0u, (port.*counter.get)()) << "word " << counter.word;

    T3dPortGeometryStats stats;
    port.fGeometryStats = &stats;
    port.toggleGeometryStats();
    EXPECT_FALSE(port.isEnabledGeometryStats());
    countAll();
    for (const Counter& counter : kCounters)
        EXPECT_EQ(counter.add ? 5u : 1u, (port.*counter.get)()) << "word " << counter.word;
    port.toggleGeometryStats();
    EXPECT_TRUE(port.isEnabledGeometryStats());

    EXPECT_FALSE(T3dPort::getSmpPolyCount());
    T3dPort::setSmpPolyCount(true);
    EXPECT_TRUE(T3dPort::getSmpPolyCount());
}
