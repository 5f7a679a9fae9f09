#include "Graphics/interaction/TuvCache.h"

#include "Graphics/3dPort/T3dPort.h"

#include <GL/gl.h>

#include <algorithm>
#include <memory>
#include <utility>

TportColor TuvCache::gUVCacheLineColor(1, 1, 1, 1);
TportColor TuvCache::gUVCachePointColor(1, 0, 0, 1);
float TuvCache::gUVCachePointSize = 3.0f;
float TuvCache::gUVCacheBorderEdgeSize = 2.0f;

namespace {

constexpr unsigned kMinCorners = 3;
constexpr unsigned kCapacity = 8;
constexpr float kDrawnPointSize = 4.0f;

template <class Array> void deleteArray(const Array*& array, bool owned)
{
    if (owned)
        delete array;
    array = nullptr;
}

template <class Array> void setArray(const Array*& array, const Array& from, bool owned)
{
    if (array == &from)
        return;
    if (!owned) {
        array = &from;
        return;
    }
    auto copy = std::make_unique<Array>(kCapacity);
    *copy = from;
    delete array;
    array = copy.release();
}

template <class Array> void clearArray(const Array* array, bool owned)
{
    if (owned && array)
        const_cast<Array*>(array)->clear(); // an owned one was made by setArray
}

template <class Array> void ownArray(const Array*& array)
{
    if (const Array* borrowed = std::exchange(array, nullptr))
        setArray(array, *borrowed, true);
}

} // namespace

TuvCache::TuvCache(const TuvCache& other) : fOwnsData(false)
{
    *this = other;
}

TuvCache::TuvCache(TuvCache&& other) noexcept : fOwnsData(false)
{
    *this = std::move(other);
}

TuvCache::~TuvCache()
{
    deleteIndices();
    deletePoints();
}

TuvCache& TuvCache::operator=(const TuvCache& other)
{
    if (this == &other)
        return *this;
    if (!isOwnerFor(other)) {
        deletePoints();
        deleteIndices();
        fOwnsData = other.fOwnsData;
    }
    if (other.fPoints)
        setPoints(*other.fPoints);
    else
        deletePoints();
    if (other.fIndices)
        setIndices(*other.fIndices);
    else
        deleteIndices();
    fEdgeFlags = other.fEdgeFlags;
    fPolygonType = other.fPolygonType;
    fHostFlag = other.fHostFlag;
    return *this;
}

TuvCache& TuvCache::operator=(TuvCache&& other) noexcept
{
    if (this == &other)
        return *this;
    if (isOwnerFor(other)) {
        *this = std::as_const(other);
        other.reset();
        return *this;
    }
    std::swap(fPolygonType, other.fPolygonType);
    std::swap(fIndices, other.fIndices);
    std::swap(fPoints, other.fPoints);
    std::swap(fEdgeFlags, other.fEdgeFlags);
    std::swap(fOwnsData, other.fOwnsData);
    std::swap(fHostFlag, other.fHostFlag);
    other.reset();
    return *this;
}

bool TuvCache::isOwnerFor(const TuvCache& other) const
{
    return fOwnsData && ((fPoints && fPoints == other.fPoints) || (fIndices && fIndices == other.fIndices));
}

bool TuvCache::operator==(const TuvCache& other) const
{
    return fIndices == other.fIndices && fPoints == other.fPoints && fEdgeFlags == other.fEdgeFlags &&
           fOwnsData == other.fOwnsData && fPolygonType == other.fPolygonType && fHostFlag == other.fHostFlag;
}

void TuvCache::setPoints(const T2FloatArray& points)
{
    setArray(fPoints, points, fOwnsData);
}

void TuvCache::setIndices(const TuInt32Array& indices)
{
    setArray(fIndices, indices, fOwnsData);
}

void TuvCache::clearPoints()
{
    clearArray(fPoints, fOwnsData);
}

void TuvCache::clearIndices()
{
    clearArray(fIndices, fOwnsData);
}

void TuvCache::deletePoints()
{
    deleteArray(fPoints, fOwnsData);
}

void TuvCache::deleteIndices()
{
    deleteArray(fIndices, fOwnsData);
}

void TuvCache::setOwnsData(bool owns)
{
    if (owns == fOwnsData)
        return;
    if (owns) {
        ownArray(fPoints);
        ownArray(fIndices);
    } else {
        deletePoints();
        deleteIndices();
    }
    fOwnsData = owns;
}

void TuvCache::reset()
{
    deletePoints();
    deleteIndices();
    fEdgeFlags.clearAll();
    fHostFlag = true;
}

void TuvCache::draw(T3dPort& port) const
{
    if (!fPoints || fPoints->isEmpty())
        return;
    if (fIndices)
        drawPolygons(port);
    else
        drawArray(port);
}

void TuvCache::drawPolygons(T3dPort& port) const
{
    const bool quads = fPolygonType == kQuads;
    const std::size_t corners = quads ? 4 : 3;
    const std::size_t available = fPoints->length();
    if (fIndices->length() < kMinCorners || available < kMinCorners)
        return;
    const std::size_t polygons = std::min(fIndices->length() / corners, available / corners);

    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonLine);
    port.color(gUVCacheLineColor);
    port.setCurrentContext();
    glBegin(quads ? GL_QUADS : GL_TRIANGLES);
    port.setInPrimitive(true);
    const T2Float* const points = fPoints->data();
    for (std::size_t first = 0; first < polygons * corners; first += corners) {
        glVertex2fv(&points[first].x);
        glVertex2fv(&points[first + 1].x);
        glVertex2fv(&points[first + 2].x);
        glVertex2fv(&points[std::min(first + 3, available - 1)].x);
    }
    glEnd();
    port.setInPrimitive(false);
    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonFill);
}

void TuvCache::drawArray(T3dPort& port) const
{
    if (fPoints->length() < kMinCorners || fEdgeFlags.isAnySet())
        return;
    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonLine);
    port.setCurrentContext();
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, fPoints->data());
    glDrawArrays(fPolygonType == kQuads ? GL_QUADS : GL_TRIANGLES, 0, static_cast<GLsizei>(fPoints->length()));
    glDisableClientState(GL_VERTEX_ARRAY);
    port.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonFill);
}

void TuvCache::drawPoints(T3dPort& port) const
{
    if (!fPoints || fPoints->isEmpty())
        return;
    const TglContext* const record = port.glContextRecord();
    const float formerSize = record ? record->fPointSize : kDrawnPointSize;
    port.pointSize(kDrawnPointSize);
    port.color(gUVCachePointColor);
    port.setCurrentContext();
    glBegin(GL_POINTS);
    port.setInPrimitive(true);
    for (const T2Float& point : *fPoints)
        glVertex2fv(&point.x);
    glEnd();
    port.setInPrimitive(false);
    port.pointSize(formerSize);
}
