#pragma once

#include "Graphics/Export.h"
#include "foundation/Tarray.h"
#include "foundation/TportColor.h"

#include <cstdint>

class XColorArray;

using TcolorIndexArray = Tarray<std::uint16_t>;

/** The colour-index planes drawn into: 4, 2 or 1 for one plane, 7 for the whole table. */
using TindexBuffer = std::uint32_t;

/**
 * Maps small colour indices to RGBA colours and to the hardware index given to OpenGL. With a topology the entries are
 * split into up to three planes, one per index buffer.
 */
class LIRN_3DGRAPHICS_EXPORT TglColorTable
{
public:
    /** A run of entries drawn into one index buffer. */
    struct ColorPlane
    {
        std::uint16_t fBits = 0;
        std::uint16_t fShift = 0; ///< position of the plane in the hardware index
        std::uint16_t fSize = 0;  ///< entries
        std::uint16_t fFirst = 0; ///< index of the first entry
        std::uint32_t fMask = 0;
        std::uint32_t fUnit = 0;
    };

    /** An empty table; @p base is its key among the tables of the process. */
    explicit TglColorTable(short base);

    /**
     * Lays the planes out one after the other: @p bitsA bits for buffer 4, then @p bitsB for buffer 2, then @p bitsC
     * for buffer 1, at most 15 each; a count of zero leaves the plane out. Every plane but the first gives up one entry,
     * so that its hardware index 0 stays free. Resizes the table to the planes' entries and zeroes the hardware indices.
     */
    void setColorTableTopology(unsigned short base, unsigned short bitsB, unsigned short bitsC, unsigned short bitsA);
    bool hasTopology() const { return fHasTopology; }

    unsigned short base() const { return fBase; }
    unsigned size() const { return fColors.length(); }
    /** Last index minus first; 0 for an empty table. */
    short indexSpan() const { return static_cast<short>(size() ? size() - 1 : 0); }

    /** The colour of entry @p i, or of entry 1 outside the table; opaque black when there is no entry 1 either. */
    TportColor colorRGB(short i) const;
    /** The hardware index of entry @p i, or of entry 1 outside the table; 0 when there is no entry 1 either. */
    std::uint16_t hardwareIndex(short i) const;

    /**
     * The first entry of exactly the colour @p c: in the plane of buffer 4, 2 or 1, whose first entry it is when there is
     * none, or for 7 in the whole table, 1 when there is none. 1 for any other buffer.
     */
    short colorIndex(const TportColor& c, TindexBuffer which) const;
    /** First entry of the plane of buffer 4, 2 or 1; 0 for any other buffer. */
    short firstIndex(TindexBuffer which) const;

    /** Sets entry @p i, counted without sign; the table grows if need be. With a topology as setColor. */
    void setColorTable(short i, const TportColor& c);
    /** Sets entry @p i and its hardware index (its low 16 bits); nothing outside the table. */
    void setColorTable(int i, const TportColor& c, int hardware);
    /**
     * Sets entry @p i of @p plane and gives it its hardware index, and lists the colour cells that show it in storedColors.
     * Nothing outside the table.
     */
    void setColor(ColorPlane& plane, short i, const TportColor& c);
    /** As above for an entry of no plane: the hardware index is base + @p i. */
    void setColor(short i, const TportColor& c);
    /** The cells of the last setColor of any table, for XStoreColors in a colormap of the window's; nobody stores them here. */
    static const XColorArray& storedColors();
    /** Takes over the colours and the topology of @p other; the hardware indices are 0 then. */
    void copyColors(const TglColorTable& other);

private:
    const ColorPlane* planeOf(TindexBuffer which) const;
    void setColor(const ColorPlane* plane, unsigned i, const TportColor& c);

    TportColorArray fColors;
    TcolorIndexArray fHardwareIndex;
    std::uint16_t fBase;
    bool fHasTopology = false;
    ColorPlane fPlaneA; ///< index buffer 4
    ColorPlane fPlaneB; ///< index buffer 2
    ColorPlane fPlaneD; ///< index buffer 1
};

using TglColorTablePtrArray = Tarray<TglColorTable*>;
