// Lit faces, against the fixed-function lighting equations worked out here.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TglLight.h"
#include "foundation/T4dDblMatrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace {

using Vec = std::array<double, 3>;

Vec operator+(const Vec& a, const Vec& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
Vec operator-(const Vec& a, const Vec& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vec operator*(double s, const Vec& a)
{
    return {s * a[0], s * a[1], s * a[2]};
}
Vec times(const Vec& a, const Vec& b)
{
    return {a[0] * b[0], a[1] * b[1], a[2] * b[2]};
}
double dot(const Vec& a, const Vec& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
double length(const Vec& a)
{
    return std::sqrt(dot(a, a));
}
Vec unit(const Vec& a)
{
    return (1 / length(a)) * a;
}
Vec rgb(const TportColor& c)
{
    return {c.r, c.g, c.b};
}

struct Material
{
    TportColor ambient{0.5f, 0.25f, 0.75f};
    TportColor diffuse{0.5f, 0.75f, 0.25f};
    TportColor specular{0.25f, 0.5f, 0.125f};
    TportColor emission{0.0625f, 0, 0.125f};
    double shininess = 8;
};

constexpr TportColor kModelAmbient{0.125f, 0.25f, 0.0625f};
constexpr TportColor kLightColor{0.75f, 0.5f, 0.625f};
constexpr TportColor kLightAmbient{0.25f, 0.125f, 0.25f};

/** A light as OpenGL has it, in eye coordinates. */
struct EyeLight
{
    bool directional = false;
    Vec at{}; ///< position, or the direction towards the light
    Vec ambient = rgb(kLightAmbient);
    Vec attenuation{1, 0, 0};
    double cutoff = 180; ///< degrees
    double exponent = 0;
    Vec spotDirection{0, 0, -1};
};

/** What OpenGL's lighting makes of a vertex at @p p with unit normal @p n, for the viewer at infinity on +z. */
Vec litColor(const Material& m, const EyeLight* light, const Vec& p, const Vec& n)
{
    Vec color = rgb(m.emission) + times(rgb(kModelAmbient), rgb(m.ambient));
    if (light) {
        const Vec toLight = light->directional ? light->at : light->at - p;
        const double d = length(toLight);
        const Vec l = unit(toLight);
        double factor = 1;
        if (!light->directional)
            factor = 1 / (light->attenuation[0] + d * light->attenuation[1] + d * d * light->attenuation[2]);
        if (light->cutoff != 180) {
            const double along = -dot(l, unit(light->spotDirection));
            factor *= along < std::cos(light->cutoff * M_PI / 180) ? 0 : std::pow(along, light->exponent);
        }
        Vec sum = times(light->ambient, rgb(m.ambient));
        const double facing = dot(n, l);
        if (facing > 0) {
            const double shine = std::pow(std::max(dot(n, unit(l + Vec{0, 0, 1})), 0.0), m.shininess);
            sum = sum + facing * times(rgb(kLightColor), rgb(m.diffuse)) +
                  shine * times(rgb(kLightColor), rgb(m.specular));
        }
        color = color + factor * sum;
    }
    for (double& c : color)
        c = std::clamp(c, 0.0, 1.0);
    return color;
}

constexpr int kSize = 32;

class LitFace : public testing::Test
{
protected:
    LitFace() : fWindow(kSize, kSize)
    {
        EXPECT_TRUE(fWindow.show());
        T3dPort& p = fWindow.port();
        p.clearColor(kCblack);
        p.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        p.depthTest(false);
        p.ortho(-4, 4, -4, 4, -20, 20);
        p.loadIdentity();
        p.setGlobalAmbient(kModelAmbient);
        p.setLightingModel();
        p.disableAllLights();
        const Material m;
        p.setAmbientMaterialColor(m.ambient);
        p.setDiffuseColor(m.diffuse);
        p.setSpecularColor(m.specular);
        p.setEmissionColor(m.emission);
        p.setShininess(m.shininess);
    }

    T3dPort& port() { return fWindow.port(); }

    /** The colour of a flat face whose colour is the one of its vertex at @p p. */
    Vec drawn(const Vec& p, const Vec& n)
    {
        port().setCurrentContext();
        // Flat: OpenGL takes the colour of the last one.
        glBegin(GL_TRIANGLES);
        glNormal3dv(n.data());
        glVertex3d(p[0] + 3, p[1] + 3, p[2]);
        glVertex3d(p[0] - 3, p[1] + 3, p[2]);
        glVertex3dv(p.data());
        glEnd();
        const int x = int((p[0] + 4) / 8 * kSize);
        const int y = int((p[1] + 4) / 8 * kSize) + 4;
        GLubyte bytes[4] = {};
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
        return {bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0};
    }

    void expectLit(const EyeLight* light, const char* what)
    {
        for (const Vec& p : {Vec{0, 0, 0}, Vec{1, -1, 0.5}, Vec{-1.5, 0.5, -1}}) {
            for (const Vec& n : {Vec{0, 0, 1}, unit({1, 2, 2}), unit({-1, 0.5, -0.25})}) {
                const Vec wanted = litColor(Material(), light, p, n);
                const Vec got = drawn(p, n);
                for (int i = 0; i < 3; ++i)
                    EXPECT_NEAR(wanted[i], got[i], 2.5 / 255)
                        << what << ", channel " << i << ", vertex " << p[0] << ' ' << p[1] << ' ' << p[2] << ", normal "
                        << n[0] << ' ' << n[1] << ' ' << n[2];
            }
        }
    }

    PortWindow<> fWindow;
};

/** About x by 30 degrees, then moved, in OpenGL's memory order. */
T4dDblMatrix placement(double x, double y, double z)
{
    const double c = std::cos(M_PI / 6);
    const double s = std::sin(M_PI / 6);
    T4dDblMatrix m;
    double* e = m.data();
    e[5] = c;
    e[6] = s;
    e[9] = -s;
    e[10] = c;
    e[12] = x;
    e[13] = y;
    e[14] = z;
    return m;
}

} // namespace

TEST_F(LitFace, OfEachLightTypeFollowsTheEquations)
{
    const double c = std::cos(M_PI / 6);
    const double s = std::sin(M_PI / 6);
    const Vec alongZ{0, -s, c}; // the placed +z axis
    const Vec origin{1, 2, 3};
    const struct
    {
        TglLight::TglLightType type;
        EyeLight seen;
    } cases[] = {
        {TglLight::kSpot, {false, origin, rgb(kLightAmbient), {0.5, 0.125, 0.0625}, 40, 3, -1.0 * alongZ}},
        {TglLight::kDirectional, {true, alongZ}},
        {TglLight::kPoint, {false, origin, rgb(kLightAmbient), {0.5, 0.125, 0.0625}}},
        {TglLight::kDirectionalBehind, {true, -1.0 * alongZ}},
    };
    for (const auto& each : cases) {
        TglLight light(each.type);
        light.fColor = kLightColor;
        light.fAmbientColor = kLightAmbient;
        light.fSpotCutoff = 40;
        light.fSpotExponent = 3;
        light.fConstantAttenuation = 0.5f;
        light.fLinearAttenuation = 0.125f;
        light.fQuadraticAttenuation = 0.0625f;
        // Placed half by the current matrix, half by the one given.
        port().pushMatrix();
        port().translate(0, 0, 2);
        port().setCurrentContext();
        light.setLight(3, placement(1, 2, 1));
        port().popMatrix();
        expectLit(&each.seen, ("type " + std::to_string(each.type)).c_str());
        light.unbind(3);
        expectLit(nullptr, "unbound");
    }
}
