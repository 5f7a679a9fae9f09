#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/**
 * A one-bit glyph for glBitmap: a marker symbol or an icon, from rows of text, from bytes or from an XPM file.
 *
 * The bits are rows from bottom to top, each of 2 * ceil(width / 16) bytes, the most significant bit of a byte first. The
 * first T3dPort::bitmap compiles them into a display list and frees them. Copies have bits of their own, and share the
 * list. An empty bitmap, which is what becomes of one that cannot be made, draws nothing.
 */
class LIRN_3DGRAPHICS_EXPORT TglBitmap
{
public:
    /**
     * From @p height rows of text, the top one first: what is not a space is a set pixel. A row that is shorter than
     * @p width, or null, is filled up with spaces. (@p xorig, @p yorig) is the pixel from below that is put at the point.
     */
    TglBitmap(const char* const* rows, unsigned width, unsigned height, unsigned xorig, unsigned yorig);
    /**
     * From ceil(width / 8) * height bytes, which become the beginning of the bits as they are. Only with an even number of
     * bytes per row are those whole rows.
     */
    TglBitmap(const unsigned char* bytes, unsigned width, unsigned height, unsigned xorig, unsigned yorig);
    /** From a file, see loadPixmap. */
    explicit TglBitmap(const char* name);
    TglBitmap(const TglBitmap& other);
    TglBitmap& operator=(const TglBitmap& other);
    ~TglBitmap();

    /**
     * Loads the XPM file @p name, or else @p name with ".xpm", from the application's bitmap path
     * (TxpmUtil::getFullPathName) in place of what the bitmap holds. At depth 1 colours become one of two pixel values;
     * black pixels are set. The file's hot spot, counted from the top as its rows are, becomes the origin.
     *
     * Failures are reported as "Unable to find bitmap: ..." and "Unable to load bitmap: ...", and leave an empty bitmap.
     * Nothing happens without a name or an application on X. Other threads may load at the same time while
     * TbatchGlobals::fMultithreaded is set.
     */
    void loadPixmap(const char* name);

    /** The bytes of a row of bits. */
    std::size_t rowBytes() const { return 2 * ((std::size_t(fWidth) + 15) / 16); }

    // Markers of 5 by 5 pixels about their middle one.

    static const TglBitmap kSquare;
    static const TglBitmap kFilledSquare;
    static const TglBitmap kCircle;
    static const TglBitmap kFilledCircle;
    static const TglBitmap kDiamond;
    static const TglBitmap kFilledDiamond;

    /** Gives the bits back to calloc, which they come from. */
    struct Free
    {
        void operator()(unsigned char* bits) const { std::free(bits); }
    };

    std::uint32_t fWidth = 0;
    std::uint32_t fHeight = 0;
    std::uint32_t fXorig = 0;
    std::uint32_t fYorig = 0;
    mutable TcountedPtr<TglListId> fList;               ///< null until first drawn
    mutable std::unique_ptr<unsigned char, Free> fBits; ///< null after that

private:
    bool allocate(std::uint64_t width, std::uint64_t height);
    void setPixel(std::size_t x, std::size_t rowFromTop);
    void clear();
};
