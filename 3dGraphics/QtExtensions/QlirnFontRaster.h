#pragma once

#include "Graphics/Export.h"
#include "foundation/Tstring.h"
#include "foundation/TstringArray.h"

#include <cstdint>
#include <memory>
#include <vector>

class QFont;
class QFontMetrics;
class QString;

/**
 * Draws text with Qt's fonts into images of one byte a pixel, how much of it is covered: for what X fonts and display
 * lists cannot do, such as core profiles, text beyond ASCII, and lines.
 *
 * Images are ready for glDrawPixels (or glTexImage2D) with GL_ALPHA and an alignment of 1: the first row is the lowest.
 * They are getHeight rows, each the caller's stride of bytes apart. Smooth images have coverage from 0 to 255, the others
 * 0 or 255.
 *
 * The characters 1 to 127 are drawn once, into a strip that text without slant and lines is put together from. Printable
 * text of 2 to 63 pixels gives the same bytes as drawing it whole; larger text, of which Qt fills all outlines together,
 * may differ where characters touch. Characters stand whole pixels apart, without kerning and ligatures.
 *
 * Text is UTF-8. Without an application object (QGuiApplication) there is no font, and nothing is drawn.
 */
class LIRN_3DGRAPHICS_EXPORT QlirnFontRaster
{
public:
    /** Slant, line, weight and stretch of a font, packed by style. */
    enum Style : std::uint32_t {};

    /**
     * @param incline  as of setIncline
     * @param line     as of setLine
     * @param weight   as of setWeight
     * @param stretch  as of setStretch
     */
    static constexpr Style style(int incline, int line = 0, int weight = 50, int stretch = 100)
    {
        return Style(unsigned(incline & 0x3) << kInclineShift | unsigned(line & 0x3) << kLineShift |
                     unsigned(weight & 0x7F) << kWeightShift | unsigned(stretch & 0xFFF) << kStretchShift);
    }
    /** Upright, of normal weight and width, without a line. */
    static constexpr Style defaultStyle() { return style(0); }

    /** @param pixelSize  held between 1 and kLargestPixelSize */
    QlirnFontRaster(const Tstring& family, int pixelSize, Style style);
    ~QlirnFontRaster();

    QlirnFontRaster(const QlirnFontRaster&) = delete;
    QlirnFontRaster& operator=(const QlirnFontRaster&) = delete;

    // A change of the font drops the strips.

    /** 1 italic, 2 oblique, anything else upright. */
    void setIncline(int incline);
    /** 0 no line, 1 above the text, 2 below, 3 through it; anything else changes nothing. */
    void setLine(int line);
    /** Qt's weight, from 0 to 99: 50 is normal, 75 bold. */
    void setWeight(int weight);
    /** Width in percent of the normal one, up to 4000; 0 for whatever the font has. */
    void setStretch(int percent);

    /** Oblique counts as italic. */
    bool isItalic() const;
    bool isBold() const;
    bool hasUnderline() const;
    bool hasOverline() const;
    bool hasStrikeoutLine() const;
    bool hasLine() const;
    /** Pixels of a line of text, and rows of an image of it; 0 without a font. */
    int getHeight() const { return fHeight; }
    /** The family that Qt had for the one asked for. */
    const Tstring& getActualFamily() const { return fActualFamily; }
    int getActualPixelSize() const { return fActualPixelSize; }
    /** Bytes that the strips take, rows times columns. */
    std::int64_t getMemoryUsage() const { return fMemory; }

    /** Every family of the font data base, in place of what @p out held; returns how many. */
    static int getFontList(TstringArray& out);

    /** Pixels that @p text takes in an image. */
    int getWidth(const Tstring& text);
    /**
     * Draws @p text, cut off at @p rowStride pixels, by the strip if it can be. The bytes of the rows that it does not
     * reach are left alone.
     * @param out  getHeight() rows of @p rowStride bytes
     * @return false without a font or @p out
     */
    bool getTextImage(const Tstring& text, bool smooth, unsigned char* out, int rowStride);
    /**
     * Draws @p text in the middle of an image of @p width pixels, without the strip.
     * @param out  getHeight() rows, of which the first @p width bytes of every @p rowStride are written
     * @return false without a font or @p out, and when there is no memory for it
     */
    bool drawTextImage(const QString& text, int width, bool smooth, unsigned char* out, int rowStride) const;
    /** Makes the strip, which getTextImage does too when it needs it; false without a font or memory. */
    bool buildAsciiBitmap(bool smooth);

    static constexpr int kLargestPixelSize = 2000;

private:
    enum : unsigned { kInclineShift = 0, kLineShift = 2, kWeightShift = 4, kStretchShift = 11 };
    static constexpr int kCharacters = 128;

    /** What of a character lies outside its own columns, left and right of them. */
    struct Spill
    {
        int fLeft = 0;  ///< columns
        int fRight = 0; ///< columns
        std::vector<unsigned char> fLeftPixels;
        std::vector<unsigned char> fRightPixels;
    };
    struct Strip
    {
        std::unique_ptr<unsigned char[]> fPixels;
        Spill fSpills[kCharacters];
    };

    void fontChanged();
    bool usesStrip(const Tstring& text) const;
    void findSpill(unsigned char code, bool smooth, Spill& spill) const;

    std::unique_ptr<QFont> fFont; ///< null without an application object
    std::unique_ptr<QFontMetrics> fMetrics;
    Tstring fActualFamily;
    int fActualPixelSize = 0;
    int fHeight = 0;
    std::unique_ptr<Strip> fSmoothStrip;
    std::unique_ptr<Strip> fMonoStrip;
    int fStripWidth = 0;
    int fWidths[kCharacters] = {};
    int fOffsets[kCharacters] = {};
    std::int64_t fMemory = 0;
};
