// The audit of recorded state against the driver: every state that is recorded is compared and put right again.

#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include <GL/glext.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
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

void enable(GLenum capability, bool on)
{
    (on ? glEnable : glDisable)(capability);
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
    const auto flip = [](GLenum capability) { enable(capability, !glIsEnabled(capability)); };
    const auto material = [](GLenum channel) { glMaterialfv(GL_FRONT_AND_BACK, channel, colour); };
    return {
        {"matrix mode: recorded 5888, OpenGL has 5890", [] { glMatrixMode(GL_TEXTURE); }},
        {"model-view matrix: recorded 1 ", [=] { load(GL_MODELVIEW); }},
        {"projection matrix: recorded 1 ", [=] { load(GL_PROJECTION); }},
        {"viewport: recorded 0 0 40 30, OpenGL has 1 2 3 4", [] { glViewport(1, 2, 3, 4); }, true},
        {"current colour: recorded 0 0 0, OpenGL has 0.25 0.5 0.125", [] { glColor4fv(colour); }},
        {"clear colour: recorded 0.75 0.75 0.75 1, OpenGL has 0.75 0.75 0.75 0.5",
         [] { glClearColor(0.75f, 0.75f, 0.75f, 0.5f); }, true},
        {"blending: recorded 0, OpenGL has 1", [=] { flip(GL_BLEND); }, true},
        {"blend source: recorded 1, OpenGL has 770", [] { glBlendFunc(GL_SRC_ALPHA, GL_ZERO); }, true},
        {"blend destination: recorded 0, OpenGL has 1", [] { glBlendFunc(GL_ONE, GL_ONE); }, true},
        {"blend equation: recorded 32774, OpenGL has 32775", [] { glBlendEquation(GL_MIN); }, true},
        {"point size: recorded 1, OpenGL has 7", [] { glPointSize(7); }, true},
        {"line width: recorded 1, OpenGL has 1.5", [] { glLineWidth(1.5f); }, true},
        {"line stipple: recorded 0, OpenGL has 1", [=] { flip(GL_LINE_STIPPLE); }},
        {"culling: recorded 0, OpenGL has 1", [=] { flip(GL_CULL_FACE); }, true},
        {"scissor test: recorded 1, OpenGL has 0", [=] { flip(GL_SCISSOR_TEST); }, true},
        {"scissor box: recorded 1 2 30 20, OpenGL has 1 2 30 21", [] { glScissor(1, 2, 30, 21); }, true},
        {"depth test: recorded 1, OpenGL has 0", [=] { flip(GL_DEPTH_TEST); }, true},
        {"depth function: recorded 513, OpenGL has 519", [] { glDepthFunc(GL_ALWAYS); }, true},
        {"depth mask: recorded 1, OpenGL has 0", [] { glDepthMask(GL_FALSE); }, true},
        {"colour mask: recorded 1 1 1 1, OpenGL has 1 1 0 1", [] { glColorMask(1, 1, 0, 1); }, true},
        {"index write mask: recorded ", [] { glIndexMask(5); }},
        {"dithering: recorded 0, OpenGL has 1", [=] { flip(GL_DITHER); }, true},
        {"shade model: recorded 7424, OpenGL has 7425", [] { glShadeModel(GL_SMOOTH); }},
        {"two-sided lighting: recorded 1, OpenGL has 0", [] { glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0); }},
        {"light model ambient: recorded 0.2 0.2 0.2 1, OpenGL has 0.25 0.5 0.125 0.75",
         [] { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, colour); }},
        {"local viewer: recorded 0, OpenGL has 1", [] { glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1); }},
        {"ambient material: recorded 0.2 0.2 0.2, OpenGL has 0.25 0.5 0.125", [=] { material(GL_AMBIENT); }},
        {"diffuse material: recorded 0.8 0.8 0.8, OpenGL has 0.25 0.5 0.125", [=] { material(GL_DIFFUSE); }},
        {"specular material: recorded 0 0 0, OpenGL has 0.25 0.5 0.125", [=] { material(GL_SPECULAR); }},
        {"emission material: recorded 0 0 0, OpenGL has 0.25 0.5 0.125", [=] { material(GL_EMISSION); }},
        {"shininess: recorded 0, OpenGL has 12", [] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 12); }},
        {"texture unit: recorded 33984, OpenGL has 33985", [] { glActiveTexture(GL_TEXTURE1); }, true},
        {"texture environment: recorded 8448, OpenGL has 8449",
         [] { glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL); }},
        {"texture combine: recorded 8448, OpenGL has 260",
         [] { glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_ADD); }},
        {"texture combine source: recorded 5890, OpenGL has 34168",
         [] { glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_RGB, GL_PREVIOUS); }},
        {"texture combine operand: recorded 768, OpenGL has 770",
         [] { glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB, GL_SRC_ALPHA); }},
        {"texture combine scale: recorded 1, OpenGL has 2", [] { glTexEnvi(GL_TEXTURE_ENV, GL_RGB_SCALE, 2); }},
        {"polygon offset fill: recorded 0, OpenGL has 1", [=] { flip(GL_POLYGON_OFFSET_FILL); }, true},
        {"fog: recorded 1, OpenGL has 0", [=] { flip(GL_FOG); }},
        {"fog mode: recorded 9729, OpenGL has 2048", [] { glFogi(GL_FOG_MODE, GL_EXP); }},
        {"fog density: recorded 0.1, OpenGL has 3", [] { glFogf(GL_FOG_DENSITY, 3); }},
        {"fog start: recorded 0, OpenGL has 3", [] { glFogf(GL_FOG_START, 3); }},
        {"fog end: recorded 100, OpenGL has 3", [] { glFogf(GL_FOG_END, 3); }},
        {"fog source: recorded 33874, OpenGL has 33873",
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
    port.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero);
    port.clearColor(TportColor(0.75f, 0.75f, 0.75f, 0));
    port.clearColor(TportColor(0.75f, 0.75f, 0.75f, 1));
}

} // namespace

