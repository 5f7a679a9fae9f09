// What the render state operations send to OpenGL, and what they spare it.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;
using Operation = std::function<void(T3dPort&)>;

Calls callsOf(T3dPort& port, const Operation& operation)
{
    GlRecorder recorder;
    recorder.start();
    operation(port);
    recorder.stop();
    return recorder.calls();
}

struct Step
{
    Operation run;
    Calls calls;
};

class RenderState : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }
    TglContext& record() { return *T3dPortProbe::context(port()); }

    void expectCalls(const std::vector<Step>& steps)
    {
        int number = 0;
        for (const Step& step : steps) {
            EXPECT_EQ(step.calls, callsOf(port(), step.run)) << "step " << number;
            EXPECT_EQ(TstringArray(), port().stateDifferences()) << "step " << number;
            ++number;
        }
    }

    PortWindow<> fWindow{40, 30};
};

} // namespace

TEST_F(RenderState, CachedSettersSendChangesOnly)
{
    expectCalls({
        {[](T3dPort& p) { p.pointSize(1); }, {}},
        {[](T3dPort& p) { p.pointSize(3); }, {"glPointSize(3)"}},
        {[](T3dPort& p) { p.pointSize(3); }, {}},
        {[](T3dPort& p) { p.pointSize(3.0000002f); }, {"glPointSize(3.0000002)"}},
        {[](T3dPort& p) { p.lineWidth(1); }, {}},
        {[](T3dPort& p) { p.lineWidth(2); }, {"glLineWidth(2)"}},
        {[](T3dPort& p) { p.lineWidthStateChanged(2); }, {"glLineWidth(2)"}},
        {[](T3dPort& p) { p.blending(false); }, {}},
        {[](T3dPort& p) { p.blending(true); }, {"glEnable(GL_BLEND)"}},
        {[](T3dPort& p) { p.blendingStateChanged(true); }, {"glEnable(GL_BLEND)"}},
        {[](T3dPort& p) { p.blending(false); }, {"glDisable(GL_BLEND)"}},
        {[](T3dPort& p) { p.depthMask(true); }, {}},
        {[](T3dPort& p) { p.depthMask(false); }, {"glDepthMask(GL_FALSE)"}},
        {[](T3dPort& p) { p.depthFunc(T3dPort::kDepthLess); }, {}},
        {[](T3dPort& p) { p.depthFunc(T3dPort::kDepthAlways); }, {"glDepthFunc(GL_ALWAYS)"}},
        {[](T3dPort& p) { p.shadeModel(T3dPort::kShadeFlat); }, {}},
        {[](T3dPort& p) { p.shadeModel(T3dPort::kShadeSmooth); }, {"glShadeModel(GL_SMOOTH)"}},
        {[](T3dPort& p) { p.shadeModelChanged(T3dPort::kShadeSmooth); }, {"glShadeModel(GL_SMOOTH)"}},
        {[](T3dPort& p) { p.clearColor(TportColor(0.75f, 0.75f, 0.75f, 1)); }, {}},
        {[](T3dPort& p) { p.clearColor(TportColor(0.75f, 0.75f, 0.75f, 0)); }, {"glClearColor(0.75, 0.75, 0.75, 0)"}},
        {[](T3dPort& p) { p.color(kCblack); }, {}},
        {[](T3dPort& p) { p.color(TportColor(1, 0.5f, 0)); }, {"glColor3fv([1 0.5 0])"}},
        {[](T3dPort& p) { p.depthTest(true); }, {"glEnable(GL_DEPTH_TEST)"}},
        {[](T3dPort& p) { p.depthTest(true); }, {}},
    });
}

