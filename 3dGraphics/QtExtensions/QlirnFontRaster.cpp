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

QString fromUtf8(const Tstring& text)
{
    return QString::fromUtf8(text.asChar(), static_cast<int>(std::min(text.length(), 0x7FFFFFFFu)));
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
    fFont->setKerning(false);
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
    return !isItalic() && !hasLine() &&
           std::all_of(bytes, bytes + text.length(), [](char c) { return static_cast<unsigned char>(c) < kCharacters; });
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
    const unsigned char* const strip = (smooth ? fSmoothStrip : fMonoStrip).get();
    int room = rowStride;
    const char* const end = text.asChar() + text.length();
    for (const char* c = text.asChar(); c != end && room > 0; ++c) {
        const auto code = static_cast<unsigned char>(*c);
        const int columns = std::min(fWidths[code], room);
        const unsigned char* from = strip + fOffsets[code];
        unsigned char* to = out;
        for (int row = 0; row < fHeight; ++row, from += fStripWidth, to += rowStride)
            std::memcpy(to, from, static_cast<std::size_t>(columns));
        out += columns;
        room -= columns;
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
    painter.setRenderHint(QPainter::TextAntialiasing);
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

bool QlirnFontRaster::buildAsciiBitmap(bool smooth)
{
    if (!fFont || !fMetrics)
        return false;
    std::unique_ptr<unsigned char[]>& strip = smooth ? fSmoothStrip : fMonoStrip;
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
    strip.reset(new (std::nothrow) unsigned char[size]());
    if (!strip)
        return false;
    fMemory += static_cast<std::int64_t>(size);
    for (int c = 1; c < kCharacters; ++c) {
        if (fWidths[c] > 0)
            drawTextImage(QString(QChar(c)), fWidths[c], smooth, strip.get() + fOffsets[c], fStripWidth);
    }
    return true;
}
