#pragma once

#include "Graphics/Export.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TsharedObject.h"

#include <GL/gl.h>

#include <cstdint>

class Tstring;

/**
 * A block of pixels that is read from and drawn into the frame buffer, the bottom row first. Copies of a handle share the
 * block until one of them is changed.
 *
 * Sizes that cannot be allocated leave the block without pixels, which no operation minds.
 */
class LIRN_3DGRAPHICS_EXPORT TglPixels
{
public:
    enum TpixelFormat : std::uint32_t {
        kDepth = GL_DEPTH_COMPONENT,
        kRed = GL_RED,
        kGreen = GL_GREEN,
        kBlue = GL_BLUE,
        kAlpha = GL_ALPHA,
        kRgb = GL_RGB,
        kRgba = GL_RGBA,
        kBgra = GL_BGRA
    };

    enum TpixelType : std::uint32_t {
        kUnsignedByte = GL_UNSIGNED_BYTE,
        kUnsignedShort = GL_UNSIGNED_SHORT,
        kUnsignedInt = GL_UNSIGNED_INT,
        kFloat = GL_FLOAT,
        kBitmap = GL_BITMAP
    };

    /** The block behind the handles. */
    class LIRN_3DGRAPHICS_EXPORT TglPixelsData : public TsharedObject
    {
    public:
        TglPixelsData(TpixelFormat format, TpixelType type, int width, int height);
        /** The fields of @p other, without its pixels. */
        TglPixelsData(const TglPixelsData& other);
        ~TglPixelsData() override;
        TglPixelsData& operator=(const TglPixelsData&) = delete;

        /** Bytes of a row, @p padded by one pixel; 0 for a format or type that is none of the above, or too long a row. */
        int rowBytes(bool padded) const;
        /** Bytes to allocate: a spare pixel in each row and a spare row. 0 for an empty block, or one too large. */
        int needed() const;
        /** Sees to it that there is room: grows, and shrinks too when exact. False when there is none. */
        bool alloc();
        void free();

        void setType(TpixelType type);
        /** True when the pixels that the size and format promise are there. */
        bool isComplete() const;

        std::uint8_t* fData = nullptr; ///< malloc; null until allocated
        std::int32_t fByteSize = 0;    ///< allocated
        std::int32_t fAlignment = 1;   ///< of rows, as OpenGL is told: 1, 2 for shorts, 4 for ints and floats
        std::int32_t fWidth = 0;
        std::int32_t fHeight = 0;
        TpixelFormat fFormat;
        TpixelType fType = kUnsignedByte;
        bool fExact = false; ///< the allocation shrinks too
    };

    // Without a type: unsigned ints for depth and alpha, unsigned bytes for the rest.

    explicit TglPixels(TpixelFormat format);
    TglPixels(TpixelFormat format, TpixelType type);
    TglPixels(TpixelFormat format, int width, int height);
    TglPixels(TpixelFormat format, int width, int height, TpixelType type);

    int width() const { return fData ? fData->fWidth : 0; }
    int height() const { return fData ? fData->fHeight : 0; }
    const TglPixelsData* data() const { return fData.get(); }

    /** The pixels, allocated if need be; null for an empty block. Shared with the copies (see makeUnique). */
    std::uint8_t* pixels();
    /** Reads the block from (@p x, @p y) of the read buffer (glReadPixels). */
    void read(int x, int y);
    /** Draws the block at raster position (@p x, @p y) (glDrawPixels), if it is allocated exactly to its size. */
    void write(int x, int y) const;
    /**
     * Writes an image file. The block is blue-green-red-alpha bytes afterwards. False for a depth or one-channel block, and
     * when the file cannot be written.
     */
    bool write(const Tstring& fileName);
    /** Turns the block upside down. */
    void flip();

    // These forget the pixels of a block that is shared; one of its own keeps its bytes, whatever they mean then.

    void resize(int width, int height, bool exact);
    void reformat(TpixelFormat format, bool exact);
    void retype(TpixelType type, bool exact);

    /** Scales this block into the size and type of @p dst, which must have the same format (gluScaleImage). */
    void scaleTo(TglPixels& dst) const;
    /** Makes the block this handle's alone, with its pixels or, if it was shared, without. */
    void split(bool keepPixels);
    void makeUnique() { split(true); }
    /** Drops the block. */
    void free() { fData.reset(); }

private:
    bool convertToBgra();

    TcountedPtr<TglPixelsData> fData;
};
