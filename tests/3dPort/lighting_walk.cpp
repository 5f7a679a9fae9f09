// Random walks over lights and materials, on two ports in turn: record and driver stay together.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TglLight.h"
#include "foundation/T4dDblVector.h"

#include <gtest/gtest.h>

#include <random>

namespace {

class Dice
{
public:
    explicit Dice(unsigned seed) : fEngine(seed) {}

    unsigned below(std::size_t count)
    {
        return std::uniform_int_distribution<unsigned>(0, unsigned(count) - 1)(fEngine);
    }
    bool flag() { return below(2) != 0; }
    /** One of few values, so that equal ones in a row are frequent. */
    float value() { return 0.25f * float(1 + below(3)); }
    TportColor color() { return TportColor(value(), value(), value(), value()); }
    short light() { return short(below(8)); }
    T3dPort::TmaterialChannel channel()
    {
        constexpr T3dPort::TmaterialChannel kChannels[] = {T3dPort::kMaterialAmbient, T3dPort::kMaterialDiffuse,
                                                           T3dPort::kMaterialSpecular, T3dPort::kMaterialEmission,
                                                           T3dPort::kMaterialAmbientAndDiffuse};
        return kChannels[below(std::size(kChannels))];
    }

private:
    std::mt19937 fEngine;
};

struct Operation
{
    const char* name;
    void (*run)(Dice& d, T3dPort& p);
};

const Operation kOperations[] = {
    {"color", [](Dice& d, T3dPort& p) { p.color(d.color()); }},
    {"setLightColor", [](Dice& d, T3dPort& p) { p.setLightColor(d.color()); }},
    {"setDefaultLight",
     [](Dice& d, T3dPort& p) {
         p.setDefaultLight(d.light(), T4dDblVector{d.value(), 0, d.value()});
     }},
    {"setLighting", [](Dice& d, T3dPort& p) { p.setLighting(d.flag()); }},
    {"useSeparateSpecularColor", [](Dice& d, T3dPort&) { T3dPort::useSeparateSpecularColor(d.flag()); }},
    {"setGlobalAmbient", [](Dice& d, T3dPort& p) { p.setGlobalAmbient(d.color()); }},
    {"setLocalViewer", [](Dice& d, T3dPort& p) { p.setLocalViewer(d.flag()); }},
    {"setTwoSidedLighting", [](Dice& d, T3dPort& p) { p.setTwoSidedLighting(d.flag()); }},
    {"setLightingModel", [](Dice&, T3dPort& p) { p.setLightingModel(); }},
    {"enableLight", [](Dice& d, T3dPort& p) { p.enableLight(d.light()); }},
    {"disableLight", [](Dice& d, T3dPort& p) { p.disableLight(d.light()); }},
    {"disableAllLights", [](Dice&, T3dPort& p) { p.disableAllLights(); }},
    {"setShininess", [](Dice& d, T3dPort& p) { p.setShininess(300.0 * d.value() - 100); }},
    {"setAmbientMaterialColor", [](Dice& d, T3dPort& p) { p.setAmbientMaterialColor(d.color()); }},
    {"setDiffuseColor with alpha", [](Dice& d, T3dPort& p) { p.setDiffuseColor(d.color(), d.value()); }},
    {"setEmissionColor", [](Dice& d, T3dPort& p) { p.setEmissionColor(d.color()); }},
    {"setSpecularColor", [](Dice& d, T3dPort& p) { p.setSpecularColor(d.color()); }},
    {"colour material",
     [](Dice& d, T3dPort& p) {
         const auto channel = d.channel();
         const bool transparent = d.flag();
         p.setNoAutoDepthTest(d.flag());
         TportColor& recorded =
             p.enableColorMaterial(d.flag() ? T3dPort::kFrontAndBack : T3dPort::kFront, channel, transparent);
         EXPECT_EQ(TstringArray(), p.stateDifferences());
         for (unsigned i = d.below(3); i > 0; --i) {
             const TportColor c = d.color();
             p.color(c);
             if (d.flag())
                 recorded = c;
             EXPECT_EQ(TstringArray(), p.stateDifferences());
         }
         p.disableColorMaterial(channel, transparent);
     }},
    {"a light",
     [](Dice& d, T3dPort& p) {
         TglLight light{TglLight::TglLightType(d.below(4))};
         light.fColor = d.color();
         light.fSpotCutoff = 90 * d.value();
         if (d.flag())
             light.fPort = &p;
         p.setCurrentContext();
         light.setLight(d.light(), T4dDblMatrix());
         light.setColor(d.light());
         light.setAmbientColor(d.light());
         light.unbind(d.light());
     }},
    {"foreign OpenGL",
     [](Dice& d, T3dPort& p) {
         p.beginForeignGL();
         const GLfloat color[] = {d.value(), d.value(), d.value(), d.value()};
         for (const GLenum channel : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION})
             glMaterialfv(GL_FRONT_AND_BACK, channel, color);
         glLightModelfv(GL_LIGHT_MODEL_AMBIENT, color);
         glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, d.flag());
         glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, d.flag());
         glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 64 * d.value());
         (d.flag() ? glEnable : glDisable)(GL_LIGHTING);
         (d.flag() ? glEnable : glDisable)(GL_LIGHT0 + d.below(8));
         p.endForeignGL();
     }},
};

class LightingWalk : public testing::TestWithParam<unsigned>
{
};

} // namespace

TEST_P(LightingWalk, RecordAndDriverStayTogether)
{
    PortWindow<> first(30, 20);
    PortWindow<> second(20, 30, Buffering::kDouble);
    ASSERT_TRUE(first.show() && second.show());
    T3dPort* const ports[] = {&first.port(), &second.port()};
    Dice dice(GetParam());
    for (int i = 0; i < 500 && !HasFailure(); ++i) {
        const unsigned number = dice.below(2);
        const Operation& operation = kOperations[dice.below(std::size(kOperations))];
        operation.run(dice, *ports[number]);
        for (unsigned asked = 0; asked < 2; ++asked)
            ASSERT_EQ(TstringArray(), ports[asked]->stateDifferences())
                << "port " << asked << ", step " << i << ", after " << operation.name << " of " << number;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LightingWalk, testing::Range(1u, 5u));
