#include "ui/Tcontrol.h"

#include "foundation/TportRect.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

namespace {

// Itanium C++ ABI, 2.3: a pointer to a virtual member function begins with 1 plus the function's offset in the table.
template <class F> std::size_t slotOf(F function)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof(function) >= sizeof(offset));
    std::memcpy(&offset, &function, sizeof(offset));
    return static_cast<std::size_t>(offset - 1) / sizeof(void*);
}

} // namespace

TEST(Tcontrol, VirtualFunctionsStandInTheirSlots)
{
    using ReadMap = bool (Tcontrol::*)(TpixelMap&, short);
    using ReadFloats = bool (Tcontrol::*)(TgenericPixelMap<float>&, TportRect, PixelMapReadColorSpace);
    const std::vector<std::size_t> found = {
        slotOf(&Tcontrol::typeof),
        slotOf(&Tcontrol::cast),
        slotOf(&Tcontrol::doPress),
        slotOf(&Tcontrol::doDoubleClick),
        slotOf(&Tcontrol::doUpdate),
        slotOf(&Tcontrol::doEnterRegion),
        slotOf(&Tcontrol::doExitRegion),
        slotOf(&Tcontrol::doStow),
        slotOf(&Tcontrol::doUnStow),
        slotOf(&Tcontrol::doPtrMoved),
        slotOf(&Tcontrol::doMouseWheel),
        slotOf(&Tcontrol::visibleNotify),
        slotOf(&Tcontrol::adjustEventLocalPosition),
        slotOf(&Tcontrol::beginSelect),
        slotOf(&Tcontrol::endSelect),
        slotOf(static_cast<ReadMap>(&Tcontrol::pixelMapRead)),
        slotOf(static_cast<ReadFloats>(&Tcontrol::pixelMapRead)),
        slotOf(&Tcontrol::parentWindowMoveNotify),
        slotOf(&Tcontrol::resize),
    };
    std::vector<std::size_t> expected(found.size());
    std::iota(expected.begin(), expected.end(), 2); // after the two destructors
    EXPECT_EQ(found, expected);
}
