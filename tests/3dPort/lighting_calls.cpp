// What the light and material operations send to OpenGL, and what they spare it.

#include "3dPort/Calls.h"
#include "support/GlRecorder.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TglLight.h"
#include "QtExtensions/Q3dPort.h"
#include "foundation/T4dDblVector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using testing::IsEmpty;
using Calls = std::vector<std::string>;
using Operation = std::function<void(T3dPort&)>;

struct Step
{
    Operation run;
    Calls calls;
};

const Calls kNothing;

Calls operator+(Calls a, const Calls& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Calls disableLights(int count)
{
    Calls calls;
    for (int i = 0; i < count; ++i)
        calls.push_back("glDisable(GL_LIGHT" + std::to_string(i) + ")");
    return calls;
}

Calls throughColorMaterial(const std::string& channel, const std::string& color)
{
    return {"glColorMaterial(GL_FRONT_AND_BACK, " + channel + ")", "glEnable(GL_COLOR_MATERIAL)", color,
            "glDisable(GL_COLOR_MATERIAL)"};
}

class Lighting : public testing::Test
{
protected:
    Lighting() : fWindow(40, 30)
    {
        EXPECT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }
    TglContext& record() { return *T3dPortProbe::context(port()); }

    Calls callsOf(const Operation& operation)
    {
        GlRecorder recorder;
        recorder.start();
        operation(port());
        recorder.stop();
        return recorder.calls();
    }

    void expectCalls(const std::vector<Step>& steps)
    {
        int number = 0;
        for (const Step& step : steps) {
            EXPECT_EQ(step.calls, callsOf(step.run)) << "step " << number;
            EXPECT_EQ(TstringArray(), port().stateDifferences()) << "step " << number;
            ++number;
        }
    }

    PortWindow<> fWindow;
};

void setDrawnLight(TglLight& light)
{
    light.fColor = TportColor(1, 0.5f, 0.25f, 0.75f);
    light.fAmbientColor = TportColor(0.125f, 0.25f, 0.5f, 1);
    light.fSpotCutoff = 30;
    light.fSpotExponent = 4;
    light.fConstantAttenuation = 2;
    light.fLinearAttenuation = 0.5f;
    light.fQuadraticAttenuation = 0.25f;
}

} // namespace

TEST_F(Lighting, TheSwitchIsCachedAndTheSpecularModelIsNot)
{
    T3dPort::useSeparateSpecularColor(true);
    const std::string separate = "glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR)";
    const std::string single = "glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SINGLE_COLOR)";
    port().disableLighting(); // the re-send bit of a new record
    expectCalls({
        {[](T3dPort& p) { p.enableLighting(); }, {"glEnable(GL_LIGHTING)", separate}},
        {[](T3dPort& p) { p.enableLighting(); }, {separate}},
        {[](T3dPort& p) { p.setLighting(true); }, {separate}},
        {[](T3dPort& p) { p.setLighting(false); }, {single, "glDisable(GL_LIGHTING)"}},
        {[](T3dPort& p) { p.disableLighting(); }, {single}},
    });
    T3dPort::useSeparateSpecularColor(false);
    expectCalls({
        {[](T3dPort& p) { p.enableLighting(); }, {"glEnable(GL_LIGHTING)"}},
        {[](T3dPort& p) { p.enableLighting(); }, kNothing},
        {[this](T3dPort& p) {
             record().fValidBits.set(TglContext::kResendLighting);
             p.enableLighting();
         },
         {"glEnable(GL_LIGHTING)"}},
        {[this](T3dPort& p) {
             p.disableLighting();
             record().fValidBits.set(TglContext::kResendLighting);
             p.disableLighting();
         },
         {"glDisable(GL_LIGHTING)", "glDisable(GL_LIGHTING)"}},
    });
    EXPECT_FALSE(record().fValidBits.test(TglContext::kResendLighting));
}

TEST_F(Lighting, APortWithoutLightingRefusesIt)
{
    T3dPort::useSeparateSpecularColor(false);
    port().enableLighting();
    port().setNoLighting(true);
    EXPECT_TRUE(port().isLightingOn());
    expectCalls({{[](T3dPort& p) { p.setLighting(true); }, {"glDisable(GL_LIGHTING)"}}});
    EXPECT_FALSE(port().isLightingOn());
    record().fValidBits.set(TglContext::kResendLighting);
    expectCalls({{[](T3dPort& p) { p.enableLighting(); }, kNothing}});
    EXPECT_FALSE(port().isLightingOn());
    EXPECT_TRUE(record().fValidBits.test(TglContext::kResendLighting));
    port().setNoLighting(false);
    port().setLighting(true);
    EXPECT_TRUE(port().isLightingOn());
}

