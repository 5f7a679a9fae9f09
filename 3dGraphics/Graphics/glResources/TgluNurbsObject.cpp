#include "Graphics/glResources/TgluNurbsObject.h"

#include <vector>

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
    const auto narrow = [](const double* values, std::size_t count) {
        std::vector<float> made(count);
        for (std::size_t i = 0; i < count; ++i)
            made[i] = static_cast<float>(values[i]);
        return made;
    };
    const auto sCount = static_cast<std::size_t>(sKnotCount);
    const auto tCount = static_cast<std::size_t>(tKnotCount);
    std::vector<float> s = narrow(sKnots, sCount);
    std::vector<float> t = narrow(tKnots, tCount);
    std::vector<float> points = narrow(control, sCount * tCount * 3);
    gluNurbsSurface(fRenderer, sKnotCount, s.data(), tKnotCount, t.data(), sStride, tStride, points.data(), sOrder,
                    tOrder, type);
}
