#include "3dPort/Calls.h"
#include "support/HostProbes.h"
#include "support/T3dPortProbe.h"

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using testing::HasSubstr;

TEST(PortConstruction, SendsItsInitialStateInOrder)
{
    const ScopedEnv viewportOnlyWhenItChanges("LIRN_FORCE_VP_SIZE", nullptr);
    const PortWindow<> first(60, 40);
    GlRecorder recorder;
    recorder.start();
    const PortWindow<> second(60, 40);
    recorder.stop();

    std::vector<std::string> expected = {
        "glEnable(GL_NORMALIZE)",
        "glMatrixMode(GL_PROJECTION)",
        kLoadIdentity,
        "glMatrixMode(GL_MODELVIEW)",
        kLoadIdentity,
        "glClearColor(0.75, 0.75, 0.75, 1)",
        "glColor3fv([1 1 1])",
        "glColor3fv([0 0 0])",
        "glEnable(GL_NORMALIZE)",
        "glShadeModel(GL_FLAT)",
        "glDisable(GL_DITHER)",
        "glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1)",
    };
    // Once with the context's first binding, once by the constructor, which finds two-sided lighting on already.
    for (int i = 0; i < 2; ++i)
        for (const char* call :
             {"glEnable(GL_POLYGON_OFFSET_FILL)", "glPolygonOffset(0.95, 1)", "glDisable(GL_POLYGON_OFFSET_FILL)",
              "glDisable(GL_POLYGON_OFFSET_LINE)", "glDisable(GL_POLYGON_OFFSET_POINT)"})
            expected.push_back(call);
    EXPECT_EQ(glCalls(recorder), expected);
    EXPECT_EQ(recorder.count("glXMakeCurrent"), 1);
    EXPECT_EQ(recorder.count("glXCreateContext"), 1);
}