TEST_F(Lighting, TheModelSendsWhatChanged)
{
    T3dPort::useSeparateSpecularColor(false);
    port().setLightingModel();
    expectCalls({
        {[](T3dPort& p) { p.setLightingModel(); }, kNothing},
        {[](T3dPort& p) {
             p.setGlobalAmbient(TportColor(0.2f, 0.2f, 0.2f, 0.5f));
             p.setLightingModel();
         },
         {"glLightModelfv(GL_LIGHT_MODEL_AMBIENT, [0.2 0.2 0.2 0.5])"}},
        {[](T3dPort& p) {
             p.setLocalViewer(true);
             p.setLightingModel();
         },
         {"glLightModelf(GL_LIGHT_MODEL_LOCAL_VIEWER, 1)"}},
        {[](T3dPort& p) {
             p.setTwoSidedLighting(false);
             p.setLightingModel();
         },
         {"glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 0)"}},
        {[this](T3dPort& p) {
             record().fValidBits.set(TglContext::kResendTwoSided);
             p.setLightingModel();
         },
         {"glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 0)"}},
        {[](T3dPort& p) {
             p.disableLighting();
             p.setGlobalAmbient(TportColor(0.5f, 0.2f, 0.2f, 0.5f));
             p.setLocalViewer(false);
             p.setTwoSidedLighting(true);
             p.setLightingModel();
         },
         {"glDisable(GL_LIGHTING)", "glEnable(GL_LIGHTING)", "glLightModelfv(GL_LIGHT_MODEL_AMBIENT, [0.5 0.2 0.2 0.5])",
          "glLightModelf(GL_LIGHT_MODEL_LOCAL_VIEWER, 0)", "glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1)"}},
    });
}

TEST_F(Lighting, UnknownEnablesAreSettledOnce)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_LIGHTS, &most);
    EXPECT_EQ(most, T3dPort::maxNumberOfHwLights());
    const auto disturb = [this] { record().fValidBits.set(TglContext::kLightEnablesUnknown); };
    const Calls settled = Calls{"glGetIntegerv(GL_MAX_LIGHTS, pointer)"} + disableLights(most);
    const struct
    {
        Operation run;
        Calls calls;
    } cases[] = {
        {[](T3dPort& p) { p.enableLight(3); }, {"glEnable(GL_LIGHT3)"}},
        {[](T3dPort& p) { p.disableLight(5); }, {"glDisable(GL_LIGHT5)"}},
        {[](T3dPort& p) { p.disableAllLights(); }, disableLights(8)},
    };
    for (const auto& each : cases) {
        disturb();
        EXPECT_EQ(settled + each.calls, callsOf(each.run));
        EXPECT_EQ(each.calls, callsOf(each.run));
    }
    glEnable(GL_LIGHT6);
    disturb();
    port().enableLight(3);
    for (int i = 0; i < most; ++i)
        EXPECT_EQ(i == 3, bool(glIsEnabled(GL_LIGHT0 + GLenum(i)))) << i;
}

