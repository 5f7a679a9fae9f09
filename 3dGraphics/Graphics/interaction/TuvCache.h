#pragma once

#include "Graphics/Export.h"
#include "foundation/T2FloatArray.h"
#include "foundation/Tarray.h"
#include "foundation/TbitFieldFixedN.h"
#include "foundation/TportColor.h"

#include <cstdint>

class T3dPort;

/**
 * The texture coordinates of one piece of a mesh, to be drawn as a flat layout: polygons as lines, or their corners as
 * points. The corners of consecutive polygons stand one after the other in the points, u and v of each. The caller sets
 * the port up for a view of the z = 0 plane; drawing switches polygon mode, colour and point size.
 *
 * @code
 *     TuvCache layout(true);                   // keeps copies
 *     layout.setPointsPerPolygon(TuvCache::kQuads);
 *     layout.setPoints(corners);
 *     layout.setIndices(cornerList);
 *     port.ortho(0, 1, 0, 1);
 *     layout.draw(port);
 * @endcode
 */
class LIRN_3DGRAPHICS_EXPORT TuvCache
{
public:
    /** Any value but kQuads means triangles. */
    enum TuvPolygonType : std::uint32_t { kTriangles = 0, kQuads = 1 };

    /**
     * An empty cache of triangles.
     * @param ownsData  keep copies of the arrays it is given; otherwise it refers to the caller's arrays, which must stay
     *                  until they are replaced, deletePoints and deleteIndices are called, or the cache is gone
     */
    explicit TuvCache(bool ownsData = false) : fOwnsData(ownsData) {}
    /** As operator=. */
    TuvCache(const TuvCache& other);
    /** Takes over the arrays of @p other, which is left empty. */
    TuvCache(TuvCache&& other) noexcept;
    virtual ~TuvCache();

    /**
     * Takes ownership, arrays, flags and polygon type as @p other has them: copies its arrays or refers to them too. A
     * cache that owns an array which @p other refers to keeps it and stays an owner, so that neither is left without.
     */
    TuvCache& operator=(const TuvCache& other);
    TuvCache& operator=(TuvCache&& other) noexcept;

    /** Equal are caches that hold the same arrays (not equal ones) with the same flags, ownership and polygon type. */
    bool operator==(const TuvCache& other) const;
    bool operator!=(const TuvCache& other) const { return !(*this == other); }

    void setPoints(const T2FloatArray& points);
    /**
     * The list of corners. Its length says how many polygons there are, as far as there are points; the indices
     * themselves are not read.
     */
    void setIndices(const TuInt32Array& indices);
    /** Null without. */
    const T2FloatArray* points() const { return fPoints; }
    const TuInt32Array* indices() const { return fIndices; }
    /** Makes an owned array empty, its memory kept; leaves the caller's alone. */
    void clearPoints();
    void clearIndices();
    /** Lets go of the array, deleting an owned one. */
    void deletePoints();
    void deleteIndices();

    void setPointsPerPolygon(TuvPolygonType type) { fPolygonType = type; }
    TuvPolygonType pointsPerPolygon() const { return fPolygonType; }
    /** A flag per edge. Any that is set keeps a cache without indices from being drawn as polygons. */
    void setEdgeFlags(const TbitFieldFixedN& flags) { fEdgeFlags = flags; }
    const TbitFieldFixedN& edgeFlags() const { return fEdgeFlags; }
    /** Turned on, copies the arrays referred to; turned off, lets go of the copies. */
    void setOwnsData(bool owns);
    bool ownsData() const { return fOwnsData; }
    /** The host's own: kept, copied and compared. */
    void setHostFlag(bool on) { fHostFlag = on; }
    bool hostFlag() const { return fHostFlag; }

    /** Empties the cache; polygon type and ownership stay. */
    void reset();

    /**
     * Draws the polygons as lines.
     *
     * With indices, in gUVCacheLineColor and immediate mode, four vertices for each polygon: a triangle is followed by the
     * first corner of the next one, the last one by its own last corner when there is no further point. Without indices,
     * in the current colour from a vertex array, for which GL_ARRAY_BUFFER must be unbound; not when an edge flag is set.
     * Fewer than three points or indices draw nothing.
     */
    void draw(T3dPort& port) const;
    /** Draws all points, of size 4, in gUVCachePointColor. The port's point size is restored. */
    void drawPoints(T3dPort& port) const;
    /** Does nothing. */
    void debug() {}

    static TportColor gUVCacheLineColor;  ///< white
    static TportColor gUVCachePointColor; ///< red
    static float gUVCachePointSize;       ///< for the host, 3; drawPoints has its own
    static float gUVCacheBorderEdgeSize;  ///< for the host, 2

private:
    bool isOwnerFor(const TuvCache& other) const;
    void drawPolygons(T3dPort& port) const;
    void drawArray(T3dPort& port) const;

    TuvPolygonType fPolygonType = kTriangles;
    const TuInt32Array* fIndices = nullptr;
    const T2FloatArray* fPoints = nullptr;
    TbitFieldFixedN fEdgeFlags;
    bool fOwnsData;
    bool fHostFlag = true;
};
