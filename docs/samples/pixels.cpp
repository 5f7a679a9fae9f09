// A map of heights in the colours of a table, with its legend and a detail of it.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"
#include "foundation/TpixelMap.h"

#include <cmath>
#include <cstdio>

namespace {

constexpr short kColours = 12;

void fillColourTable()
{
    for (short i = 0; i < kColours; ++i) {
        const float t = static_cast<float>(i) / (kColours - 1);
        T3dPort::setColorTable(static_cast<unsigned short>(i),
                               TportColor(0.12f + 0.85f * t, 0.25f + 0.60f * std::sqrt(t), 0.45f - 0.25f * t));
    }
}

double heightAt(double x, double y)
{
    return 0.5 + 0.25 * std::sin(5 * x + 2 * std::cos(3 * y)) + 0.25 * std::cos(4 * y - 2 * x);
}

void fillMap(TpixelMap& map)
{
    map.setSize(280, 220);
    map.setRgba(true);
    unsigned char* pixel = map.pixels(); // the bottom row first
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x, pixel += 4) {
            const double h = heightAt(x / 140.0, y / 140.0);
            const TportColor c = T3dPort::colorTable(static_cast<unsigned short>(h * (kColours - 0.01)));
            pixel[0] = static_cast<unsigned char>(255 * c.r);
            pixel[1] = static_cast<unsigned char>(255 * c.g);
            pixel[2] = static_cast<unsigned char>(255 * c.b);
            pixel[3] = 255;
        }
    }
}

void drawLegend(T3dPort& port)
{
    port.font(TglFont::smallFont());
    for (short i = 0; i < kColours; ++i) {
        const float y = 28 + 16.0f * i;
        port.color(T3dPort::colorTable(static_cast<unsigned short>(i)));
        port.rect(316, y, 340, y + 14, true);
        char label[16];
        std::snprintf(label, sizeof label, "%d m", 100 * i);
        port.color(TportColor(0.20f, 0.24f, 0.28f));
        port.text(T4dDblPoint(346, y + 3, 0), label, T3dPort::kLeft);
    }
}

void drawDetail(T3dPort& port)
{
    TglPixels detail(TglPixels::kRgba, 48, 48);
    port.readPixels(detail, 150, 176); // port pixels
    TglPixels large(TglPixels::kRgba, 160, 160);
    detail.scaleTo(large);
    port.writePixels(large, 400, 60);
}

void draw(T3dPort& port)
{
    port.clearColor(TportColor(0.97f, 0.97f, 0.96f));
    port.clear(GL_COLOR_BUFFER_BIT);
    port.pushOrtho2D(); // coordinates are port pixels until popOrtho2D
    fillColourTable();
    TpixelMap map;
    fillMap(map);
    port.pixelMapDraw(T4dDblPoint(20, 20, 0), map, false);
    drawDetail(port);
    drawLegend(port);
    port.color(TportColor(0.85f, 0.25f, 0.20f));
    port.rect(150, 176, 198, 224, false);
    port.rect(400, 60, 560, 220, false);
    port.popOrtho2D();
}

const Sample sample("pixels", [] { return Sample::drawing(QSize(580, 260), 1, draw); });

} // namespace