TEST_F(Lighting, ShininessIsClampedAndComparedAsGiven)
{
    const auto shininess = [](double s) { return [s](T3dPort& p) { p.setShininess(s); }; };
    const auto sent = [](const std::string& s) {
        return Calls{"glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, " + s + ")"};
    };
    expectCalls({
        {shininess(0), kNothing},
        {shininess(200), sent("128")},
        {shininess(200), sent("128")},
        {shininess(128), kNothing},
        {shininess(-7), sent("0")},
        {shininess(0), kNothing},
        {shininess(12.5), sent("12.5")},
        {shininess(12.5), kNothing},
        {shininess(std::numeric_limits<double>::infinity()), sent("128")},
    });
    port().setShininess(std::nan("")); // whatever becomes of it, another value gets through
    port().setShininess(3);
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(Lighting, MaterialColoursGoThroughTheColourAndAreCached)
{
    const TportColor red(1, 0, 0.5f, 0.25f);
    const TportColor green(0, 1, 0.5f);
    const TportColor blue(0, 0.25f, 1);
    const std::string sentRed = "glColor3fv([1 0 0.5])";
    const std::string sentGreen = "glColor3fv([0 1 0.5])";
    const std::string sentBlue = "glColor3fv([0 0.25 1])";
    expectCalls({
        {[](T3dPort& p) { p.setAmbientMaterialColor(TportColor(0.2f, 0.2f, 0.2f)); }, kNothing},
        {[](T3dPort& p) { p.setDiffuseColor(TportColor(0.8f, 0.8f, 0.8f)); }, kNothing},
        {[](T3dPort& p) { p.setSpecularColor(kCblack); }, kNothing},
        {[](T3dPort& p) { p.setEmissionColor(kCblack); }, kNothing},
        {[=](T3dPort& p) { p.setAmbientMaterialColor(red); }, throughColorMaterial("GL_AMBIENT", sentRed)},
        {[=](T3dPort& p) { p.setAmbientMaterialColor(red); }, kNothing},
        {[=](T3dPort& p) { p.color(red); }, kNothing},
        {[=](T3dPort& p) { p.setDiffuseColor(green); }, throughColorMaterial("GL_DIFFUSE", sentGreen)},
        {[=](T3dPort& p) { p.setDiffuseColor(green, 1); }, kNothing},
        {[=](T3dPort& p) { p.setDiffuseColor(green, 0.5f); },
         throughColorMaterial("GL_DIFFUSE", "glColor4fv([0 1 0.5 0.5])")},
        {[=](T3dPort& p) { p.setDiffuseColor(green, 0.5f); }, kNothing},
        {[=](T3dPort& p) { p.color(TportColor(0, 1, 0.5f, 0.5f)); }, kNothing},
    });

    // Specular and emission change OpenGL's colour and leave the recorded one.
    const TportColor before = record().fColor;
    record().fHardwareIndex = 3;
    expectCalls({{[=](T3dPort& p) { p.setSpecularColor(blue); }, throughColorMaterial("GL_SPECULAR", sentBlue)}});
    EXPECT_EQ(TglContext::kUnknownIndex, record().fHardwareIndex);
    record().fHardwareIndex = 3;
    expectCalls({{[=](T3dPort& p) { p.setEmissionColor(red); }, throughColorMaterial("GL_EMISSION", sentRed)},
                 {[=](T3dPort& p) { p.setSpecularColor(blue); }, kNothing},
                 {[=](T3dPort& p) { p.color(before); }, kNothing}});
    EXPECT_EQ(TglContext::kUnknownIndex, record().fHardwareIndex);
    EXPECT_EQ(before, record().fColor);
    port().resendState();
    GLfloat current[4] = {};
    glGetFloatv(GL_CURRENT_COLOR, current);
    EXPECT_EQ(0.5f, current[2]);
    glColor3f(1, 1, 1);
    EXPECT_EQ(1u, port().stateDifferences().length()) << "a re-sent colour is the record's again";
}

TEST_F(Lighting, ColourMaterialLetsTheColourThrough)
{
    const TportColor unknown(-1, -1, -1, -1);
    const struct
    {
        T3dPort::TmaterialChannel channel;
        const char* name;
        TportColor TglContext::*returned;
        std::vector<TportColor TglContext::*> unknownAfter;
        bool colourUnknown;
    } cases[] = {
        {T3dPort::kMaterialAmbient, "GL_AMBIENT", &TglContext::fMaterialAmbient, {}, true},
        {T3dPort::kMaterialDiffuse, "GL_DIFFUSE", &TglContext::fMaterialDiffuse, {&TglContext::fMaterialDiffuse}, true},
        {T3dPort::kMaterialSpecular, "GL_SPECULAR", &TglContext::fMaterialSpecular, {&TglContext::fMaterialSpecular},
         false},
        {T3dPort::kMaterialEmission, "GL_EMISSION", &TglContext::fMaterialEmission, {&TglContext::fMaterialEmission},
         false},
        {T3dPort::kMaterialAmbientAndDiffuse, "GL_AMBIENT_AND_DIFFUSE", &TglContext::fMaterialAmbient,
         {&TglContext::fMaterialDiffuse}, true},
    };
    const TportColor gray(0.2f, 0.2f, 0.2f);
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const auto channel = each.channel;
        port().setAmbientMaterialColor(gray);
        port().color(TportColor(0.75f, 0.5f, 0.25f));
        expectCalls({{[&](T3dPort& p) {
                          const TportColor& got = p.enableColorMaterial(T3dPort::kBack, channel, false);
                          EXPECT_EQ(&(record().*each.returned), &got);
                      },
                      {std::string("glColorMaterial(GL_BACK, ") + each.name + ")", "glEnable(GL_COLOR_MATERIAL)"}},
                     {[](T3dPort& p) { p.color(TportColor(0.5f, 0.75f, 0.25f)); }, {"glColor3fv([0.5 0.75 0.25])"}}});
        record().fHardwareIndex = 3;
        // The default ambient material is sent only if it is not known to be there.
        const bool ambientLost = channel == T3dPort::kMaterialAmbient || channel == T3dPort::kMaterialAmbientAndDiffuse;
        const Calls ambient =
            ambientLost ? throughColorMaterial("GL_AMBIENT", "glColor3fv([0.2 0.2 0.2])") : kNothing;
        expectCalls({{[=](T3dPort& p) { p.disableColorMaterial(channel, false); },
                      ambient + Calls{"glDisable(GL_COLOR_MATERIAL)"}}});
        EXPECT_EQ(TglContext::kUnknownIndex, record().fHardwareIndex);
        EXPECT_EQ(gray, record().fMaterialAmbient);
        for (TportColor TglContext::*member : each.unknownAfter)
            EXPECT_EQ(unknown, record().*member);
        const TportColor color = record().fColor;
        EXPECT_EQ(!each.colourUnknown ? TportColor(0.5f, 0.75f, 0.25f) : ambientLost ? gray : unknown, color);
    }
}

