#include "Tenvironment.h"

#include "Graphics/3dPort/T3dPort.h"
#include "TviewCamera.h"
#include "foundation/T4dFltMatrix.h"
#include "foundation/TpixelMap.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSphereSide = 512;
constexpr int kCubeSide = 256;

TportColor mixed(const TportColor& a, const TportColor& b, double share)
{
    const auto t = static_cast<float>(std::clamp(share, 0.0, 1.0));
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

/** What is seen in a direction of the world. */
TportColor seen(const T4dDblVector& direction)
{
    constexpr TportColor kZenith{0.16f, 0.27f, 0.44f};
    constexpr TportColor kHorizon{0.86f, 0.88f, 0.86f};
    constexpr TportColor kNearGround{0.17f, 0.15f, 0.13f};
    constexpr TportColor kFarGround{0.46f, 0.42f, 0.37f};
    constexpr TportColor kLamp{1.0f, 0.98f, 0.92f};
    const T4dDblVector d = direction.normalised();
    TportColor colour =
        d.y > 0 ? mixed(kHorizon, kZenith, std::pow(d.y, 0.55)) : mixed(kFarGround, kNearGround, std::pow(-d.y, 0.4));
    // Two soft boxes of light.
    for (const T4dDblVector& lamp : {T4dDblVector(-0.62, 0.62, 0.48), T4dDblVector(0.8, 0.35, -0.49)}) {
        const T4dDblVector side = T4dDblVector(0, 1, 0).cross(lamp).normalised();
        const double ahead = d.dot(lamp);
        const double x = std::fabs(d.dot(side)) / std::max(ahead, 1e-3);
        const double y = std::fabs(d.dot(lamp.cross(side).normalised())) / std::max(ahead, 1e-3);
        if (ahead > 0)
            colour = mixed(colour, kLamp, (0.30 - std::max(x * 0.8, y)) / 0.06);
    }
    return colour;
}

void setPixel(TpixelMap& map, int x, int y, const TportColor& colour)
{
    std::uint8_t* pixel = map.pixels() + static_cast<std::size_t>(y) * map.rowBytes() +
                          static_cast<std::size_t>(x) * TpixelMap::kChannels;
    const float channels[4] = {colour.r, colour.g, colour.b, 1};
    for (int i = 0; i < 4; ++i)
        pixel[i] = static_cast<std::uint8_t>(std::lround(255 * std::clamp(channels[i], 0.0f, 1.0f)));
}

/** Calls @p directionAt with each texel's place, from -1 to 1 each way. */
template <class F> void fill(TpixelMap& map, int side, const F& directionAt)
{
    if (!map.setSize(side, side))
        return;
    map.setRgba(true);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            setPixel(map, x, y, seen(directionAt(2 * (x + 0.5) / side - 1, 2 * (y + 0.5) / side - 1)));
    }
}

} // namespace

void Tenvironment::applySphereMap(T3dPort& port)
{
    port.setCurrentContext();
    if (!fSphereMade) {
        fSphereMade = true;
        TpixelMap map;
        // GL_SPHERE_MAP: a mirroring ball, seen from in front.
        fill(map, kSphereSide, [](double x, double y) {
            const double z = std::sqrt(std::max(0.0, 1 - x * x - y * y));
            return T4dDblVector(2 * z * x, 2 * z * y, 2 * z * z - 1);
        });
        fSphereMap.texImageSphereMap(&map, false);
        fSphereMap.setEnvMode(TglContext::kEnvReplace);
    }
    fSphereMap.apply(&port, 0);
}

void Tenvironment::applyCubeMap(T3dPort& port, const TviewCamera& camera)
{
    port.setCurrentContext();
    if (!fCubeMade) {
        fCubeMade = true;
        TpixelMap maps[6];
        TpixelMap* faces[6];
        // The axes of the faces as OpenGL lays them (GL_TEXTURE_CUBE_MAP_POSITIVE_X and the following).
        for (int face = 0; face < 6; ++face) {
            const double sign = face % 2 ? -1 : 1;
            fill(maps[face], kCubeSide, [&](double s, double t) {
                switch (face / 2) {
                case 0:
                    return T4dDblVector(sign, -t, -sign * s);
                case 1:
                    return T4dDblVector(s, sign, sign * t);
                default:
                    return T4dDblVector(sign * s, -t, sign);
                }
            });
            faces[face] = &maps[face];
        }
        fCubeMap.texImageCubeMap(faces);
        fCubeMap.setEnvMode(TglContext::kEnvReplace);
    }
    fCubeMap.apply(&port, 0);
    // Reflections are generated for the eye; the surroundings belong to the world.
    port.texturePushMatrix();
    port.textureTransform(T4dFltMatrix(camera.orientation().invert()));
}

void Tenvironment::endCubeMap(T3dPort& port)
{
    port.texturePopMatrix();
}
