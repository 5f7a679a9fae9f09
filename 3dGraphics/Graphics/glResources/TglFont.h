#pragma once

#include "Export.h"
#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TsharedObject.h"
#include "foundation/Tstring.h"

#include <cstdint>

namespace nbGR {
class Font;
}

/** A handle on an X server font drawn as OpenGL display lists, one per character. Copies share the font. */
class LIRN_3DGRAPHICS_EXPORT TglFont
{
public:
    /** The font behind the handles. */
    class LIRN_3DGRAPHICS_EXPORT TglFontRef : public TsharedObject
    {
    public:
        TglFontRef(const char* name, float size);
        ~TglFontRef() override;

        Tstring fName;                   ///< X logical font description
        float fSize;                     ///< points asked for, later the size found
        std::uint32_t fHeight = 0;       ///< largest ascent plus descent, pixels
        std::uint32_t fDescent = 0;      ///< largest descent, pixels
        std::uint16_t fWidths[128] = {}; ///< advance in pixels by character code
        float fScale = 1.0f;             ///< size asked for divided by the size found
        TcountedPtr<TglListId> fLists;
        nbGR::Font* fGRFont = nullptr; ///< owned
        bool fBuilt = false;
    };

    /** A handle on the default font. */
    TglFont();
    /** A new font of the X name @p name; nothing is loaded yet. */
    TglFont(const char* name, float size);

    /** 12-point bold Helvetica, made on first use and kept until exit. */
    static TglFont& defaultFont();
    /** Replaces the default font; the one before is not freed. */
    static void setDefaultFont(TglFont* font);

    /** The X name, "" for a null handle. */
    const char* fontName() const;
    /** The size in points, 0 for a null handle. */
    float fontSize() const;

private:
    static TglFont* fsDefault;

    TcountedPtr<TglFontRef> fRef;
};