TEST_F(Lighting, TransparentColourMaterialBlendsAndTestsDepth)
{
    const auto enable = [](T3dPort& p) {
        p.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, true);
    };
    const Calls tracked = {"glColorMaterial(GL_FRONT_AND_BACK, GL_DIFFUSE)", "glEnable(GL_COLOR_MATERIAL)"};
    const Calls blended = {"glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)", "glEnable(GL_BLEND)"};
    const Calls tested = {"glEnable(GL_DEPTH_TEST)"};
    port().depthTest(false);
    port().blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero);
    expectCalls({
        {enable, tracked + blended + tested},
        {enable, tracked},
        {[this, enable](T3dPort& p) {
             record().fValidBits.set(TglContext::kResendDepthTest);
             enable(p);
         },
         tracked + tested},
        {[](T3dPort& p) { p.disableColorMaterial(T3dPort::kMaterialDiffuse, true); },
         {"glDisable(GL_BLEND)", "glDisable(GL_COLOR_MATERIAL)"}},
        {[](T3dPort& p) { p.disableColorMaterial(T3dPort::kMaterialDiffuse, true); }, {"glDisable(GL_COLOR_MATERIAL)"}},
    });

    port().depthTest(false);
    port().setNoAutoDepthTest(true);
    expectCalls({{enable, tracked + Calls{"glEnable(GL_BLEND)"}}});
    port().setNoAutoDepthTest(false);
    record().fDirtyBits.clear(TglContext::kHasDepthBuffer);
    expectCalls({{enable, tracked}});
    record().fDirtyBits.set(TglContext::kHasDepthBuffer);
    // An opaque one leaves both alone.
    port().disableColorMaterial(T3dPort::kMaterialDiffuse, true);
    expectCalls({{[](T3dPort& p) { p.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, false); },
                  tracked}});
}

