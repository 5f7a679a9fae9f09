#include "graphicsResources/Font.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <climits>

namespace nbGR {

bool Font::setX11(void* display, const Tstring& name)
{
    *this = Font();
    auto* const x = static_cast<Display*>(display);
    XFontStruct* const font = x ? XLoadQueryFont(x, name.asChar()) : nullptr;
    if (!font)
        return false;
    fName = name;
    fAscent = font->ascent;
    fDescent = font->descent;
    for (unsigned code = 0; code < fWidths.size(); ++code) {
        const char text = static_cast<char>(code);
        fWidths[code] = static_cast<short>(std::clamp(XTextWidth(font, &text, 1), SHRT_MIN, SHRT_MAX));
    }
    XFreeFont(x, font);
    fIsSet = true;
    return true;
}

int Font::textWidth(const char* text) const
{
    long long sum = 0;
    for (; text && *text; ++text)
        sum += charWidth(static_cast<unsigned char>(*text));
    return static_cast<int>(std::clamp<long long>(sum, INT_MIN, INT_MAX));
}

} // namespace nbGR
