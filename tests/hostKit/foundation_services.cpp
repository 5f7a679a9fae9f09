#include "foundation/LirnGetEnv.h"
#include "foundation/Tclient.h"
#include "foundation/TclientServer.h"
#include "foundation/TenvironmentVariable.h"
#include "foundation/TresourceMap.h"
#include "foundation/TserverModifiedMsg.h"
#include "support/HostProbes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace {

class Tlistener : public Tclient
{
public:
    void receive(const TserverModifiedMsg& message) override
    {
        ++fReceived;
        if (fOnReceive)
            fOnReceive(message);
    }
    void serverDeleted(TclientServer*) override
    {
        ++fDeleted;
        if (fOnDeleted)
            fOnDeleted();
    }

    std::function<void(const TserverModifiedMsg&)> fOnReceive;
    std::function<void()> fOnDeleted;
    int fReceived = 0;
    int fDeleted = 0;
};

} // namespace

TEST(TclientServer, ClientsChangeWhileAMessageGoesRound)
{
    TclientServer server;
    Tlistener leaver;
    auto victim = std::make_unique<Tlistener>();
    Tlistener last;
    Tlistener late;
    leaver.fOnReceive = [&](const TserverModifiedMsg& message) {
        server.removeClient(&leaver);
        victim.reset();
        server.addClient(&late);
        EXPECT_EQ(server.clientCount(), 2u);
        // A second round inside the first: all but the late comer hear two messages.
        server.notify(message);
    };
    for (Tclient* each :
         {static_cast<Tclient*>(&leaver), static_cast<Tclient*>(victim.get()), static_cast<Tclient*>(&last)})
        server.addClient(each);
    server.notify(TserverModifiedMsg(&server));
    EXPECT_EQ(leaver.fReceived, 1);
    EXPECT_EQ(last.fReceived, 2);
    EXPECT_EQ(late.fReceived, 1);
    EXPECT_EQ(server.clientCount(), 2u);

    // One that leaves and comes back in the same round is in, once, for the next.
    late.fOnReceive = [&](const TserverModifiedMsg&) {
        server.removeClient(&late);
        server.addClient(&late);
    };
    server.notify(TserverModifiedMsg(&server));
    EXPECT_EQ(late.fReceived, 2);
    EXPECT_EQ(server.clientCount(), 2u);
}

TEST(TclientServer, MayBeDeletedByAClient)
{
    auto server = std::make_unique<TclientServer>();
    Tlistener killer;
    Tlistener after;
    auto victim = std::make_unique<Tlistener>();
    killer.fOnReceive = [&](const TserverModifiedMsg&) { server.reset(); };
    // Clients are told in any order, and may end others while they are.
    killer.fOnDeleted = after.fOnDeleted = [&] { victim.reset(); };
    server->addClient(&killer);
    server->addClient(victim.get());
    server->addClient(&after);
    // Two rounds are under way when the server goes.
    Tlistener outer;
    outer.fOnReceive = [&](const TserverModifiedMsg& message) {
        outer.fOnReceive = nullptr;
        server->notify(message);
    };
    server->removeClient(&killer);
    server->addClient(&outer);
    server->addClient(&killer);
    const TserverModifiedMsg message(server.get());
    server->notify(message);
    EXPECT_FALSE(server);
    EXPECT_FALSE(victim);
    EXPECT_EQ(killer.fReceived, 1);
    EXPECT_EQ(killer.fDeleted + after.fDeleted + outer.fDeleted, 3);
}

TEST(TenvironmentVariable, ReadsWhatIsThereNow)
{
    struct Tcase
    {
        const char* value;
        bool enabled;
        int number;
    };
    const Tcase cases[] = {{nullptr, false, 7}, {"", false, 7},          {"0", false, 0}, {"off", false, 7},
                           {"No", false, 7},    {"FALSE", false, 7},     {"1", true, 1},  {"-12", true, -12},
                           {"yes", true, 7},    {"nope", true, 7},       {"00", true, 0}, {"12x", true, 7},
                           {" ", true, 7},      {"99999999999", true, 7}};
    const TenvironmentVariable variable("LIRN_TEST_VARIABLE");
    for (const Tcase& each : cases) {
        SCOPED_TRACE(each.value ? each.value : "not set");
        const ScopedEnv environment("LIRN_TEST_VARIABLE", each.value);
        EXPECT_EQ(variable.isSet(), each.value != nullptr);
        EXPECT_STREQ(LirnGetEnv("LIRN_TEST_VARIABLE"), each.value);
        EXPECT_EQ(variable.isEnabled(), each.enabled);
        EXPECT_EQ(variable.asInt(7), each.number);
    }
    EXPECT_EQ(LirnGetEnv(nullptr), nullptr);
    EXPECT_FALSE(TenvironmentVariable(nullptr).isSet());
}

TEST(TresourceMap, ReadsTheFileOfTheEnvironment)
{
    const std::string path = ::testing::TempDir() + "lirn_resources_test";
    std::FILE* const file = std::fopen(path.c_str(), "w");
    ASSERT_TRUE(file);
    std::fputs("! a comment: here\n\nno colon\n view.saFrameBufferMode :  single \r\n*.saAlphabuffer: 8\n:\n"
               "view.path: C:/x",
               file);
    std::fclose(file);
    const ScopedEnv environment("LIRN_RESOURCES", path.c_str());
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceString("view", "saFrameBufferMode", "double"), "single");
    EXPECT_EQ(TresourceMap::GetResourceString("view", "path", ""), "C:/x");
    EXPECT_EQ(TresourceMap::GetResourceNumber("view", "saAlphabuffer", 0), 8);
    std::remove(path.c_str());
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceString("view", "saFrameBufferMode", "none"), "none");
}