TEST_F(Lighting, ALightSendsItsFieldsInOrder)
{
    T4dDblMatrix placement;
    placement.data()[12] = 3;
    const Calls head = {"glLightfv(GL_LIGHT2, GL_DIFFUSE, [1 0.5 0.25 0.75])",
                        "glLightfv(GL_LIGHT2, GL_SPECULAR, [1 0.5 0.25 0.75])",
                        "glLightfv(GL_LIGHT2, GL_AMBIENT, [0.125 0.25 0.5 1])",
                        "glLightf(GL_LIGHT2, GL_CONSTANT_ATTENUATION, 2)",
                        "glLightf(GL_LIGHT2, GL_LINEAR_ATTENUATION, 0.5)",
                        "glLightf(GL_LIGHT2, GL_QUADRATIC_ATTENUATION, 0.25)",
                        "glPushMatrix()",
                        "glMultMatrixd([1 0 0 0 0 1 0 0 0 0 1 0 3 0 0 1])"};
    const Calls spot = {"glLightf(GL_LIGHT2, GL_SPOT_CUTOFF, 30)", "glLightf(GL_LIGHT2, GL_SPOT_EXPONENT, 4)",
                        "glLightfv(GL_LIGHT2, GL_SPOT_DIRECTION, [0 0 -1])"};
    const Calls noSpot = {"glLightf(GL_LIGHT2, GL_SPOT_CUTOFF, 180)"};
    const struct
    {
        unsigned type;
        Calls spot;
        std::string position;
    } cases[] = {{0, spot, "[0 0 0 1]"}, {1, noSpot, "[0 0 1 0]"}, {2, noSpot, "[0 0 0 1]"}, {3, noSpot, "[0 0 -1 0]"}};
    for (const auto& each : cases) {
        TglLight light{TglLight::TglLightType(each.type)};
        setDrawnLight(light);
        const Calls wanted = head + each.spot +
                             Calls{"glLightfv(GL_LIGHT2, GL_POSITION, " + each.position + ")", "glEnable(GL_LIGHT2)",
                                   "glPopMatrix()"};
        EXPECT_EQ(wanted, callsOf([&](T3dPort&) { light.setLight(2, placement); })) << "type " << each.type;
    }
    TglLight light(TglLight::kSpot);
    setDrawnLight(light);
    EXPECT_EQ(Calls{"glLightfv(GL_LIGHT1, GL_DIFFUSE, [1 0.5 0.25 0.75])"},
              callsOf([&](T3dPort&) { light.setColor(1); }));
    EXPECT_EQ(Calls{"glLightfv(GL_LIGHT1, GL_AMBIENT, [0.125 0.25 0.5 1])"},
              callsOf([&](T3dPort&) { light.setAmbientColor(1); }));

    const Calls plain = {"glLightf(GL_LIGHT4, GL_SPOT_CUTOFF, 180)", "glLightf(GL_LIGHT4, GL_SPOT_EXPONENT, 0)",
                         "glLightf(GL_LIGHT4, GL_CONSTANT_ATTENUATION, 1)",
                         "glLightf(GL_LIGHT4, GL_LINEAR_ATTENUATION, 0)",
                         "glLightf(GL_LIGHT4, GL_QUADRATIC_ATTENUATION, 0)"};
    port().enableLight(0);
    record().fValidBits.set(TglContext::kLightEnablesUnknown);
    EXPECT_EQ(Calls{"glDisable(GL_LIGHT4)"} + plain, callsOf([&](T3dPort&) { light.unbind(4); }));
    light.fPort = &port();
    const Calls settled = callsOf([&](T3dPort&) { light.unbind(4); });
    EXPECT_EQ("glGetIntegerv(GL_MAX_LIGHTS, pointer)", settled.front());
    EXPECT_EQ(Calls{"glDisable(GL_LIGHT4)"} + plain, callsOf([&](T3dPort&) { light.unbind(4); }));
}