TEST_F(RenderState, UncachedOperationsAlwaysSend)
{
    for (int round = 0; round < 2; ++round) {
        expectCalls({
            {[](T3dPort& p) { p.pointSmoothing(true); }, {"glEnable(GL_POINT_SMOOTH)"}},
            {[](T3dPort& p) { p.pointSmoothing(false); }, {"glDisable(GL_POINT_SMOOTH)"}},
            {[](T3dPort& p) { p.polygonMode(T3dPort::kFrontAndBack, T3dPort::kPolygonLine); },
             {"glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)"}},
            {[](T3dPort& p) { p.depthRange(0.25, 0.5); }, {"glDepthRange(0.25, 0.5)"}},
            {[](T3dPort& p) { p.polygonOffset(2, 3); }, {"glPolygonOffset(2, 3)"}},
            {[](T3dPort& p) { p.polygonOffsetLower(); }, {"glPolygonOffset(0.95, 1)"}},
            {[](T3dPort& p) { p.polygonOffsetRaise(); }, {"glPolygonOffset(1.1, -1)"}},
            {[](T3dPort& p) { p.edgeFlag(true); }, {"glEdgeFlag(GL_TRUE)"}},
        });
    }
    double zNear = -1;
    double zFar = -1;
    port().getDepthRange(zNear, zFar);
    EXPECT_EQ(0.25, zNear);
    EXPECT_EQ(0.5, zFar);

    float factor = 0;
    float units = 0;
    EXPECT_TRUE(port().getPolygonOffset(factor, units));
    EXPECT_EQ(1.1f, factor);
    EXPECT_EQ(-1.0f, units);
    port().setNoPolygonOffset(true);
    for (const Operation& operation :
         {Operation([](T3dPort& p) { p.polygonOffset(7, 7); }), Operation([](T3dPort& p) { p.polygonOffsetLower(); }),
          Operation([](T3dPort& p) { p.polygonOffsetRaise(); })})
        EXPECT_EQ(Calls(), callsOf(port(), operation));

    port().edgeFlag(false);
    EXPECT_FALSE(port().edgeFlag());
}

TEST_F(RenderState, BlendFactorsAreSentAgainOnRequest)
{
    const Calls same = {};
    const Step steps[] = {
        {[](T3dPort& p) { p.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero); }, {"glBlendFunc(GL_ONE, GL_ZERO)"}},
        {[](T3dPort& p) { p.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero); }, same},
        {[](T3dPort& p) { p.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendOne); }, {"glBlendFunc(GL_ONE, GL_ONE)"}},
        {[](T3dPort& p) { p.blendFunc(T3dPort::kBlendOne, T3dPort::kBlendOne); }, same},
    };
    for (const Step& step : steps) {
        EXPECT_EQ(step.calls, callsOf(port(), step.run));
        EXPECT_FALSE(record().fValidBits.test(TglContext::kResendBlendFunc));
    }
    record().fValidBits.set(TglContext::kResendBlendFunc);
    EXPECT_EQ(Calls({"glBlendFunc(GL_ONE, GL_ONE)"}), callsOf(port(), steps[3].run));
    EXPECT_FALSE(record().fValidBits.test(TglContext::kResendBlendFunc));
}

TEST_F(RenderState, LayerModesAreBlendFactors)
{
    const char* const wanted[] = {
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_ZERO, GL_SRC_ALPHA)",                "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE)",                 "glBlendFunc(GL_DST_COLOR, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_DST_COLOR, GL_ONE_MINUS_SRC_ALPHA)", "glBlendFunc(GL_ONE, GL_ZERO)",
        "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR)",      "glBlendFunc(GL_DST_COLOR, GL_ONE)",
        "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR)",      "glBlendFunc(GL_ONE, GL_ONE)",
    };
    constexpr unsigned kUnknown = 11;
    for (const unsigned mode : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, unsigned(-1)}) {
        record().fValidBits.set(TglContext::kResendBlendFunc);
        EXPECT_EQ(Calls({wanted[std::min(mode, kUnknown)]}),
                  callsOf(port(), [mode](T3dPort& p) { p.setLayerBlendMode(mode); }))
            << mode;
    }
}

