#include "Graphics/glResources/TglColorTable.h"

#include <algorithm>

namespace {

// More bits than a 16-bit table index can address would only shift out of range.
constexpr unsigned kMaxPlaneBits = 15;

TglColorTable::ColorPlane makePlane(unsigned short base, unsigned bits, unsigned shift, unsigned first)
{
    TglColorTable::ColorPlane plane;
    bits = std::min(bits, kMaxPlaneBits);
    if (bits == 0)
        return plane;
    plane.fBits = static_cast<std::uint16_t>(bits);
    plane.fShift = static_cast<std::uint16_t>(shift);
    plane.fFirst = static_cast<std::uint16_t>(first);
    plane.fSize = static_cast<std::uint16_t>((1u << bits) - (first != 0 ? 1u : 0u));
    plane.fMask = base | (((1u << bits) - 1u) << std::min(shift, 31u));
    plane.fUnit = 1u << std::min(shift, 31u);
    return plane;
}

} // namespace

TglColorTable::TglColorTable(short base) : fColors(8), fHardwareIndex(8), fBase(static_cast<std::uint16_t>(base))
{
}

void TglColorTable::setColorTableTopology(unsigned short base, unsigned short bitsB, unsigned short bitsC,
                                          unsigned short bitsA)
{
    fBase = base;
    fPlaneA = makePlane(base, bitsA, 0, 0);
    fPlaneB = makePlane(base, bitsB, fPlaneA.fBits, fPlaneA.fSize);
    fPlaneD = makePlane(base, bitsC, fPlaneA.fBits + fPlaneB.fBits, fPlaneA.fSize + fPlaneB.fSize);
    const unsigned entries = fPlaneA.fSize + fPlaneB.fSize + fPlaneD.fSize;
    fColors.setLength(entries);
    fHardwareIndex.setLength(entries);
    std::fill(fHardwareIndex.begin(), fHardwareIndex.end(), std::uint16_t(0));
    fHasTopology = true;
}

TportColor TglColorTable::colorRGB(short i) const
{
    const unsigned index = static_cast<std::uint16_t>(i);
    if (index < size())
        return fColors[index];
    return size() > 1 ? fColors[1] : kCblack;
}

std::uint16_t TglColorTable::hardwareIndex(short i) const
{
    const unsigned index = static_cast<std::uint16_t>(i);
    if (index < fHardwareIndex.length())
        return fHardwareIndex[index];
    return fHardwareIndex.length() > 1 ? fHardwareIndex[1] : std::uint16_t(0);
}
