#pragma once

#include "foundation/Tstring.h"

class TpixelMap;

/** An image file being written. The ending of the name settles the format: png, bmp, jpg, ppm, xpm and others. */
class TimageFile
{
public:
    /** Starts a file of @p width by @p height pixels. False for a size that is not positive. */
    bool create(const Tstring& name, int width, int height);
    /** Whether the file keeps the alpha channel; it does not at first. */
    void setAlpha(bool alpha) { fAlpha = alpha; }
    /** Writes the picture, whose bottom row is the map's first. False for another size, or when writing fails. */
    bool write(const TpixelMap& map);
    void close();

private:
    Tstring fName;
    int fWidth = 0;
    int fHeight = 0;
    bool fAlpha = false;
};