TEST_F(RenderState, LineSmoothingTakesBlendingAlong)
{
    const Operation on = [](T3dPort& p) { p.lineSmoothing(true); };
    const Operation off = [](T3dPort& p) { p.lineSmoothing(false); };
    expectCalls({
        {off, {"glDisable(GL_LINE_SMOOTH)"}},
        {on,
         {"glEnable(GL_LINE_SMOOTH)", "glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"}},
        {on, {"glEnable(GL_LINE_SMOOTH)"}},
        {off, {"glDisable(GL_LINE_SMOOTH)", "glDisable(GL_BLEND)"}},
        {[](T3dPort& p) { p.blending(true); }, {"glEnable(GL_BLEND)"}},
        {on, {"glEnable(GL_LINE_SMOOTH)"}},
        {off, {"glDisable(GL_LINE_SMOOTH)", "glDisable(GL_BLEND)"}}, // whoever had switched it on
    });
}

TEST_F(RenderState, Culling)
{
    EXPECT_EQ(Calls(), callsOf(port(), [](T3dPort& p) { EXPECT_EQ(T3dPort::kCullNone, p.cullFace()); }));
    expectCalls({
        {[](T3dPort& p) { p.cullFace(T3dPort::kCullFront); }, {"glCullFace(GL_FRONT)", "glEnable(GL_CULL_FACE)"}},
        {[](T3dPort& p) { EXPECT_EQ(T3dPort::kCullFront, p.cullFace()); },
         {"glGetIntegerv(GL_CULL_FACE_MODE, pointer)"}},
        {[](T3dPort& p) { p.cullFace(T3dPort::TcullingMethod(3)); }, {}},
        {[](T3dPort& p) { p.cullFace(T3dPort::kCullBack); }, {"glCullFace(GL_BACK)", "glEnable(GL_CULL_FACE)"}},
        {[](T3dPort& p) { EXPECT_EQ(T3dPort::kCullBack, p.cullFace()); },
         {"glGetIntegerv(GL_CULL_FACE_MODE, pointer)"}},
        {[](T3dPort& p) { p.cullFace(T3dPort::kCullNone); }, {"glDisable(GL_CULL_FACE)", "glCullFace(GL_BACK)"}},
        {[](T3dPort& p) { EXPECT_EQ(T3dPort::kCullNone, p.cullFace()); }, {}},
    });
}

TEST_F(RenderState, Scissoring)
{
    const auto box = [](const TportRect& r, bool force) { return [=](T3dPort& p) { p.scissor(r, force); }; };
    const auto calls = [](const char* scissor) { return Calls{"glEnable(GL_SCISSOR_TEST)", scissor}; };
    const Calls off = {"glDisable(GL_SCISSOR_TEST)"};
    expectCalls({
        {box({0, 0, 40, 30}, false), off},
        {box({-5, -5, 400, 300}, false), off},
        {box({0, 0, 40, 30}, true), calls("glScissor(0, 0, 40, 30)")},
        {box({1, 0, 40, 30}, false), calls("glScissor(1, 0, 39, 30)")},
        {box({0, 1, 40, 30}, false), calls("glScissor(0, 1, 40, 29)")},
        {box({0, 0, 39, 30}, false), calls("glScissor(0, 0, 39, 30)")},
        {box({0, 0, 40, 29}, false), calls("glScissor(0, 0, 40, 29)")},
        {box({5, 5, 5, 20}, false), calls("glScissor(0, 0, 0, 0)")},
        {box({5, 20, 15, 5}, true), calls("glScissor(0, 0, 0, 0)")},
        {box({-32768, -32768, 32767, 32767}, true), calls("glScissor(-32768, -32768, 65535, 65535)")},
        {box({0, 0, 40, 30}, false), off},
    });
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());

    port().pushViewport(TportRect(10, 10, 20, 20));
    expectCalls({
        {box({10, 10, 20, 20}, false), off},
        {box({11, 10, 20, 20}, false), calls("glScissor(11, 10, 9, 10)")},
    });
}