TEST(AuditRows, EveryDisturbanceShowsAndIsPutRight)
{
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const Disturbance& disturbance : disturbances()) {
        claimAll(port);
        ASSERT_THAT(differences(port), IsEmpty()) << "before " << disturbance.line;
        port.beginForeignGL();
        disturbance.run();
        EXPECT_THAT(differences(port), ElementsAre(StartsWith(disturbance.line)));
        // The matrices are not sent again here, but with the next drawing operation.
        port.endForeignGL();
        claimAll(port);
        EXPECT_THAT(differences(port), IsEmpty()) << "after " << disturbance.line;
    }
}

TEST(AuditRows, StippledLines)
{
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    TglLineStipple& recorded = T3dPortProbe::context(port)->fLineStipple;
    recorded = TglLineStipple(0x0F0F, 3);
    EXPECT_THAT(differences(port), ElementsAre("line stipple: recorded 1, OpenGL has 0",
                                               "line stipple pattern: recorded 3855, OpenGL has 65535",
                                               "line stipple factor: recorded 3, OpenGL has 1"));
    port.resendState();
    EXPECT_THAT(differences(port), IsEmpty());
    recorded = TglLineStipple(0x1234, 1000); // OpenGL takes 256 at most
    port.resendState();
    EXPECT_THAT(differences(port), IsEmpty());
}

TEST(AuditRows, CoreProfileViewportsLeaveFixedFunctionAlone)
{
    Q3dPort::setUseGLCoreProfile(true);
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    claimAll(port);
    ASSERT_THAT(differences(port), IsEmpty());
    for (const Disturbance& disturbance : disturbances()) {
        claimAll(port);
        port.beginForeignGL();
        disturbance.run();
        if (disturbance.core)
            EXPECT_THAT(differences(port), ElementsAre(StartsWith(disturbance.line)));
        else
            EXPECT_THAT(differences(port), IsEmpty()) << disturbance.line;
        port.endForeignGL();
        claimAll(port);
        EXPECT_THAT(differences(port), IsEmpty()) << "after " << disturbance.line;
    }
}

// What OpenGL refuses or cuts is no difference, and no number is.
TEST(AuditRows, OddValuesAreNoDifferences)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    for (const float value : {0.0f, -0.0f, -1.0f, 1e30f, kInfinity, -kInfinity, NAN}) {
        SCOPED_TRACE(value);
        port.pointSize(value);
        port.lineWidth(value);
        port.clearColor(TportColor(value, 0, value, 1));
        port.color(TportColor(value, value, 0, 1));
        port.ortho(0, value, 0, 1);
        port.translate(value, 1, 1);
        port.scale(value, 1, 1);
        EXPECT_THAT(differences(port), IsEmpty());
        port.beginForeignGL();
        glColor3f(0.5f, 0, 0);
        glPointSize(9);
        glLineWidth(9);
        port.endForeignGL();
        port.pointSize(2);
        port.lineWidth(2);
        EXPECT_THAT(differences(port), IsEmpty());
    }
    constexpr short kLeast = std::numeric_limits<short>::min();
    constexpr short kMost = std::numeric_limits<short>::max();
    for (const TportRect& r : {TportRect(), TportRect(0, 0, kMost, kMost), TportRect(kLeast, 0, kMost, 10),
                               TportRect(5, 5, 1, 1), TportRect(kLeast, kLeast, kMost, kMost)}) {
        port.pushViewport(r);
        EXPECT_THAT(differences(port), IsEmpty());
        port.scissor(r, true);
        EXPECT_THAT(differences(port), IsEmpty());
        port.popViewport();
        EXPECT_THAT(differences(port), IsEmpty());
    }
}

