// A tiled floor without and with mipmaps, and a ball that mirrors its surroundings.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/textures/TglTextureObject.h"
#include "foundation/T2FloatArray.h"
#include "foundation/Tangle.h"
#include "foundation/TpixelMap.h"

#include <algorithm>
#include <cmath>

namespace {

void put(TpixelMap& map, int x, int y, const TportColor& c)
{
    unsigned char* pixel = map.pixels() + 4 * (y * map.width() + x);
    pixel[0] = static_cast<unsigned char>(255 * c.r);
    pixel[1] = static_cast<unsigned char>(255 * c.g);
    pixel[2] = static_cast<unsigned char>(255 * c.b);
    pixel[3] = 255;
}

void fillTiles(TpixelMap& map)
{
    map.setSize(64, 64);
    map.setRgba(true);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            put(map, x, y,
                x % 32 < 2 || y % 32 < 2     ? TportColor(0.30f, 0.32f, 0.35f)
                : (x / 32 + y / 32) % 2 == 0 ? TportColor(0.90f, 0.87f, 0.80f)
                                             : TportColor(0.45f, 0.60f, 0.72f));
}

/** What a ball far away mirrors: sky above, ground below, a window. */
void fillSphereMap(TpixelMap& map)
{
    map.setSize(256, 256);
    map.setRgba(true);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            const double s = x / 127.5 - 1;
            const double t = y / 127.5 - 1;
            const double nz = std::sqrt(std::max(0.0, 1 - s * s - t * t));
            const double up = 2 * nz * t; // the mirrored direction's y
            const float k = static_cast<float>(0.5 + 0.5 * up);
            TportColor c(0.35f + 0.45f * k, 0.42f + 0.45f * k, 0.50f + 0.48f * k);
            if (up < 0)
                c = TportColor(0.42f * (1 + k), 0.36f * (1 + k), 0.28f * (1 + k));
            if (std::fabs(s + 0.35) < 0.16 && std::fabs(t - 0.35) < 0.16 && std::fabs(s + 0.35) > 0.012)
                c = TportColor(1, 0.99f, 0.94f);
            put(map, x, y, c);
        }
    }
}

void drawFloor(T3dPort& port, const TglTextureObject& tiles)
{
    tiles.apply(&port, 0);
    port.color(kCwhite); // the environment mode multiplies with it
    port.setCurrentContext();
    glEnable(GL_TEXTURE_2D);
    glBegin(GL_QUADS);
    for (const auto& corner : {T2Float{-1, 0}, T2Float{1, 0}, T2Float{1, 1}, T2Float{-1, 1}}) {
        glTexCoord2f(10 * corner.x, 40 * corner.y);
        glVertex3f(10 * corner.x, 40 * corner.y, 0);
    }
    glEnd();
    glDisable(GL_TEXTURE_2D);
}

void drawMirror(T3dPort& port, const TglTextureObject& surroundings)
{
    surroundings.apply(&port, 0); // with it, generated coordinates
    port.color(kCwhite);
    port.pushMatrix();
    port.translate(0, 9, 1.5);
    port.setCurrentContext();
    glEnable(GL_TEXTURE_2D);
    for (int i = 0; i < 32; ++i) {
        glBegin(GL_QUAD_STRIP);
        for (int j = 0; j <= 64; ++j) {
            for (int k = 0; k < 2; ++k) {
                const double a = (i + k) * Tangle::kPi / 32;
                const double b = j * Tangle::kPi / 32;
                const double n[] = {std::sin(a) * std::cos(b), std::sin(a) * std::sin(b), std::cos(a)};
                glNormal3dv(n);
                glVertex3d(1.5 * n[0], 1.5 * n[1], 1.5 * n[2]);
            }
        }
        glEnd();
    }
    glDisable(GL_TEXTURE_2D);
    port.setTextureGenMode(TglContext::kGenOff);
    port.popMatrix();
}

void look(T3dPort& port)
{
    port.clearColor(TportColor(0.80f, 0.85f, 0.90f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(38, double(port.portRect().width()) / port.portRect().height(), 0.5, 60);
    port.loadIdentity();
    port.rotate(Tangle::fromDegrees(-82).radians, 0, 0); // y away from the eye, z up
    port.translate(0, 0, -2.2);
    port.depthTest(true);
}

QImage run()
{
    TpixelMap tilePixels;
    fillTiles(tilePixels);
    TpixelMap mirrorPixels;
    fillSphereMap(mirrorPixels);
    QList<QImage> pictures;
    for (const bool mipmaps : {false, true}) {
        pictures << Sample::drawing(QSize(300, 260), 1, [&](T3dPort& port) {
            TglTextureObject tiles;
            tiles.setFlag(TglTextureObject::kMipmaps, mipmaps);
            tiles.texImage2D(&tilePixels, false, 0);
            if (!mipmaps)
                tiles.setFilters(TglContext::kNearest, TglContext::kNearest);
            TglTextureObject surroundings;
            surroundings.texImageSphereMap(&mirrorPixels, false);
            look(port);
            drawFloor(port, tiles);
            drawMirror(port, surroundings);
        });
    }
    return Sample::sideBySide(pictures);
}

const Sample sample("textures", run);

} // namespace
