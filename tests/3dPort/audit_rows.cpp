// The audit of recorded state against the driver: every state that is recorded is compared and put right again.

#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <GL/glext.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> differences(const T3dPort& port)
{
    std::vector<std::string> lines;
    for (const Tstring& line : port.stateDifferences())
        lines.push_back(line.toStdString());
    return lines;
}

/** Something that another library might do to OpenGL, and what the audit says of it. */
struct Disturbance
{
    std::string line;
    std::function<void()> run;
    bool core = false; ///< a core-profile viewport records this, too
};

std::vector<Disturbance> disturbances()
{
    static const GLfloat colour[] = {0.25f, 0.5f, 0.125f, 0.75f};
    static const GLdouble matrix[] = {2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const auto load = [](GLenum mode) {
        glMatrixMode(mode);
        glLoadMatrixd(matrix);
        glMatrixMode(GL_MODELVIEW);
    };
    const auto flip = [](GLenum capability) { (glIsEnabled(capability) ? glDisable : glEnable)(capability); };
    const auto material = [](GLenum channel) { glMaterialfv(GL_FRONT_AND_BACK, channel, colour); };
    return {
        {"matrix mode: recorded GL_MODELVIEW, OpenGL has GL_TEXTURE", [] { glMatrixMode(GL_TEXTURE); }},
        {"model-view matrix: recorded [1 ", [=] { load(GL_MODELVIEW); }},
        {"projection matrix: recorded [1 ", [=] { load(GL_PROJECTION); }},
        {"viewport: recorded [0 0 40 30], OpenGL has [1 2 3 4]", [] { glViewport(1, 2, 3, 4); }, true},
        {"current colour: recorded [0 0 0], OpenGL has [0.25 0.5 0.125]", [] { glColor4fv(colour); }},
        {"clear colour: recorded [0.75 0.75 0.75 1], OpenGL has [0.75 0.75 0.75 0.5]",
         [] { glClearColor(0.75f, 0.75f, 0.75f, 0.5f); }, true},
        {"blending: recorded off, OpenGL has on", [=] { flip(GL_BLEND); }, true},
        {"blend equation: recorded GL_FUNC_ADD, OpenGL has GL_MIN", [] { glBlendEquation(GL_MIN); }, true},
        {"line stipple: recorded off, OpenGL has on", [=] { flip(GL_LINE_STIPPLE); }},
        {"culling: recorded off, OpenGL has on", [=] { flip(GL_CULL_FACE); }, true},
        {"scissor box: recorded [1 2 30 20], OpenGL has [1 2 30 21]", [] { glScissor(1, 2, 30, 21); }, true},
        {"depth test: recorded on, OpenGL has off", [=] { flip(GL_DEPTH_TEST); }, true},
        {"colour mask: recorded [on on on on], OpenGL has [on on off on]", [] { glColorMask(1, 1, 0, 1); }, true},
        {"dithering: recorded off, OpenGL has on", [=] { flip(GL_DITHER); }, true},
        {"shade model: recorded GL_FLAT, OpenGL has GL_SMOOTH", [] { glShadeModel(GL_SMOOTH); }},
        {"two-sided lighting: recorded on, OpenGL has off", [] { glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0); }},
        {"light model ambient: recorded [0.2 0.2 0.2 1], OpenGL has [0.25 0.5 0.125 0.75]",
         [] { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, colour); }},
        {"ambient material: recorded [0.2 0.2 0.2], OpenGL has [0.25 0.5 0.125]", [=] { material(GL_AMBIENT); }},
        {"texture unit: recorded GL_TEXTURE0, OpenGL has GL_TEXTURE1", [] { glActiveTexture(GL_TEXTURE1); }, true},
        {"texture environment: recorded GL_MODULATE, OpenGL has GL_DECAL",
         [] { glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL); }},
        {"client texture unit: recorded GL_TEXTURE0, OpenGL has GL_TEXTURE1",
         [] { glClientActiveTexture(GL_TEXTURE1); }},
        {"texture generation mode of s: recorded GL_SPHERE_MAP, OpenGL has GL_OBJECT_LINEAR",
         [] { glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, GL_OBJECT_LINEAR); }},
        {"texture generation of t: recorded on, OpenGL has off", [=] { flip(GL_TEXTURE_GEN_T); }},
        {"texture generation of q: recorded off, OpenGL has on", [=] { flip(GL_TEXTURE_GEN_Q); }},
        {"cube mapping: recorded off, OpenGL has on", [=] { flip(GL_TEXTURE_CUBE_MAP); }},
        {"polygon offset fill: recorded off, OpenGL has on", [=] { flip(GL_POLYGON_OFFSET_FILL); }, true},
        {"fog: recorded on, OpenGL has off", [=] { flip(GL_FOG); }},
        {"fog source: recorded GL_FRAGMENT_DEPTH, OpenGL has GL_FOG_COORDINATE",
         [] { glFogi(GL_FOG_COORDINATE_SOURCE, GL_FOG_COORDINATE); }},
    };
}

