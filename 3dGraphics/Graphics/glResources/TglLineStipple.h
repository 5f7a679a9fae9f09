#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"

#include <cstdint>

/**
 * A line stipple (glLineStipple): a 16-bit pattern, each bit repeated @c fFactor times, and the display list that
 * applies it once it has been drawn with. Copies share the list.
 */
class LIRN_3DGRAPHICS_EXPORT TglLineStipple
{
public:
    TglLineStipple() = default;
    explicit TglLineStipple(std::uint16_t pattern, std::int32_t factor = 1) : fPattern(pattern), fFactor(factor) {}

    bool isSolid() const { return fPattern == 0xFFFF; }

    static const TglLineStipple kSolid;
    static const TglLineStipple kDotted;
    static const TglLineStipple kLongDotted;
    static const TglLineStipple kShortDotted;
    static const TglLineStipple kDashed;
    static const TglLineStipple kLongDashed;
    static const TglLineStipple kShortDashed;

    std::uint16_t fPattern = 0xFFFF; ///< the low bit is drawn first; 0xFFFF is a solid line
    std::int32_t fFactor = 1;
    mutable TcountedPtr<TglListId> fList; ///< null until first applied
};