TEST(AuditForeignGL, SetsEveryResendBit)
{
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    claimAll(port);
    port.beginForeignGL();
    glBlendFunc(GL_DST_COLOR, GL_DST_COLOR);
    port.endForeignGL();
    EXPECT_EQ(0x3Fu, T3dPortProbe::context(port)->fValidBits.value());
    GlRecorder recorder;
    recorder.start();
    port.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero);
    port.depthTest(true);
    recorder.stop();
    EXPECT_EQ(1, recorder.count("glBlendFunc"));
    EXPECT_EQ(1, recorder.count("glEnable"));
    EXPECT_EQ(2, recorder.count("glLoadMatrixd"));
}

TEST(AuditForeignGL, ComesBackFromAnotherContext)
{
    PortWindow<> first(40, 30);
    PortWindow<> second(40, 30, Buffering::kDouble);
    ASSERT_TRUE(first.show() && second.show());
    second.port().pointSize(6);
    for (const bool release : {false, true}) {
        first.port().beginForeignGL();
        if (release)
            glXMakeCurrent(QX11Info::display(), QlirnX11::kNone, nullptr);
        else
            second.port().glWidget()->makeCurrent();
        first.port().endForeignGL();
        first.port().pointSize(release ? 3 : 4);
        EXPECT_THAT(differences(first.port()), IsEmpty());
        EXPECT_THAT(differences(second.port()), IsEmpty());
    }
}

// A widget that was hidden gets no context bound: what is sent for it would change another port's state.
TEST(AuditForeignGL, LeavesOtherPortsAloneWhileHidden)
{
    PortWindow<> shown(40, 30);
    PortWindow<> hidden(40, 30);
    ASSERT_TRUE(shown.show() && hidden.show());
    hidden.port().pointSize(5);
    shown.port().pointSize(2);
    hidden.port().glWidget()->hide();
    settle();
    hidden.port().beginForeignGL();
    hidden.port().endForeignGL();
    EXPECT_THAT(differences(hidden.port()), IsEmpty()) << "there is nothing to compare with";
    EXPECT_THAT(differences(shown.port()), IsEmpty());
}

TEST(Audit, HoldsForAPortThatAHiddenOneDrewInto)
{
    PortWindow<> shown(40, 30);
    PortWindow<> hidden(40, 30);
    ASSERT_TRUE(shown.show() && hidden.show());
    hidden.port().glWidget()->hide();
    settle();
    shown.port().setCurrentContext();
    hidden.port().color(TportColor(1, 0, 0, 1));
    hidden.port().translate(1, 2, 3);
    hidden.port().lineWidth(3);
    EXPECT_THAT(differences(shown.port()), IsEmpty());
    hidden.port().glWidget()->show();
    settle();
    EXPECT_THAT(differences(hidden.port()), IsEmpty());
}

TEST(AuditForeignGL, NeedsNoWidget)
{
    T3dPort port(nullptr, "no widget", false);
    GlRecorder recorder;
    recorder.start();
    port.beginForeignGL();
    port.endForeignGL();
    EXPECT_THAT(differences(port), IsEmpty());
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

namespace {

/** Draws as a careless library would. */
void drawCarelessly()
{
    glPointSize(7);
    glEnable(GL_BLEND);
}

std::string printedByPaint(T3dPort& port, Taction& action)
{
    port.setUpdateCommand(&action);
    const StdoutCapture out;
    port.OnPaint();
    return out.text();
}

} // namespace

TEST(AuditTrace, ALineForEachDifferenceAfterAPaint)
{
    const ScopedEnv on("LIRN_DEBUG_Q3DPORT_STATE", "");
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    char name[64];
    std::snprintf(name, sizeof(name), "T3dPort %p state - ", static_cast<void*>(&port));

    TfunctionAction careful([&](const Tevent&) { port.clear(GL_COLOR_BUFFER_BIT); });
    EXPECT_EQ("", printedByPaint(port, careful));
    TfunctionAction careless([&](const Tevent&) { drawCarelessly(); });
    EXPECT_EQ(std::string(name) + "blending: recorded 0, OpenGL has 1\n" + name +
                  "point size: recorded 1, OpenGL has 7\n",
              printedByPaint(port, careless));
    TfunctionAction bracketed([&](const Tevent&) {
        port.beginForeignGL();
        drawCarelessly();
        port.endForeignGL();
    });
    EXPECT_EQ("", printedByPaint(port, bracketed));
}

TEST(AuditTrace, NothingAndNoQueryWithoutTheVariable)
{
    const ScopedEnv off("LIRN_DEBUG_Q3DPORT_STATE", nullptr);
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    TfunctionAction careless([&](const Tevent&) { drawCarelessly(); });
    GlRecorder recorder;
    recorder.start();
    EXPECT_EQ("", printedByPaint(port, careless));
    recorder.stop();
    EXPECT_EQ(0, recorder.count("glGet*"));
    EXPECT_EQ(0, recorder.count("glIsEnabled"));
}
