#include <QWidget>

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/textures/TglTextureObject.h"
#include "RawWindow.h"
#include "Textures.h"

#include <GL/glext.h>
#include <GL/glu.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr Aim kStrip{Aim::kRatio, 1.3};
constexpr Aim kZoom{Aim::kRatio, 1.0 / 12};
constexpr Aim kApply{Aim::kRatio, 1.1};
constexpr int kSide = 2048;

/** A picture with something of all frequencies. */
std::vector<std::uint8_t> makePicture(int width, int height)
{
    std::vector<std::uint8_t> bytes(std::size_t(width) * std::size_t(height) * 4);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = std::uint8_t((i * 7 + i / 4000 * 3) & 0x7F) + std::uint8_t(i % 61);
    return bytes;
}

/** Whether both pictures have about the same mean. */
bool isAlike(const std::uint8_t* a, const std::uint8_t* b, std::size_t count)
{
    long sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += a[i] - b[i];
    return std::abs(sum) < long(count);
}

} // namespace

bool addTextureRows(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                    std::vector<Row>& rows)
{
    const auto bindRaw = [&raw] { raw.makeCurrent(); };
    const auto row = [&](const char* name, Aim aim, auto portPass, auto rawPass) {
        if (QString(name).contains(filter, Qt::CaseInsensitive))
            rows.push_back(compare(name, aim, {bindPort, [=](long count) { return timeLoop(count, portPass); }},
                                   {bindRaw, [=](long count) { return timeLoop(count, rawPass); }},
                                   {[] {}, [](long count) { return timeLoop(count, [](long) {}); }}));
    };

    const std::vector<std::uint8_t> large = makePicture(kSide, kSide);
    std::vector<std::uint8_t> stripped(large.size()), copied(large.size());
    row(
        "strip alpha, 2048 x 2048", kStrip,
        [from = reinterpret_cast<const unsigned*>(large.data()), to = stripped.data()](long) {
            TglTextureObject::stripAlphaChannel(kSide * kSide, from, to);
        },
        [from = large.data(), to = copied.data(), size = large.size()](long) { std::memcpy(to, from, size); });

    std::vector<std::uint8_t> picture = makePicture(1000, 700);
    std::vector<std::uint8_t> scaled(1024 * 512 * 4);
    TpixelMap map;
    const auto zoom = [&map, pixels = picture.data()](long) {
        map.wrap(pixels, 1000, 700);
        map.zoom(TportRect(0, 0, 1024, 512));
    };
    const auto scale = [from = picture.data(), to = scaled.data()](long) {
        gluScaleImage(GL_RGBA, 1000, 700, GL_UNSIGNED_BYTE, from, 1024, 512, GL_UNSIGNED_BYTE, to);
    };
    bindRaw();
    zoom(0);
    scale(0);
    if (!isAlike(map.pixels(), scaled.data(), scaled.size())) {
        std::fputs("portbench: resampling: the two sides make different pictures\n", stderr);
        return false;
    }
    row("resample 1000 x 700 to 1024 x 512", kZoom, zoom, scale);

    bindPort();
    TpixelMap image;
    image.wrap(picture.data(), 16, 16);
    const TglTextureObject texture(&image, 0, false);
    bindRaw();
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 16, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, picture.data());
    row(
        "apply an unchanged texture", kApply, [&port, &texture](long) { texture.apply(&port, 0); },
        [name, anisotropic = T3dPort::hasTextureFilterAnisotropic()](long) {
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
            glBindTexture(GL_TEXTURE_2D, name);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
            if (anisotropic)
                glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, 1);
        });
    bindRaw();
    glBindTexture(GL_TEXTURE_2D, 0);
    glDeleteTextures(1, &name);
    bindPort();
    glBindTexture(GL_TEXTURE_2D, 0);
    return true;
}
