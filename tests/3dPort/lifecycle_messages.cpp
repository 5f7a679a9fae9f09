#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/TviewportRendererChangedMsg.h"
#include "Graphics/3dPort/TviewportVisibilityChangedMsg.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tmetaclass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class OverridingPort : public T3dPort
{
public:
    using T3dPort::T3dPort;
    Tstring renderStringOverride() const override { return fOverride; }

    Tstring fOverride;
};

/** The old and the new name, and the name that the port answers with while the message goes round. */
std::string describe(const TserverModifiedMsg& message)
{
    auto& m = const_cast<TserverModifiedMsg&>(message);
    if (auto* renderer = static_cast<TviewportRendererChangedMsg*>(m.cast(TviewportRendererChangedMsg::sTypeof()))) {
        const auto* port = static_cast<const T3dPort*>(message.server());
        return renderer->oldRenderer().toStdString() + " > " + renderer->newRenderer().toStdString() + " = " +
               port->rendererName().toStdString();
    }
    if (auto* visible = static_cast<TviewportVisibilityChangedMsg*>(m.cast(TviewportVisibilityChangedMsg::sTypeof())))
        return visible->isVisible() ? "shown" : "hidden";
    return "another message";
}

std::vector<std::string> details(const MessageCollector& collector)
{
    std::vector<std::string> all;
    for (const auto& message : collector.messages())
        all.push_back(message.details);
    return all;
}

} // namespace

TEST(PortMessages, OneForEachChangeOfTheRenderer)
{
    struct Row
    {
        const char* override;
        bool coreProfile;
        const char* requested;
        const char* message; ///< null for none
    };
    const Row rows[] = {
        {"", false, "base_OpenGL_Renderer", nullptr},
        {"", false, "hwRender_OpenGL_Renderer",
         "base_OpenGL_Renderer > hwRender_OpenGL_Renderer = hwRender_OpenGL_Renderer"},
        {"", false, "hwRender_OpenGL_Renderer", nullptr},
        {"mine", false, "stub_Renderer", "hwRender_OpenGL_Renderer > mine = mine"},
        {"mine", false, "base_OpenGL_Renderer", nullptr},
        {"", true, "hwRender_OpenGL_Renderer", "mine > vp2Renderer = vp2Renderer"},
        {"", true, "base_OpenGL_Renderer", nullptr},
        {"", true, "stub_Renderer", "vp2Renderer > stub_Renderer = stub_Renderer"},
        // The correction comes after the override.
        {"base_OpenGL_Renderer", true, "stub_Renderer", "stub_Renderer > vp2Renderer = vp2Renderer"},
        {"", false, "", "vp2Renderer >  = "},
    };
    PortWindow<OverridingPort> made(60, 40);
    OverridingPort& port = made.port();
    MessageCollector client(describe);
    port.addClient(&client);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.requested);
        client.clear();
        port.fOverride = row.override;
        Q3dPort::setUseGLCoreProfile(row.coreProfile);
        port.setRendererString(row.requested);
        EXPECT_EQ(port.isXREViewport(), port.rendererName() == "vp2Renderer");
        EXPECT_EQ(port.isGLCoreViewport(), row.coreProfile);
        if (!row.message) {
            EXPECT_THAT(details(client), IsEmpty());
            continue;
        }
        EXPECT_THAT(details(client), ElementsAre(row.message));
        EXPECT_EQ(client.messages()[0].server, &port);
    }
    Q3dPort::setUseGLCoreProfile(false);
}

TEST(PortMessages, ARendererMayNameItself)
{
    // The name is one that the change itself overwrites.
    T3dPort port(nullptr, "testPort", false);
    port.setRendererString("stub_Renderer");
    port.setRendererString(port.rendererName());
    EXPECT_STREQ(port.rendererName().asChar(), "stub_Renderer");
}

TEST(PortMessages, TheXreRendererShadesSmoothly)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    GlRecorder recorder;
    recorder.start();
    port.setRendererString("vp2Renderer");
    EXPECT_THAT(recorder.calls(), ElementsAre("glShadeModel(GL_SMOOTH)"));
    EXPECT_EQ(port.glContextRecord()->fShadeModel, GLenum(GL_SMOOTH));

    port.setRendererString("stub_Renderer");
    recorder.start();
    port.setRendererString("vp2Renderer");
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST(PortMessages, OneForEachChangeOfVisibility)
{
    PortWindow<> made(60, 40);
    MessageCollector client(describe);
    made.port().addClient(&client);
    ASSERT_TRUE(made.show());
    EXPECT_THAT(details(client), ElementsAre("shown"));

    made.port().make3dVisible(false);
    settle();
    EXPECT_THAT(details(client), ElementsAre("shown", "hidden"));
    made.port().make3dVisible(true);
    settle();
    EXPECT_THAT(details(client), ElementsAre("shown", "hidden", "shown"));
    EXPECT_EQ(client.messages()[0].server, &made.port());

    made.window().hide();
    settle();
    EXPECT_THAT(details(client), ElementsAre("shown", "hidden", "shown", "hidden"));
}

TEST(PortMessages, HaveTheirSizesAndTypes)
{
    struct Row
    {
        Tmetaclass* type;
        unsigned size;
        void* (*construct)(Tmetaclass*);
        void* (*constructInPlace)(Tmetaclass*, void*);
    };
    const Row rows[] = {
        {TviewportRendererChangedMsg::sTypeof(), 48, TviewportRendererChangedMsg::construct,
         TviewportRendererChangedMsg::constructInPlace},
        {TviewportVisibilityChangedMsg::sTypeof(), 24, TviewportVisibilityChangedMsg::construct,
         TviewportVisibilityChangedMsg::constructInPlace},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.type->name());
        EXPECT_EQ(row.type->size(), row.size);
        EXPECT_EQ(row.type->parent(), TserverModifiedMsg::sTypeof());
        EXPECT_EQ(Tmetaclass::find(row.type->name()), row.type);

        const std::unique_ptr<TserverModifiedMsg> made(static_cast<TserverModifiedMsg*>(row.construct(row.type)));
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->typeof(), row.type);
        EXPECT_EQ(made->server(), nullptr);
        EXPECT_EQ(made->cast(row.type), made.get());
        EXPECT_EQ(made->cast(TserverModifiedMsg::sTypeof()), made.get());
        EXPECT_EQ(made->cast(T3dPort::sTypeof()), nullptr);

        alignas(16) unsigned char memory[48];
        auto* const placed = static_cast<TserverModifiedMsg*>(row.constructInPlace(row.type, memory));
        ASSERT_EQ(static_cast<void*>(placed), memory);
        placed->~TserverModifiedMsg();

        EXPECT_EQ(row.construct(nullptr), nullptr);
        EXPECT_EQ(row.construct(TserverModifiedMsg::sTypeof()), nullptr);
        EXPECT_EQ(row.constructInPlace(TserverModifiedMsg::sTypeof(), memory), nullptr);
    }
}
