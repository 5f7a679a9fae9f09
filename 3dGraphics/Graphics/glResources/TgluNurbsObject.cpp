#include "Graphics/glResources/TgluNurbsObject.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace {

int valuesPerPoint(TgluNurbsObject::TnurbsType type)
{
    switch (type) {
    case TgluNurbsObject::kTextureCoord2:
        return 2;
    case TgluNurbsObject::kVertex3:
    case TgluNurbsObject::kNormal:
        return 3;
    default:
        return 4;
    }
}

/** Whether GLU, which reads sPoints * tPoints points, finds them among @p count values. */
bool staysWithin(std::size_t count, std::int64_t sPoints, std::int64_t sStride, std::int64_t tPoints,
                 std::int64_t tStride, TgluNurbsObject::TnurbsType type)
{
    if (sPoints < 1 || tPoints < 1 || sStride < 0 || tStride < 0)
        return false;
    // Below 2^64: each product is of two numbers below 2^32.
    const auto last =
        static_cast<std::uint64_t>((sPoints - 1) * sStride) + static_cast<std::uint64_t>((tPoints - 1) * tStride);
    return last + static_cast<std::uint64_t>(valuesPerPoint(type)) <= count;
}

} // namespace

TgluNurbsObject::TgluNurbsObject(TnurbsFillMode mode) : fRenderer(gluNewNurbsRenderer())
{
    if (fRenderer)
        gluNurbsProperty(fRenderer, GLU_DISPLAY_MODE, static_cast<float>(mode));
}

void TgluNurbsObject::begin() const
{
    if (fRenderer)
        gluBeginSurface(fRenderer);
}

void TgluNurbsObject::end() const
{
    if (fRenderer)
        gluEndSurface(fRenderer);
}

void TgluNurbsObject::nurbsSurface(int sKnotCount, const double* sKnots, int tKnotCount, const double* tKnots,
                                   int sStride, int tStride, const double* control, int sOrder, int tOrder,
                                   TnurbsType type) const
{
    if (!fRenderer || !sKnots || !tKnots || !control || sKnotCount <= 0 || tKnotCount <= 0)
        return;
    const auto sCount = static_cast<std::size_t>(sKnotCount);
    const auto tCount = static_cast<std::size_t>(tKnotCount);
    const std::size_t pointValues = sCount * tCount * 3;
    if (!staysWithin(pointValues, sKnotCount - std::int64_t(sOrder), sStride, tKnotCount - std::int64_t(tOrder),
                     tStride, type))
        return;
    const auto narrow = [](const double* values, std::size_t count) {
        std::unique_ptr<float[]> made(new (std::nothrow) float[count]);
        if (made)
            std::transform(values, values + count, made.get(), [](double value) { return static_cast<float>(value); });
        return made;
    };
    const auto s = narrow(sKnots, sCount);
    const auto t = narrow(tKnots, tCount);
    const auto points = narrow(control, pointValues);
    if (s && t && points)
        gluNurbsSurface(fRenderer, sKnotCount, s.get(), tKnotCount, t.get(), sStride, tStride, points.get(), sOrder,
                        tOrder, type);
}
