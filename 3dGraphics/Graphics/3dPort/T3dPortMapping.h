#pragma once

// What of coordinate mapping is done by the million, to be inlined; included by T3dPort.h.

#include "Graphics/3dPort/T3dPort.h"

inline T4dDblPoint T3dPort::scaleToPort(const T4dDblPoint& c) const
{
    return viewportScale().toPort(TviewportScale::Tpair{c.x, c.y}, TviewportScale::Tpair{c.z, c.w});
}

inline int T3dPort::worldToPort(const T4dDblPoint& p, T4dDblPoint& out) const
{
    const auto row = [m = transform().data()](int element) { return TviewportScale::pairAt(m + element); };
    const auto xy = row(0) * p.x + row(4) * p.y + row(8) * p.z + row(12) * p.w;
    const auto zw = row(2) * p.x + row(6) * p.y + row(10) * p.z + row(14) * p.w;
    out = viewportScale().toPort(xy, zw);
    const double w = zw[1];
    if (std::abs(w) <= TviewportScale::kLeastW)
        return kPointAtInfinity;
    const bool inside = (std::abs(xy[0]) <= w) & (std::abs(xy[1]) <= w) & (std::abs(zw[0]) <= w);
    return inside ? kPointInside : kPointOutside;
}

inline void T3dPort::portToWorld(const Tpoint& p, T4dDblPoint& point, T4dDblVector& dir) const
{
    // The near and the far point differ by the third row's sign only.
    const auto row = [m = inverseTransform().data()](int element) { return TviewportScale::pairAt(m + element); };
    const auto at = viewportScale().toUnit(p);
    const auto xy = row(0) * at[0] + row(4) * at[1] + row(12);
    const auto zw = row(2) * at[0] + row(6) * at[1] + row(14);
    const auto nearZw = zw - row(10);
    const auto farZw = zw + row(10);
    const auto nearXy = (xy - row(8)) / nearZw[1];
    const auto dirXy = (xy + row(8)) / farZw[1] - nearXy;
    const auto z = TviewportScale::Tpair{nearZw[0], farZw[0]} / TviewportScale::Tpair{nearZw[1], farZw[1]};
    point = T4dDblPoint(nearXy[0], nearXy[1], z[0]);
    dir = T4dDblVector(dirXy[0], dirXy[1], z[1] - z[0]).normalised();
}
