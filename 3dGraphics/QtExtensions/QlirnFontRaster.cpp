#include "QtExtensions/QlirnFontRaster.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace {

constexpr int kMaxWeight = 99;
constexpr int kMaxStretch = 4000;
// Deprecated by name in Qt 5, where it smooths the lines of smooth text.
constexpr auto kHighQuality = QPainter::RenderHint(0x08);

QString fromUtf8(const Tstring& text)
{
    return QString::fromUtf8(text.asChar(), static_cast<int>(std::min(text.length(), 0x7FFFFFFFu)));
}

/** Coverage laid over coverage, as Qt's painter rounds it. */
unsigned char over(unsigned char source, unsigned char destination)
{
    const unsigned rest = (255u - source) * destination;
    return static_cast<unsigned char>(source + ((rest + (rest >> 8) + 0x80) >> 8));
}

Tstring toTstring(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return Tstring(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace

QlirnFontRaster::QlirnFontRaster(const Tstring& family, int pixelSize, Style style)
{
    if (!qApp)
        return;
    fFont = std::make_unique<QFont>(fromUtf8(family));
    fFont->setPixelSize(std::clamp(pixelSize, 1, kLargestPixelSize));
    // Hinted outlines keep to whole pixels. Shaping would put one glyph in the place of two characters.
    fFont->setKerning(false);
    fFont->setStyleStrategy(QFont::PreferNoShaping);
    fFont->setHintingPreference(QFont::PreferFullHinting);
    setIncline(int(style >> kInclineShift & 0x3u));
    setLine(int(style >> kLineShift & 0x3u));
    setWeight(int(style >> kWeightShift & 0x7Fu));
    setStretch(int(style >> kStretchShift & 0xFFFu));
    fMetrics = std::make_unique<QFontMetrics>(*fFont);
    fontChanged();
}

QlirnFontRaster::~QlirnFontRaster() = default;

void QlirnFontRaster::fontChanged()
{
    if (!fMetrics)
        return;
    *fMetrics = QFontMetrics(*fFont);
    const QFontInfo actual(*fFont);
    fActualFamily = toTstring(actual.family());
    fActualPixelSize = actual.pixelSize();
    fHeight = fMetrics->height();
    fSmoothStrip.reset();
    fMonoStrip.reset();
    fStripWidth = 0;
    fMemory = 0;
}

void QlirnFontRaster::setIncline(int incline)
{
    if (!fFont)
        return;
    fFont->setStyle(incline == 1 ? QFont::StyleItalic : incline == 2 ? QFont::StyleOblique : QFont::StyleNormal);
    fontChanged();
}

void QlirnFontRaster::setLine(int line)
{
    if (!fFont)
        return;
    if (line == 0) {
        fFont->setOverline(false);
        fFont->setUnderline(false);
        fFont->setStrikeOut(false);
    } else if (line == 1) {
        fFont->setOverline(true);
    } else if (line == 2) {
        fFont->setUnderline(true);
    } else if (line == 3) {
        fFont->setStrikeOut(true);
    }
    fontChanged();
}

void QlirnFontRaster::setWeight(int weight)
{
    if (!fFont)
        return;
    fFont->setWeight(std::clamp(weight, 0, kMaxWeight));
    fontChanged();
}

void QlirnFontRaster::setStretch(int percent)
{
    if (!fFont)
        return;
    fFont->setStretch(std::clamp(percent, 0, kMaxStretch));
    fontChanged();
}

bool QlirnFontRaster::isItalic() const
{
    return fFont && fFont->style() != QFont::StyleNormal;
}

bool QlirnFontRaster::isBold() const
{
    return fFont && fFont->bold();
}

bool QlirnFontRaster::hasUnderline() const
{
    return fFont && fFont->underline();
}

bool QlirnFontRaster::hasOverline() const
{
    return fFont && fFont->overline();
}

bool QlirnFontRaster::hasStrikeoutLine() const
{
    return fFont && fFont->strikeOut();
}

bool QlirnFontRaster::hasLine() const
{
    return hasUnderline() || hasOverline() || hasStrikeoutLine();
}

int QlirnFontRaster::getFontList(TstringArray& out)
{
    out.clear();
    if (qApp) {
        for (const QString& family : QFontDatabase().families())
            out.append(toTstring(family));
    }
    return static_cast<int>(out.length());
}

bool QlirnFontRaster::usesStrip(const Tstring& text) const
{
    const char* const bytes = text.asChar();
    return !isItalic() && !hasLine() && std::all_of(bytes, bytes + text.length(), [](char c) {
        return static_cast<unsigned char>(c) < kCharacters;
    });
}

int QlirnFontRaster::getWidth(const Tstring& text)
{
    if (!fMetrics)
        return 0;
    if (usesStrip(text) && buildAsciiBitmap(true)) {
        long long width = 0;
        for (const char* c = text.asChar(); c != text.asChar() + text.length(); ++c)
            width += fWidths[static_cast<unsigned char>(*c)];
        return static_cast<int>(std::min(width, 0x7FFFFFFFll));
    }
    const QString whole = fromUtf8(text);
    if (!isItalic())
        return fMetrics->horizontalAdvance(whole);
    const QRect bounds = fMetrics->boundingRect(whole);
    return bounds.right() - bounds.left() + fActualPixelSize / 2 + 1;
}

bool QlirnFontRaster::getTextImage(const Tstring& text, bool smooth, unsigned char* out, int rowStride)
{
    if (!fFont || !fMetrics || !out)
        return false;
    if (!usesStrip(text) || !buildAsciiBitmap(smooth)) {
        const int width = std::min(getWidth(text), rowStride);
        return width <= 0 || drawTextImage(fromUtf8(text), width, smooth, out, rowStride);
    }
    const Strip& strip = smooth ? *fSmoothStrip : *fMonoStrip;
    const char* const end = text.asChar() + text.length();
    int room = 0;
    for (const char* c = text.asChar(); c != end && room < rowStride; ++c)
        room = std::min(rowStride, room + fWidths[static_cast<unsigned char>(*c)]);

    int written = 0;
    // Lays columns of a character over what others have left there, and writes those that nothing has reached before.
    const auto put = [&](const unsigned char* from, int fromStride, int left, int columns) {
        const int first = std::max(left, 0);
        const int last = std::min(left + columns, room);
        if (first >= last)
            return;
        const int fresh = std::clamp(written, first, last);
        from += first - left;
        unsigned char* to = out;
        for (int row = 0; row < fHeight; ++row, from += fromStride, to += rowStride) {
            for (int x = first; x < fresh; ++x)
                to[x] = over(from[x - first], to[x]);
            std::memcpy(to + fresh, from + (fresh - first), static_cast<std::size_t>(last - fresh));
        }
        written = std::max(written, last);
    };
    int x = 0;
    for (const char* c = text.asChar(); c != end && x < room; ++c) {
        const auto code = static_cast<unsigned char>(*c);
        const int width = fWidths[code];
        const Spill& spill = strip.fSpills[code];
        if (spill.fLeft > 0)
            put(spill.fLeftPixels.data(), spill.fLeft, x - spill.fLeft, spill.fLeft);
        put(strip.fPixels.get() + fOffsets[code], fStripWidth, x, width);
        if (spill.fRight > 0)
            put(spill.fRightPixels.data(), spill.fRight, x + width, spill.fRight);
        x += width;
    }
    return true;
}

bool QlirnFontRaster::drawTextImage(const QString& text, int width, bool smooth, unsigned char* out,
                                    int rowStride) const
{
    if (!fFont || !out || width <= 0 || rowStride < width)
        return false;
    QImage image(width, fHeight, smooth ? QImage::Format_ARGB32_Premultiplied : QImage::Format_MonoLSB);
    if (image.isNull())
        return false;
    image.fill(QColor(0, 0, 0, 0));
    QPainter painter(&image);
    painter.setFont(*fFont);
    painter.setPen(QColor(255, 255, 255, 255));
    painter.setRenderHints(QPainter::TextAntialiasing | kHighQuality);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawText(QRect(QPoint(0, 0), QPoint(width - 1, fHeight - 1)), Qt::AlignCenter, text);
    painter.end();

    for (int row = 0; row < fHeight; ++row, out += rowStride) {
        const uchar* const line = image.constScanLine(fHeight - 1 - row);
        if (smooth) {
            const auto* const pixels = reinterpret_cast<const QRgb*>(line);
            std::transform(pixels, pixels + width, out, [](QRgb pixel) { return uchar(qAlpha(pixel)); });
        } else {
            for (int x = 0; x < width; ++x)
                out[x] = line[x / 8] >> (x % 8) & 1 ? 0xFF : 0;
        }
    }
    return true;
}

void QlirnFontRaster::findSpill(unsigned char code, bool smooth, Spill& spill) const
{
    const int margin = std::min(4 * fHeight, fHeight / 2 + 96); // hinting of very small sizes leaves long streaks
    const int width = fWidths[code];
    const int stride = width + 2 * margin;
    std::vector<unsigned char> image(static_cast<std::size_t>(stride) * static_cast<std::size_t>(fHeight));
    if (!drawTextImage(QString(QChar(code)), stride, smooth, image.data(), stride))
        return;
    const auto isEmpty = [&](int x) {
        for (std::size_t at = static_cast<std::size_t>(x); at < image.size(); at += static_cast<std::size_t>(stride)) {
            if (image[at] != 0)
                return false;
        }
        return true;
    };
    const auto columns = [&](int left, int count) {
        std::vector<unsigned char> pixels;
        for (auto row = image.begin() + left; count > 0 && pixels.size() < std::size_t(count) * std::size_t(fHeight);
             row += stride)
            pixels.insert(pixels.end(), row, row + count);
        return pixels;
    };
    // From outside inwards: there may be gaps.
    spill.fLeft = spill.fRight = margin;
    while (spill.fLeft > 0 && isEmpty(margin - spill.fLeft))
        --spill.fLeft;
    while (spill.fRight > 0 && isEmpty(margin + width + spill.fRight - 1))
        --spill.fRight;
    spill.fLeftPixels = columns(margin - spill.fLeft, spill.fLeft);
    spill.fRightPixels = columns(margin + width, spill.fRight);
}

bool QlirnFontRaster::buildAsciiBitmap(bool smooth)
{
    if (!fFont || !fMetrics)
        return false;
    std::unique_ptr<Strip>& strip = smooth ? fSmoothStrip : fMonoStrip;
    if (strip)
        return true;
    if (fStripWidth == 0) {
        for (int c = 1; c < kCharacters; ++c) {
            fOffsets[c] = fStripWidth;
            fWidths[c] = std::max(0, fMetrics->horizontalAdvance(QChar(c)));
            fStripWidth += fWidths[c];
        }
    }
    const std::size_t size = static_cast<std::size_t>(fStripWidth) * static_cast<std::size_t>(fHeight);
    auto made = std::make_unique<Strip>();
    made->fPixels.reset(new (std::nothrow) unsigned char[size]());
    if (!made->fPixels)
        return false;
    fMemory += static_cast<std::int64_t>(size);
    for (int c = 1; c < kCharacters; ++c) {
        if (fWidths[c] <= 0)
            continue;
        drawTextImage(QString(QChar(c)), fWidths[c], smooth, made->fPixels.get() + fOffsets[c], fStripWidth);
        findSpill(static_cast<unsigned char>(c), smooth, made->fSpills[c]);
    }
    strip = std::move(made);
    return true;
}