TEST_F(RenderState, ClearLeavesTheStencilUnlessTheContextIsKnownToHaveOne)
{
    const Operation clear = [](T3dPort& p) { p.clear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT); };
    EXPECT_EQ(Calls({"glClear(GL_COLOR_BUFFER_BIT)"}), callsOf(port(), clear));
    record().fDirtyBits.set(TglContext::kHasStencilBuffer);
    const Calls withStencil = {"glClearStencil(0)", "glClear(GL_STENCIL_BUFFER_BIT|GL_COLOR_BUFFER_BIT)"};
    EXPECT_EQ(withStencil, callsOf(port(), clear));
    EXPECT_EQ(withStencil, callsOf(port(), [](T3dPort& p) { p.clear(GL_COLOR_BUFFER_BIT); }));
}

TEST_F(RenderState, ClearColourOfThePlanes)
{
    const TportColor colour(0.1f, 0.2f, 0.3f, 0.4f);
    port().clearColor(colour);
    EXPECT_TRUE(colour == port().clearColor());
    port().setDrawingPlanes(T3dPort::kSecondPlanes);
    EXPECT_TRUE(kCblack == port().clearColor());
}

TEST_F(RenderState, FogParametersGoOnce)
{
    const Operation on = [](T3dPort& p) { p.setFogEnabled(true); };
    const Operation off = [](T3dPort& p) { p.setFogEnabled(false); };
    expectCalls({
        {off, {}},
        {on,
         {"glEnable(GL_FOG)", "glFogi(GL_FOG_MODE, GL_LINEAR)", "glFogf(GL_FOG_DENSITY, 0.1)",
          "glFogf(GL_FOG_START, 0)", "glFogf(GL_FOG_END, 100)"}},
        {on, {}},
        {off, {"glDisable(GL_FOG)"}},
        {off, {}},
        {on, {"glEnable(GL_FOG)"}},
    });
}

TEST_F(RenderState, FogSourceNeedsFogCoordinates)
{
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasFogCoord);
    expectCalls({
        {[](T3dPort& p) { p.setFogSource(TglContext::kFragmentDepth); }, {}},
        {[](T3dPort& p) { p.setFogSource(TglContext::kFogCoordinate); },
         {"glFogi(GL_FOG_COORDINATE_SOURCE, GL_FOG_COORDINATE)"}},
        {[](T3dPort& p) { p.setFogSource(TglContext::kFogCoordinate); }, {}},
        {[](T3dPort& p) { p.setFogSource(TglContext::kFragmentDepth); },
         {"glFogi(GL_FOG_COORDINATE_SOURCE, GL_FRAGMENT_DEPTH)"}},
    });
    T3dPort::fsGraphicsFlags.clear(T3dPort::kHasFogCoord);
    EXPECT_EQ(Calls(), callsOf(port(), [](T3dPort& p) { p.setFogSource(TglContext::kFogCoordinate); }));
    EXPECT_EQ(TglContext::kFragmentDepth, port().fogSource());
}

TEST_F(RenderState, Depths)
{
    GLint colourBits = 0;
    GLint depthBits = 0;
    for (const GLenum name : {GL_RED_BITS, GL_GREEN_BITS, GL_BLUE_BITS, GL_ALPHA_BITS}) {
        GLint bits = 0;
        glGetIntegerv(name, &bits);
        colourBits += bits;
    }
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    ASSERT_GT(depthBits, 0);
    port().setDrawingPlanes(T3dPort::kSecondPlanes);
    EXPECT_EQ(colourBits, port().mainDepth());
    EXPECT_EQ(depthBits, port().zbufferDepth());
    EXPECT_EQ(T3dPort::kSecondPlanes, port().drawingPlanes());
    record().fDirtyBits.clear(TglContext::kHasDepthBuffer);
    EXPECT_EQ(0, port().zbufferDepth());
    EXPECT_EQ(Calls(), callsOf(port(), [](T3dPort& p) { p.depthTest(true); }));

    T3dPort closed(nullptr, "closed", false);
    EXPECT_EQ(0, closed.mainDepth());
    EXPECT_EQ(0, closed.zbufferDepth());
}