/** Gives the states that are compared only in some cases a value that is. */
void claimAll(T3dPort& port)
{
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasFogCoord);
    port.setCurrentContext();
    port.initBuffer();
    port.setFogEnabled(true);
    port.scissor(TportRect(1, 2, 31, 22), true);
    port.depthTest(true);
    port.setTextureGenMode(TglContext::kGenSphereMap);
    port.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero);
    port.clearColor(TportColor(0.75f, 0.75f, 0.75f, 0));
    port.clearColor(TportColor(0.75f, 0.75f, 0.75f, 1));
}

class AuditRows : public testing::TestWithParam<bool>
{
};

} // namespace

TEST_P(AuditRows, EveryDisturbanceShowsAndIsPutRight)
{
    Q3dPort::setUseGLCoreProfile(GetParam());
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const Disturbance& disturbance : disturbances()) {
        SCOPED_TRACE(disturbance.line);
        claimAll(port);
        ASSERT_THAT(differences(port), IsEmpty());
        port.beginForeignGL();
        disturbance.run();
        if (disturbance.core || !GetParam())
            EXPECT_THAT(differences(port), ElementsAre(StartsWith(disturbance.line)));
        else
            EXPECT_THAT(differences(port), IsEmpty());
        // The matrices are not sent again here, but with the next drawing operation.
        port.endForeignGL();
        claimAll(port);
        EXPECT_THAT(differences(port), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(CoreProfile, AuditRows, testing::Bool());

TEST(AuditTrace, ALineForEachDifferenceAfterAPaint)
{
    const ScopedEnv noMatrices("LIRN_DEBUG_Q3DPORT_MATRICES", nullptr);
    const ScopedEnv on("LIRN_DEBUG_Q3DPORT_STATE", "");
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const bool announced : {true, false}) {
        TfunctionAction disturb([&](const Tevent&) {
            if (announced)
                port.beginForeignGL();
            glPointSize(7);
            glEnable(GL_BLEND);
            if (announced)
                port.endForeignGL();
        });
        port.setUpdateCommand(&disturb);
        const StdoutCapture out;
        port.OnPaint();
        if (announced)
            EXPECT_EQ("", out.text());
        else
            EXPECT_THAT(out.text(),
                        testing::MatchesRegex("T3dPort 0x[0-9a-f]+ state - blending: recorded off, OpenGL has on\n"
                                              "T3dPort 0x[0-9a-f]+ state - point size: recorded 1, OpenGL has 7\n"));
    }
}

TEST(AuditText, TwoPortsDifferInWhatWasSetAndRecordsAgreeWithTheDriver)
{
    PortWindow<> first(40, 30);
    PortWindow<> second(40, 30);
    ASSERT_TRUE(first.show() && second.show());
    if (!T3dPort::fsHasMultiTexture)
        GTEST_SKIP() << "there is one texture unit only";
    first.port().blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero); // unknown before the first call
    second.port().depthMask(false);
    second.port().blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    second.port().color(TportColor(0.1f, 1e-7f, std::nanf(""), 1));
    second.port().activeTextureUnit(TglContext::TtextureUnit(GL_TEXTURE1));
    second.port().setTextureCombineBlend(TglContext::kCombineAlpha, TglContext::kCombineAdd);
    const TstateValues a = first.port().recordedState();
    const TstateValues b = second.port().recordedState();
    const TstringArray lines = T3dPort::stateDifferences(a, b);
    EXPECT_THAT(std::vector<Tstring>(lines.begin(), lines.end()),
                ElementsAre("blend source: GL_ONE | GL_SRC_ALPHA",
                            "blend destination: GL_ZERO | GL_ONE_MINUS_SRC_ALPHA", "depth mask: on | off",
                            "texture unit: GL_TEXTURE0 | GL_TEXTURE1",
                            "texture combine: GL_COMBINE_RGB GL_MODULATE | GL_COMBINE_ALPHA GL_ADD in GL_TEXTURE1"));
    EXPECT_THAT(b, testing::Contains(TstateValue{"current colour", "[0.1 1e-07 nan]"}));
    EXPECT_EQ(T3dPort::stateDifferences(b, second.port().driverState()), TstringArray());
    EXPECT_EQ(second.port().driverState().size(), b.size());
    second.port().glWidget()->hide();
    first.port().setCurrentContext(); // a hidden widget's context stays bound until then
    EXPECT_TRUE(second.port().driverState().empty());
    EXPECT_EQ(T3dPort::stateDifferences(b, second.port().recordedState()), TstringArray());
}
