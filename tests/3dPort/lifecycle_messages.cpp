#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/TviewportRendererChangedMsg.h"
#include "Graphics/3dPort/TviewportVisibilityChangedMsg.h"
#include "QtExtensions/Q3dPort.h"
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
        {"mine", false, "stub_Renderer", "hwRender_OpenGL_Renderer > mine = mine"},
        {"", true, "hwRender_OpenGL_Renderer", "mine > vp2Renderer = vp2Renderer"},
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
        if (row.message)
            EXPECT_THAT(details(client), ElementsAre(row.message));
        else
            EXPECT_THAT(details(client), IsEmpty());
    }
    Q3dPort::setUseGLCoreProfile(false);
}

TEST(PortMessages, OneForEachChangeOfVisibility)
{
    PortWindow<> made(60, 40);
    MessageCollector client(describe);
    made.port().addClient(&client);
    ASSERT_TRUE(made.show());
    made.port().make3dVisible(false);
    settle();
    made.port().make3dVisible(true);
    settle();

    made.window().hide();
    settle();
    EXPECT_THAT(details(client), ElementsAre("shown", "hidden", "shown", "hidden"));
}
