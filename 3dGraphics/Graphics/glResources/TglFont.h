#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TsharedObject.h"
#include "foundation/Tstring.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace nbGR {
class Font;
}

/**
 * A handle on an X server font drawn as OpenGL display lists, one per character (glXUseXFont). Copies share the font.
 *
 * Text is bytes, one a character. A font loads when it is first asked for something that needs it and is given a
 * display, an Xlib Display* that is the one of the OpenGL contexts. The lists live in the context that all ports share.
 */
class LIRN_3DGRAPHICS_EXPORT TglFont
{
public:
    /** The font behind the handles. */
    class LIRN_3DGRAPHICS_EXPORT TglFontRef : public TsharedObject
    {
    public:
        TglFontRef(const char* name, float size);
        ~TglFontRef() override;

        TglFontRef(const TglFontRef&) = delete;
        TglFontRef& operator=(const TglFontRef&) = delete;

        /**
         * Loads the font once: widths, extents and display lists. A name that the server has no font for gives way to
         * the bold font of its family whose pixel size is next to the size asked for, the smaller one first. A family
         * that the server does not have is reported ("Failed trying to load font : " and the name), and looked for
         * again by the next call.
         */
        void buildFont(void* display);
        /** The font in the graphics library's terms, loaded if need be; null as long as it cannot be loaded. */
        nbGR::Font* getGRFont(void* display);

        Tstring fName;                   ///< X logical font description; after a search the one found
        float fSize;                     ///< points asked for, later the size found
        std::uint32_t fHeight = 0;       ///< largest ascent plus descent of a measured character, pixels
        std::uint32_t fDescent = 0;      ///< largest descent, pixels
        std::uint16_t fWidths[128] = {}; ///< advance in pixels by character code
        float fScale = 1.0f;             ///< size asked for divided by the size found
        TcountedPtr<TglListId> fLists;   ///< the list of character c is the first one's name plus c
        std::unique_ptr<nbGR::Font> fGRFont;
        bool fBuilt = false;

    private:
        friend class TglFont;

        void makeLists(unsigned long font);
        void drawRun(const char* text, std::size_t length) const;

        unsigned fFirst = 0; ///< lowest character code with a list of its own
        unsigned fLast = 0;
    };

    /** A handle on the default font. */
    TglFont();
    /** A new font of the X name @p name; nothing is loaded yet. */
    TglFont(const char* name, float size);

    /** The X name, "" for a null handle. */
    const char* fontName() const;
    /** The size in points, 0 for a null handle. */
    float fontSize() const;

    /** The sum of the widths of the bytes of @p text in pixels; those above 127 count 0, as does a null text. */
    int textWidth(void* display, const char* text) const;
    /** The largest ascent plus descent of a character, in pixels; 0 as long as the font cannot be loaded. */
    int textHeight(void* display) const;
    /** The largest descent in pixels. */
    int textDescent(void* display) const;
    /**
     * Draws @p text at the raster position, in the colour that this has, and moves it on (glCallLists). Nothing on a core
     * profile. The list base is 0 afterwards.
     */
    void apply(void* display, const char* text) const;

    /** The font behind the handle; null for a null handle. */
    TglFontRef* ref() const { return fRef.get(); }

    // Fonts that are made on first use and kept until exit. The overlay ones have lists of their own.

    /** 14-pixel bold Helvetica. */
    static TglFont& defaultFont();
    /** 11-pixel bold Helvetica, or what LIRN_SMALLFONTNAME named when it was first asked for. */
    static TglFont& smallFont();
    static TglFont& defaultOvlFont();
    static TglFont& smallOvlFont();
    /** Replaces the default font; the one before is not freed. Null brings the built-in one back. */
    static void setDefaultFont(TglFont* font);

private:
    static TglFont* fsDefault;
    static TglFont* fsSmall;
    static TglFont* fsDefaultOvl;
    static TglFont* fsSmallOvl;
    static const Tstring fsPattern; ///< ^1s is the family, ^8d the size in pixels

    TcountedPtr<TglFontRef> fRef;
};
