// A chart: its curve, marks and writing.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "QtExtensions/QlirnFontRaster.h"
#include "foundation/T2Int32.h"
#include "foundation/TpixelMap.h"

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

const TportColor kInk(0.20f, 0.24f, 0.28f);
const TportColor kPaper(0.97f, 0.97f, 0.96f);

double height(double t)
{
    return 1.4 * std::exp(-0.35 * t) * std::cos(3 * t);
}

void drawAxes(T3dPort& port)
{
    port.color(TportColor(0.80f, 0.81f, 0.83f));
    for (int t = 0; t <= 6; ++t)
        port.line(static_cast<float>(t), -1.2f, static_cast<float>(t), 1.5f);
    port.color(kInk);
    port.line(0, 0, 6, 0);
    port.line(0, -1.2f, 0, 1.5f);
    port.font(TglFont::smallFont());
    for (int t = 0; t <= 6; ++t) {
        char label[16];
        std::snprintf(label, sizeof label, "%d s", t);
        port.text(T4dDblPoint(t, -1.4, 0), label, T3dPort::kCenter);
    }
    for (int y = -1; y <= 1; ++y) {
        char label[16];
        std::snprintf(label, sizeof label, "%d cm ", y);
        port.text(T4dDblPoint(0, y - 0.03, 0), label, T3dPort::kRight); // ends at the point
    }
}

void drawPeaks(T3dPort& port)
{
    static const char* const rows[] = {"   #   ", "  ###  ", " ##### ", "#######"}; // the top row first
    static const TglBitmap arrow(rows, 7, 4, 3, 0);
    const T2Int32 box{64, 18};
    port.font(TglFont::defaultFont());
    for (int i = 0; i < 3; ++i) {
        const double t = 2.0944 * i;
        const T4dDblPoint peak(t, height(t), 0);
        port.color(TportColor(0.80f, 0.30f, 0.20f));
        port.bitmap(peak, TglBitmap::kFilledCircle);
        port.bitmap(T4dDblPoint(t, height(t) - 0.2, 0), arrow);
        char label[24];
        std::snprintf(label, sizeof label, "%.2f cm", height(t));
        port.color(kInk);
        port.text(T4dDblPoint(t + 0.12, height(t) + 0.02, 0), label, T3dPort::kLeft, &box,
                  TportColor(1.0f, 0.93f, 0.75f));
    }
}

/** Smooth text in any script: an image of coverage, made a map of one colour and drawn by blending. */
void drawSmooth(T3dPort& port, const T4dDblPoint& where, const Tstring& text, int size)
{
    QlirnFontRaster raster("sans", size, QlirnFontRaster::style(0, 0, 75));
    const int width = raster.getWidth(text);
    std::vector<unsigned char> coverage(static_cast<std::size_t>(width * raster.getHeight()));
    if (width < 1 || !raster.getTextImage(text, true, coverage.data(), width))
        return;
    TpixelMap map;
    map.setSize(width, raster.getHeight());
    map.setRgba(true);
    for (std::size_t i = 0; i < coverage.size(); ++i) {
        const unsigned char pixel[] = {51, 61, 71, coverage[i]};
        std::copy(pixel, pixel + 4, map.pixels() + 4 * i);
    }
    port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    port.blending(true);
    port.pixelMapDraw(where, map, false);
    port.blending(false);
}

void draw(T3dPort& port)
{
    port.clearColor(kPaper);
    port.clear(GL_COLOR_BUFFER_BIT);
    port.ortho(-0.7, 6.4, -1.75, 2.25);
    port.loadIdentity();
    drawAxes(port);

    port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    port.lineSmoothing(true); // switches blending on
    port.lineWidth(2);
    port.color(TportColor(0.20f, 0.45f, 0.70f));
    for (int i = 0; i < 300; ++i)
        port.line(static_cast<float>(0.02 * i), static_cast<float>(height(0.02 * i)),
                  static_cast<float>(0.02 * (i + 1)), static_cast<float>(height(0.02 * (i + 1))));
    port.lineSmoothing(false);
    port.lineWidth(1);
    drawPeaks(port);
    drawSmooth(port, T4dDblPoint(1.2, 1.85, 0), "A weight on a spring: 1.4 e⁻⁰·³⁵ᵗ cos 3t", 17);
}

const Sample sample("text", [] { return Sample::drawing(QSize(600, 320), 1, draw); });

} // namespace