TEST(PortConstruction, AsksForTheBuffersThatItsResourcesName)
{
    const PortWindow<> hardwareIsKnown(60, 40);
    const std::string plain = "GLX_RGBA GLX_RED_SIZE=8 GLX_GREEN_SIZE=8 GLX_BLUE_SIZE=8 GLX_BUFFER_SIZE=24";
    struct Row
    {
        const char* key;
        const char* value;
        std::string list;
        bool stencilDisabled = false;
    };
    const Row rows[] = {
        {"", "", "[" + plain + " GLX_DEPTH_SIZE=24]"},
        {"saFrameBufferMode", "DOUBLE", "[GLX_DOUBLEBUFFER " + plain + " GLX_DEPTH_SIZE=24]"},
        {"saZbuffer", "0", "[" + plain + "]"},
        {"saStencilbuffer", "1", "[" + plain + " GLX_STENCIL_SIZE=8 GLX_DEPTH_SIZE=24]"},
        {"saStencilbuffer", "1", "[" + plain + " GLX_DEPTH_SIZE=24]", true},
        {"saAccumbuffer", "1",
         "[" + plain + " GLX_ACCUM_RED_SIZE=1 GLX_ACCUM_GREEN_SIZE=1 GLX_ACCUM_BLUE_SIZE=1 GLX_DEPTH_SIZE=24]"},
        {"saAlphabuffer", "1",
         "[GLX_RGBA GLX_RED_SIZE=8 GLX_GREEN_SIZE=8 GLX_BLUE_SIZE=8 GLX_ALPHA_SIZE=8 GLX_BUFFER_SIZE=32 "
         "GLX_DEPTH_SIZE=24]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.key) + "=" + row.value);
        if (std::strcmp(row.key, "saAlphabuffer") == 0 && !T3dPort::sHasAlphaBuffer())
            continue; // where the hardware has none it is not asked for
        TresourceMap::Clear();
        TresourceMap::Set("keyed", row.key, row.value);
        const ScopedEnv disabled("LIRN_DISABLE_STENCIL_BUFFER", row.stencilDisabled ? "" : nullptr);
        QWidget window;
        GlRecorder recorder;
        recorder.start();
        const T3dPort port(&window, "keyed", false);
        recorder.stop();
        EXPECT_THAT(from("glXChooseVisual", recorder.calls()).front(), HasSubstr(row.list));
    }
}

TEST(PortConstruction, ACoreProfilePortSendsNoFixedFunctionState)
{
    const ScopedEnv noAudit("LIRN_DEBUG_Q3DPORT_STATE", nullptr);
    Q3dPort::setUseGLCoreProfile(true);
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    port.glWidget()->resize(48, 32);
    GlRecorder recorder;
    recorder.start();
    const PortWindow<> another(60, 40);
    port.OnPaint();
    port.setCurrentContext();
    port.setFogEnabled(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    recorder.stop();
    for (const std::string& call : glCalls(recorder)) {
        EXPECT_THAT(call, testing::AnyOf(HasSubstr("POLYGON_OFFSET"), testing::StartsWith("glPolygonOffset("),
                                         testing::StartsWith("glViewport("), testing::StartsWith("glDrawBuffer(")));
    }
    EXPECT_EQ(port.portRect(), TportRect(0, 0, 48, 32));
}

TEST(PortConstruction, KeepsOrderOfFields)
{
    const T3dPort port(nullptr, "testPort", false);
    const auto fields = T3dPortProbe::fields(port);
    for (std::size_t i = 1; i < fields.size(); ++i)
        EXPECT_LT(fields[i - 1].offset, fields[i].offset) << fields[i - 1].name << " before " << fields[i].name;
}

namespace {

/** The slot of a virtual function in its table, by the common C++ ABI: a member pointer holds 1 plus its offset. */
template <class F> std::ptrdiff_t slotOf(F function)
{
    std::ptrdiff_t words[2] = {};
    static_assert(sizeof function == sizeof words);
    std::memcpy(words, &function, sizeof words);
    EXPECT_EQ(words[0] & 1, 1) << "not virtual";
    return (words[0] - 1) / std::ptrdiff_t(sizeof(void*));
}

} // namespace

TEST(PortConstruction, KeepsOrderOfVirtualOperations)
{
    // clang-format off
    const std::ptrdiff_t overridden[] = {
        slotOf(&T3dPort::typeof), slotOf(&T3dPort::cast), slotOf(&T3dPort::doPress), slotOf(&T3dPort::doDoubleClick),
        slotOf(&T3dPort::doUpdate), slotOf(&T3dPort::doEnterRegion), slotOf(&T3dPort::doExitRegion),
        slotOf(&T3dPort::doStow), slotOf(&T3dPort::doUnStow), slotOf(&T3dPort::doPtrMoved),
        slotOf(&T3dPort::doMouseWheel), slotOf(&T3dPort::visibleNotify), slotOf(&T3dPort::adjustEventLocalPosition),
        slotOf(&T3dPort::beginSelect), slotOf(&T3dPort::endSelect),
        slotOf(static_cast<bool (Tcontrol::*)(TpixelMap&, short)>(&Tcontrol::pixelMapRead)),
        slotOf(static_cast<bool (Tcontrol::*)(TgenericPixelMap<float>&, TportRect, PixelMapReadColorSpace)>(
            &Tcontrol::pixelMapRead)),
        slotOf(&T3dPort::parentWindowMoveNotify), slotOf(&T3dPort::resize),
    };
    // clang-format on
    // clang-format off
    const std::ptrdiff_t added[] = {
        slotOf(&T3dPort::setKeyPressCommand), slotOf(&T3dPort::setDoubleClickCommand),
        slotOf(&T3dPort::setKeyReleaseCommand), slotOf(&T3dPort::setKeyRepeatCommand),
        slotOf(&T3dPort::setPtrMovedCommand), slotOf(&T3dPort::setUpdateCommand), slotOf(&T3dPort::isStowed),
        slotOf(&T3dPort::doUpdateNow), slotOf(&T3dPort::constructQControl), slotOf(&T3dPort::resizeHook),
        slotOf(&T3dPort::setToInteractiveMode), slotOf(&T3dPort::setToNormalMode),
        slotOf(&T3dPort::renderStringOverride), slotOf(&T3dPort::makeExternalRendererCurrent),
    };
    // clang-format on
    // A virtual destructor takes the first two slots.
    for (std::size_t i = 0; i < std::size(overridden); ++i)
        EXPECT_EQ(overridden[i], std::ptrdiff_t(2 + i)) << "operation " << i;
    for (std::size_t i = 1; i < std::size(added); ++i)
        EXPECT_EQ(added[i], added[0] + std::ptrdiff_t(i)) << "added operation " << i;
    EXPECT_GT(added[0], overridden[std::size(overridden) - 1]);
}
