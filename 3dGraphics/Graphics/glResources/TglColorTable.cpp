#include "Graphics/glResources/TglColorTable.h"

#include "Graphics/glResources/XColorArray.h"

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

XColorArray& cells()
{
    static XColorArray& array = *new XColorArray; // for tables that outlive the library's static objects
    return array;
}

unsigned short cellIntensity(float component)
{
    return static_cast<unsigned short>(component > 0 ? std::min(component, 1.0f) * 65535 : 0);
}

} // namespace

TglColorTable::TglColorTable(short base) : fColors(8), fHardwareIndex(8), fBase(static_cast<std::uint16_t>(base)) {}

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

const TglColorTable::ColorPlane* TglColorTable::planeOf(TindexBuffer which) const
{
    return which == 4 ? &fPlaneA : which == 2 ? &fPlaneB : which == 1 ? &fPlaneD : nullptr;
}

short TglColorTable::firstIndex(TindexBuffer which) const
{
    const ColorPlane* plane = planeOf(which);
    return static_cast<short>(plane ? plane->fFirst : 0);
}

short TglColorTable::colorIndex(const TportColor& c, TindexBuffer which) const
{
    const ColorPlane* plane = planeOf(which);
    if (!plane && which != 7)
        return 1;
    const auto begin = fColors.begin() + (plane ? std::min<unsigned>(plane->fFirst, size()) : 0);
    const auto end = plane ? fColors.begin() + std::min<unsigned>(plane->fFirst + plane->fSize, size()) : fColors.end();
    const auto found = std::find(begin, end, c);
    if (found != end)
        return static_cast<short>(found - fColors.begin());
    return plane ? static_cast<short>(plane->fFirst) : short(1);
}

void TglColorTable::setColorTable(short i, const TportColor& c)
{
    const unsigned index = static_cast<std::uint16_t>(i);
    const TportColor color = c; // may be an entry of this table
    if (index >= size()) {
        fColors.setLength(index + 1);
        fHardwareIndex.setLength(index + 1);
    }
    if (!fHasTopology) {
        fColors[index] = color;
        return;
    }
    const ColorPlane* in = nullptr;
    for (const ColorPlane* plane : {&fPlaneA, &fPlaneB, &fPlaneD})
        if (!in && index >= plane->fFirst && index < unsigned(plane->fFirst) + plane->fSize)
            in = plane;
    setColor(in, index, color);
}

void TglColorTable::setColorTable(int i, const TportColor& c, int hardware)
{
    if (i < 0 || static_cast<unsigned>(i) >= size())
        return;
    fColors[static_cast<unsigned>(i)] = c;
    fHardwareIndex[static_cast<unsigned>(i)] = static_cast<std::uint16_t>(hardware);
}

void TglColorTable::setColor(ColorPlane& plane, short i, const TportColor& c)
{
    setColor(&plane, static_cast<std::uint16_t>(i), c);
}

void TglColorTable::setColor(short i, const TportColor& c)
{
    setColor(nullptr, static_cast<std::uint16_t>(i), c);
}

void TglColorTable::setColor(const ColorPlane* plane, unsigned i, const TportColor& c)
{
    if (i >= size())
        return;
    // The planes below a shifted one take part in every hardware index: an entry shows in as many cells as they have
    // entries. Counting in 64 bits, which no plane's shift leaves.
    std::uint64_t local = i;
    std::uint64_t last = i;
    if (plane && plane->fBits != 0) {
        const std::uint64_t fromOne = i + (plane->fFirst > 0 ? 1u : 0u);
        local = fromOne > plane->fFirst ? (fromOne - plane->fFirst) << std::min<unsigned>(plane->fShift, 31) : 0;
        last = local + plane->fFirst;
    }
    XColor cell{};
    cell.red = cellIntensity(c.r);
    cell.green = cellIntensity(c.g);
    cell.blue = cellIntensity(c.b);
    cell.flags = DoRed | DoGreen | DoBlue;
    XColorArray& stored = cells();
    stored.clear();
    for (std::uint64_t index = local; index <= last; ++index) {
        cell.pixel = fBase + index;
        stored.append(cell);
    }
    fColors[i] = c;
    fHardwareIndex[i] = static_cast<std::uint16_t>(fBase + local);
}

const XColorArray& TglColorTable::storedColors()
{
    return cells();
}

void TglColorTable::copyColors(const TglColorTable& other)
{
    const std::uint16_t base = fBase;
    *this = other;
    fBase = base;
    std::fill(fHardwareIndex.begin(), fHardwareIndex.end(), std::uint16_t(0));
}