TEST_F(RenderState, AccumulationNeedsABuffer)
{
    EXPECT_EQ(Calls(), callsOf(port(), [](T3dPort& p) {
                  EXPECT_FALSE(p.accum(T3dPort::kAccumLoad, 1));
                  p.clearAccum(1, 1, 1, 1);
              }));
    TresourceMap::Set("testPort", "saAccumbuffer", "1");
    PortWindow<> accumulating(20, 20);
    ASSERT_TRUE(accumulating.show());
    accumulating.port().setCurrentContext();
    const Operation accumulate = [](T3dPort& p) {
        p.clearAccum(1, 0, 0.5f, 0);
        EXPECT_TRUE(p.accum(T3dPort::kAccumLoad, 0.5f));
    };
    EXPECT_EQ(Calls({"glClearAccum(1, 0, 0.5, 0)", "glAccum(GL_LOAD, 0.5)"}),
              callsOf(accumulating.port(), accumulate));
}

// Each of these would switch the context if it did anything.
TEST_F(RenderState, UnchangedValuesDoNotSwitchContexts)
{
    const struct
    {
        const char* name;
        Operation run;
    } setters[] = {
        {"color", [](T3dPort& p) { p.color(TportColor(1, 0, 0)); }},
        {"pointSize", [](T3dPort& p) { p.pointSize(4); }},
        {"lineWidth", [](T3dPort& p) { p.lineWidth(4); }},
        {"blending", [](T3dPort& p) { p.blending(true); }},
        {"depthTest", [](T3dPort& p) { p.depthTest(true); }},
        {"depthMask", [](T3dPort& p) { p.depthMask(false); }},
        {"depthFunc", [](T3dPort& p) { p.depthFunc(T3dPort::kDepthGequal); }},
        {"clearColor", [](T3dPort& p) { p.clearColor(TportColor(0, 1, 0, 0.5f)); }},
        {"shadeModel", [](T3dPort& p) { p.shadeModel(T3dPort::kShadeSmooth); }},
        {"setFogSource", [](T3dPort& p) { p.setFogSource(TglContext::kFragmentDepth); }},
    };
    PortWindow<> other(20, 20, Buffering::kDouble);
    ASSERT_TRUE(other.show());
    for (const auto& setter : setters)
        setter.run(port());
    other.port().setCurrentContext();
    for (const auto& setter : setters) {
        EXPECT_EQ(Calls(), callsOf(port(), setter.run)) << setter.name;
        EXPECT_EQ(&other.port(), T3dPort::currentPort()) << setter.name;
    }

    // Two more look at the record only after the switch.
    GlRecorder recorder;
    recorder.start();
    port().blendFunc(T3dPort::kBlendOne, T3dPort::kBlendZero);
    recorder.stop();
    EXPECT_EQ(1, recorder.count("glXMakeCurrent"));
    EXPECT_EQ(&port(), T3dPort::currentPort());
}

TEST(RenderStateCore, FixedFunctionStateIsRecordedOnly)
{
    Q3dPort::setUseGLCoreProfile(true);
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.setCurrentContext();
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasFogCoord);
    EXPECT_EQ(Calls(), callsOf(port, [](T3dPort& p) {
                  p.setFogEnabled(true);
                  p.setFogSource(TglContext::kFogCoordinate);
                  p.shadeModelChanged(T3dPort::kShadeSmooth);
              }));
    EXPECT_TRUE(port.isFogEnabled());
    EXPECT_EQ(TglContext::kFogCoordinate, port.fogSource());
    EXPECT_EQ(GLenum(GL_SMOOTH), port.glContextRecord()->fShadeModel);
    port.setFogEnabled(false);
    EXPECT_FALSE(port.isFogEnabled());

    float factor = 0;
    float units = 5;
    port.polygonOffset(2, 3);
    EXPECT_TRUE(port.getPolygonOffset(factor, units));
    EXPECT_EQ(2, factor);
    EXPECT_EQ(0, units);
}
