#include "Tbrush.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Tpicker.h"
#include "Tview.h"
#include "TviewScene.h"
#include "foundation/T4dDblPoint.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double kStep = 3;            // pixels between two dabs
constexpr double kRadiusShare = 0.012; // of the texture's width
constexpr TportColor kPaint{0.86f, 0.24f, 0.16f};

} // namespace

bool Tbrush::press(Tview& view, const Tpoint& pixel)
{
    fLast = pixel;
    view.loadCamera();
    return paint(view, pixel);
}

bool Tbrush::drag(Tview& view, const Tpoint& pixel)
{
    view.loadCamera();
    const double length = std::hypot(pixel.x - fLast.x, pixel.y - fLast.y);
    const int dabs = std::max(1, static_cast<int>(length / (kStep * view.pixelRatio())));
    bool painted = false;
    for (int i = 1; i <= dabs; ++i)
        painted |= paint(view, {static_cast<short>(fLast.x + (pixel.x - fLast.x) * i / dabs),
                                static_cast<short>(fLast.y + (pixel.y - fLast.y) * i / dabs)});
    fLast = pixel;
    return painted;
}

bool Tbrush::paint(Tview& view, const Tpoint& pixel)
{
    const auto face = Tpicker(view.port(), fScene, Tpicker::kSelection).nearest(pixel, Tselection::kFaces);
    if (!face || fScene.model()->triangleUvs().empty())
        return false;
    T4dDblPoint start;
    T4dDblVector direction;
    view.port().portToWorld(pixel, start, direction);
    const T4dDblVector origin = start - T4dDblPoint::origin - fScene.offset(face->fObject);

    // The point of the face under the pointer, by its weights in a triangle: that with the largest least weight.
    const TobjModel& model = *fScene.model();
    const TobjModel::Trange range = model.trianglesOf(face->fElement);
    double most = -1e30;
    double at[2] = {};
    for (std::size_t t = range.fBegin; t < range.fEnd; t += 3) {
        const auto corner = [&](std::size_t i) {
            const float* p = model.triangles()[t + i].fPosition;
            return T4dDblVector(p[0], p[1], p[2]);
        };
        const T4dDblVector a = corner(1) - corner(0);
        const T4dDblVector b = corner(2) - corner(0);
        const T4dDblVector s = origin - corner(0);
        const double volume = a.dot(direction.cross(b));
        if (volume == 0)
            continue;
        const double u = s.dot(direction.cross(b)) / volume;
        const double v = direction.dot(s.cross(a)) / volume;
        const double least = std::min({u, v, 1 - u - v});
        if (least > most) {
            most = least;
            const TobjModel::Tuv* uv = &model.triangleUvs()[t];
            at[0] = (1 - u - v) * double(uv[0].fU) + u * double(uv[1].fU) + v * double(uv[2].fU);
            at[1] = (1 - u - v) * double(uv[0].fV) + u * double(uv[1].fV) + v * double(uv[2].fV);
        }
    }
    if (most == -1e30)
        return false;
    TmodelTexture& texture = fScene.texture();
    texture.dab(at[0], at[1], std::max(1.5, kRadiusShare * texture.width()), kPaint);
    return true;
}
