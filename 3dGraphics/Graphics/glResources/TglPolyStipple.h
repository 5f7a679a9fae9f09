#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"

/**
 * A polygon stipple (glPolygonStipple), a 32 by 32 bit mask, and the display list that applies it once it has been drawn
 * with. Copies share the list.
 */
class LIRN_3DGRAPHICS_EXPORT TglPolyStipple
{
public:
    static constexpr int kRows = 32;
    static constexpr int kRowBytes = 4;
    static constexpr int kMaskBytes = kRows * kRowBytes;

    /** A 4 by 4 tile: nibble r of @p code (0 the lowest) fills the rows r, r + 4, ... 0xFFFF is solid. */
    explicit TglPolyStipple(unsigned short code);
    /**
     * From @p count bytes: 128 are the mask itself; 32 a 16 by 16 pattern, two bytes a row, written into the even rows and
     * the odd ones from 25, the other rows staying empty; 8 a pattern of a byte a row, repeated every 7 rows. Any other
     * count, and null, is solid.
     */
    TglPolyStipple(const unsigned char* bytes, int count);

    /** True when the mask hides nothing. */
    bool isSolid() const { return fSolid; }
    /** The mask, kMaskBytes bytes in glPolygonStipple's layout. */
    const unsigned char* mask() const { return fMask; }

    static const TglPolyStipple kSolid;
    static const TglPolyStipple kHalftone;
    static const TglPolyStipple k25Percent;
    static const TglPolyStipple k75Percent;
    static const TglPolyStipple kSlash;

private:
    friend class T3dPort;

    void fillRow(int row, unsigned char a, unsigned char b);
    void findOutWhetherSolid();

    unsigned char fMask[kMaskBytes] = {};
    mutable TcountedPtr<TglListId> fList; ///< null until first applied
    bool fSolid = false;
};
