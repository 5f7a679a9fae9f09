#include "TpickVolume.h"

#include <cmath>

TpickVolume::TpickVolume(const T4dDblMatrix& m, const TportRect& viewport, const TportRect& region)
{
    const auto toClip = [](double pixel, double start, double length) { return 2 * (pixel - start) / length - 1; };
    const double left = toClip(region.left, viewport.left, viewport.width());
    const double right = toClip(region.right, viewport.left, viewport.width());
    const double bottom = toClip(region.bottom, viewport.bottom, viewport.height());
    const double top = toClip(region.top, viewport.bottom, viewport.height());
    // In front of the near plane, and x / w between left and right, y / w between bottom and top. Columns of the matrix
    // give x, y, z and w of a row vector.
    const struct
    {
        int column;
        double factor;
        double ofW;
    } bounds[5] = {{0, 1, -left}, {0, -1, right}, {1, 1, -bottom}, {1, -1, top}, {2, 1, 1}};
    for (int i = 0; i < 5; ++i) {
        const auto row = [&](int r) {
            return bounds[i].factor * m[4 * r + bounds[i].column] + bounds[i].ofW * m[4 * r + 3];
        };
        const T4dDblVector normal(row(0), row(1), row(2));
        const double length = normal.length();
        const double scale = length > 0 ? 1 / length : 1;
        fPlanes[i] = {normal.x * scale, normal.y * scale, normal.z * scale, row(3) * scale};
    }
}

TpickVolume TpickVolume::movedFor(const T4dDblVector& offset) const
{
    TpickVolume moved = *this;
    for (Tplane& plane : moved.fPlanes)
        plane.d += plane.x * offset.x + plane.y * offset.y + plane.z * offset.z;
    return moved;
}
