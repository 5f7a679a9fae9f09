#pragma once

#include "foundation/Tstring.h"

#include <array>

namespace nbGR {

/**
 * The metrics of a font of the X server, in pixels. They are taken over when the font is set: a font needs its display
 * no longer then, and may outlive it.
 */
class Font
{
public:
    /**
     * Takes the font of the X logical font description @p name (XLoadQueryFont).
     * @param display  an Xlib Display*
     * @return false for a null display and a name that the server has no font for; the font is empty then
     */
    bool setX11(void* display, const Tstring& name);

    /** True once a font has been set. */
    bool isSet() const { return fIsSet; }
    const Tstring& name() const { return fName; }

    /** Pixels above the base line, of the font as a whole. */
    int ascent() const { return fAscent; }
    /** Pixels below the base line. */
    int descent() const { return fDescent; }
    int height() const { return fAscent + fDescent; }

    /** How far the character @p code moves on; 0 for one that the font does not have. */
    int charWidth(unsigned char code) const { return fWidths[code]; }
    /** The sum over the bytes of @p text; 0 for a null pointer. */
    int textWidth(const char* text) const;

private:
    Tstring fName;
    std::array<short, 256> fWidths{};
    int fAscent = 0;
    int fDescent = 0;
    bool fIsSet = false;
};

} // namespace nbGR