TEST_F(Lighting, TheDefaultLightIsPlacedByTheCurrentMatrix)
{
    port().setLightColor(TportColor(0.5f, 0.25f, 1));
    port().loadIdentity();
    port().translate(0, 2, 0);
    port().setCurrentContext();
    const Calls sent = {"glLightfv(GL_LIGHT1, GL_DIFFUSE, [0.5 0.25 1 1])",
                        "glLightfv(GL_LIGHT1, GL_SPECULAR, [0.5 0.25 1 1])",
                        "glLightfv(GL_LIGHT1, GL_AMBIENT, [0 0 0 1])",
                        "glLightf(GL_LIGHT1, GL_CONSTANT_ATTENUATION, 1)",
                        "glLightf(GL_LIGHT1, GL_LINEAR_ATTENUATION, 0)",
                        "glLightf(GL_LIGHT1, GL_QUADRATIC_ATTENUATION, 0)",
                        "glLightf(GL_LIGHT1, GL_SPOT_CUTOFF, 180)",
                        "glLightf(GL_LIGHT1, GL_SPOT_EXPONENT, 0)",
                        "glPushMatrix()",
                        "glLoadMatrixd([1 0 0 0 0 1 0 0 0 0 1 0 0 2 0 1])",
                        "glLightfv(GL_LIGHT1, GL_POSITION, [0 0.5 -1 0])",
                        "glEnable(GL_LIGHT1)",
                        "glPopMatrix()"};
    EXPECT_EQ(sent, callsOf([](T3dPort& p) { p.setDefaultLight(1, T4dDblVector{0, 0.5, -1}); }));
    EXPECT_EQ(0.5, port().defaultLight()->fDirection.y);
    EXPECT_EQ(2, port().defaultLight()->fPlacement.data()[13]);
    EXPECT_EQ(TstringArray(), port().stateDifferences());

    // A light of nobody's keeps the matrix it was given, and makes nothing current.
    PortWindow<> other(20, 20);
    ASSERT_TRUE(other.show());
    other.port().setCurrentContext();
    TglLight alone(TglLight::kPoint);
    alone.fPlacement.data()[14] = 7;
    const Calls calls = callsOf([&](T3dPort&) { alone.setDefaultLight(1, T4dDblVector{1, 0, 0}); });
    EXPECT_EQ("glLoadMatrixd([1 0 0 0 0 1 0 0 0 0 1 0 0 0 7 1])", calls[9]);
    EXPECT_THAT(from("glX", calls), IsEmpty());
    // The port's own operation does make it current.
    EXPECT_THAT(callsOf([](T3dPort& p) { p.setDefaultLight(1, T4dDblVector{1, 0, 0}); }),
                testing::Contains(testing::StartsWith("glXMakeCurrent(")));
}

TEST_F(Lighting, EqualColoursDoNotSwitchContexts)
{
    port().setSpecularColor(kCwhite);
    port().setShininess(7);
    PortWindow<> other(20, 20);
    ASSERT_TRUE(other.show());
    other.port().setCurrentContext();
    EXPECT_THAT(callsOf([](T3dPort& p) {
                    p.setSpecularColor(kCwhite);
                    p.setShininess(7);
                }),
                IsEmpty());
}

TEST_F(Lighting, LightsSendNothingOnACoreProfile)
{
    TglLight light(TglLight::kSpot);
    Q3dPort::setUseGLCoreProfile(true);
    EXPECT_THAT(callsOf([&](T3dPort& p) {
                    light.setLight(0, T4dDblMatrix());
                    light.setDefaultLight(0, T4dDblVector{1, 2, 3});
                    light.setColor(0);
                    light.setAmbientColor(0);
                    light.unbind(0);
                    light.fPort = &p;
                    light.unbind(0);
                    p.setDefaultLight(0, T4dDblVector{1, 2, 3});
                    EXPECT_EQ(8, T3dPort::maxNumberOfHwLights());
                }),
                IsEmpty());
    EXPECT_EQ(1, light.fDirection.z) << "not even stored";
    Q3dPort::setUseGLCoreProfile(false);
}

TEST_F(Lighting, AnUnknownTypeAndAbsurdNumbersDoNoHarm)
{
    TglLight light{TglLight::TglLightType(77)};
    light.setLight(-5, T4dDblMatrix());
    light.setLight(32767, T4dDblMatrix());
    light.unbind(-32768);
    port().setDefaultLight(-1, T4dDblVector{std::nan(""), 0, 0});
    const float nan = std::nanf("");
    port().setDiffuseColor(TportColor(nan, nan, nan, nan));
    port().setDiffuseColor(kCwhite);
    while (glGetError() != GL_NO_ERROR) {
    }
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST(LightingWithoutAWidget, AcceptsEveryCall)
{
    T3dPort port(nullptr, "none", false);
    port.setLightColor(kCwhite);
    port.setDefaultLight(0, T4dDblVector{0, 0, 1});
    port.setLighting(true);
    port.setLightingModel();
    port.enableLight(0);
    port.disableAllLights();
    port.setShininess(5);
    port.setDiffuseColor(kCwhite, 0.5f);
    port.setSpecularColor(kCwhite);
    port.enableColorMaterial(T3dPort::kFront, T3dPort::kMaterialDiffuse, true) = kCwhite;
    port.disableColorMaterial(T3dPort::kMaterialDiffuse, true);
    EXPECT_TRUE(port.isLightingOn());
    EXPECT_EQ(TstringArray(), port.stateDifferences());
}
