// What the render state operations send to OpenGL, and what they spare it.

#include "3dPort/Calls.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

#include <functional>

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

class RenderState : public ShownPort
{
protected:
    TglContext& record() { return *T3dPortProbe::context(port()); }

    void expectCalls(const std::vector<Step>& steps)
    {
        for (const Step& step : steps) {
            EXPECT_EQ(step.calls, callsOf(port(), step.run)) << "step " << &step - steps.data();
            EXPECT_EQ(TstringArray(), port().stateDifferences()) << "step " << &step - steps.data();
        }
    }
};

} // namespace

TEST_F(RenderState, CachedSettersSendChangesOnly)
{
    expectCalls({
        {[](T3dPort& p) { p.pointSize(1); }, {}},
        {[](T3dPort& p) { p.pointSize(3); }, {"glPointSize(3)"}},
        {[](T3dPort& p) { p.pointSize(3.0000002f); }, {"glPointSize(3.0000002)"}},
        {[](T3dPort& p) { p.lineWidth(2); }, {"glLineWidth(2)"}},
        {[](T3dPort& p) { p.blending(false); }, {}},
        {[](T3dPort& p) { p.blending(true); }, {"glEnable(GL_BLEND)"}},
        {[](T3dPort& p) { p.blending(false); }, {"glDisable(GL_BLEND)"}},
        {[](T3dPort& p) { p.depthMask(false); }, {"glDepthMask(GL_FALSE)"}},
        {[](T3dPort& p) { p.depthFunc(T3dPort::kDepthAlways); }, {"glDepthFunc(GL_ALWAYS)"}},
        {[](T3dPort& p) { p.shadeModel(T3dPort::kShadeSmooth); }, {"glShadeModel(GL_SMOOTH)"}},
        {[](T3dPort& p) { p.shadeModelChanged(T3dPort::kShadeSmooth); }, {"glShadeModel(GL_SMOOTH)"}},
        {[](T3dPort& p) { p.clearColor(TportColor(0.75f, 0.75f, 0.75f, 0)); }, {"glClearColor(0.75, 0.75, 0.75, 0)"}},
        {[](T3dPort& p) { p.color(TportColor(1, 0.5f, 0)); }, {"glColor3fv([1 0.5 0])"}},
        {[](T3dPort& p) { p.depthTest(true); }, {"glEnable(GL_DEPTH_TEST)"}},
        {[](T3dPort& p) { p.depthTest(true); }, {}},
    });
}

TEST_F(RenderState, LayerModesAreBlendFactors)
{
    const char* const wanted[] = {
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_ZERO, GL_SRC_ALPHA)",
        "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE)",
        "glBlendFunc(GL_DST_COLOR, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_DST_COLOR, GL_ONE_MINUS_SRC_ALPHA)",
        "glBlendFunc(GL_ONE, GL_ZERO)",
        "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR)",
        "glBlendFunc(GL_DST_COLOR, GL_ONE)",
        "glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR)",
        "glBlendFunc(GL_ONE, GL_ONE)",
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
        {on, {"glEnable(GL_LINE_SMOOTH)", "glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"}},
        {on, {"glEnable(GL_LINE_SMOOTH)"}},
        {off, {"glDisable(GL_LINE_SMOOTH)", "glDisable(GL_BLEND)"}},
        {[](T3dPort& p) { p.blending(true); }, {"glEnable(GL_BLEND)"}},
        {on, {"glEnable(GL_LINE_SMOOTH)"}},
        {off, {"glDisable(GL_LINE_SMOOTH)", "glDisable(GL_BLEND)"}}, // whoever had switched it on
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
        {box({1, 0, 40, 30}, false), calls("glScissor(1, 0, 39, 30)")},
        {box({5, 20, 15, 5}, true), calls("glScissor(0, 0, 0, 0)")},
        {box({-32768, -32768, 32767, 32767}, true), calls("glScissor(-32768, -32768, 65535, 65535)")},
        {box({0, 0, 40, 30}, false), off},
    });
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
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
}
