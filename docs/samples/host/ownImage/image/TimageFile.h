#pragma once

#include "foundation/Tstring.h"

class TpixelMap;

/** A host's own image files, of one format: PPM. What the kit's class of this name does, the library gets from here. */
class TimageFile
{
public:
    bool create(const Tstring& name, int width, int height);
    void setAlpha(bool alpha) { static_cast<void>(alpha); }
    bool write(const TpixelMap& map);
    void close() { fName = Tstring(); }

private:
    Tstring fName;
    int fWidth = 0;
    int fHeight = 0;
};
