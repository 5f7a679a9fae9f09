#include "foundation/LirnGetEnv.h"
#include "foundation/Tclient.h"
#include "foundation/TclientServer.h"
#include "foundation/TenvironmentVariable.h"
#include "foundation/TerrorHandler.h"
#include "foundation/Tmetaclass.h"
#include "foundation/TresourceMap.h"
#include "foundation/TserverModifiedMsg.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

TEST(Tmetaclass, IstypeFollowsBothParents)
{
    const Tmetaclass base("testBase", 8, nullptr);
    const Tmetaclass other("testOther", 8, nullptr);
    const Tmetaclass both("testBoth", 24, &base, &other);
    const Tmetaclass derived("testDerived", 32, &both);
    for (const Tmetaclass* each : {&base, &other, &both, &derived})
        EXPECT_TRUE(derived.istype(each)) << each->name();
    EXPECT_FALSE(both.istype(&derived));
    EXPECT_FALSE(base.istype(&other));
    EXPECT_FALSE(base.istype(nullptr));
    EXPECT_EQ(derived.construct(), nullptr);
}

TEST(Tmetaclass, IsFoundWhileItLives)
{
    {
        const Tmetaclass first("testTwice", 1, nullptr);
        const Tmetaclass second("testTwice", 2, nullptr);
        EXPECT_EQ(Tmetaclass::find("testTwice"), &first);
    }
    EXPECT_EQ(Tmetaclass::find("testTwice"), nullptr);
    EXPECT_EQ(Tmetaclass::find(nullptr), nullptr);
    // Registered when the library was loaded: nothing has asked for it before.
    EXPECT_EQ(Tmetaclass::find("serverModifiedMsg"), TserverModifiedMsg::sTypeof());
}

TEST(TserverModifiedMsg, IsConstructedByItsMetaclassOnly)
{
    Tmetaclass stranger("testStranger", 8, nullptr, +[]() -> void* { return new int; });
    Tmetaclass* const own = TserverModifiedMsg::sTypeof();
    EXPECT_EQ(own->size(), 16u);
    for (Tmetaclass* each : {static_cast<Tmetaclass*>(nullptr), &stranger}) {
        alignas(TserverModifiedMsg) unsigned char memory[sizeof(TserverModifiedMsg)];
        EXPECT_EQ(TserverModifiedMsg::construct(each), nullptr);
        EXPECT_EQ(TserverModifiedMsg::constructInPlace(each, memory), nullptr);
    }
    const std::unique_ptr<TserverModifiedMsg> made(
        static_cast<TserverModifiedMsg*>(TserverModifiedMsg::construct(own)));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->server(), nullptr);
    EXPECT_EQ(made->typeof(), own);
    EXPECT_EQ(made->cast(own), made.get());
    EXPECT_EQ(made->cast(&stranger), nullptr);
    EXPECT_EQ(TserverModifiedMsg::constructInPlace(own, nullptr), nullptr);
    alignas(TserverModifiedMsg) unsigned char memory[sizeof(TserverModifiedMsg)];
    auto* const placed = static_cast<TserverModifiedMsg*>(TserverModifiedMsg::constructInPlace(own, memory));
    ASSERT_EQ(static_cast<void*>(placed), memory);
    placed->~TserverModifiedMsg();
}

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

TEST(TclientServer, ClientsComeOnceAndLeave)
{
    TclientServer server;
    Tlistener a;
    {
        Tlistener b;
        EXPECT_TRUE(server.addClient(&a));
        EXPECT_FALSE(server.addClient(&a));
        EXPECT_TRUE(server.addClient(&b));
        EXPECT_FALSE(server.addClient(nullptr));
        server.notify(TserverModifiedMsg(&server));
        EXPECT_EQ(b.fReceived, 1);
    }
    EXPECT_EQ(server.clientCount(), 1u);
    EXPECT_TRUE(server.removeClient(&a));
    EXPECT_FALSE(server.removeClient(&a));
    EXPECT_FALSE(server.removeClient(nullptr));
    server.notify(TserverModifiedMsg(&server));
    EXPECT_EQ(a.fReceived, 1);
}

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
    for (Tclient* each : {static_cast<Tclient*>(&leaver), static_cast<Tclient*>(victim.get()),
                          static_cast<Tclient*>(&last)})
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

namespace {

// An environment variable for the time of a test.
class Tenvironment
{
public:
    Tenvironment(const char* name, const char* value) : fName(name) { set(value); }
    ~Tenvironment() { set(nullptr); }
    void set(const char* value) { value ? setenv(fName, value, 1) : unsetenv(fName); }

private:
    const char* fName;
};

} // namespace

TEST(TenvironmentVariable, ReadsWhatIsThereNow)
{
    struct Tcase {
        const char* value;
        bool enabled;
        int number;
    };
    const Tcase cases[] = {{nullptr, false, 7}, {"", false, 7},      {"0", false, 0},        {"off", false, 7},
                           {"No", false, 7},    {"FALSE", false, 7}, {"1", true, 1},         {"-12", true, -12},
                           {"yes", true, 7},    {"nope", true, 7},   {"00", true, 0},        {"12x", true, 7},
                           {" ", true, 7},      {"99999999999", true, 7}};
    Tenvironment environment("LIRN_TEST_VARIABLE", nullptr);
    const TenvironmentVariable variable("LIRN_TEST_VARIABLE");
    for (const Tcase& each : cases) {
        SCOPED_TRACE(each.value ? each.value : "not set");
        environment.set(each.value);
        EXPECT_EQ(variable.isSet(), each.value != nullptr);
        EXPECT_STREQ(LirnGetEnv("LIRN_TEST_VARIABLE"), each.value);
        EXPECT_EQ(variable.isEnabled(), each.enabled);
        EXPECT_EQ(variable.asInt(7), each.number);
    }
    EXPECT_EQ(LirnGetEnv(nullptr), nullptr);
    EXPECT_FALSE(TenvironmentVariable(nullptr).isSet());
}

TEST(TresourceMap, OwnValueThenStarThenDefault)
{
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceNumber("view", "saZbuffer", 24), 24);
    EXPECT_EQ(TresourceMap::GetResourceString(nullptr, nullptr, nullptr), "");
    EXPECT_TRUE(TresourceMap::Set("*", "saZbuffer", "16"));
    EXPECT_TRUE(TresourceMap::Set("view", "saZbuffer", " 32 "));
    EXPECT_FALSE(TresourceMap::Set(nullptr, "saZbuffer", "8"));
    EXPECT_EQ(TresourceMap::GetResourceNumber("view", "saZbuffer", 24), 32);
    EXPECT_EQ(TresourceMap::GetResourceNumber("front", "saZbuffer", 24), 16);
    EXPECT_EQ(TresourceMap::GetResourceNumber(nullptr, "saZbuffer", 24), 16);
    for (const char* bad : {"", "many", "3 4", "0x10", "99999999999"}) {
        TresourceMap::Set("view", "saZbuffer", bad);
        EXPECT_EQ(TresourceMap::GetResourceNumber("view", "saZbuffer", 24), 24) << bad;
    }
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceNumber("front", "saZbuffer", 24), 24);
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
    Tenvironment environment("LIRN_RESOURCES", path.c_str());
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceString("view", "saFrameBufferMode", "double"), "single");
    EXPECT_EQ(TresourceMap::GetResourceString("view", "path", ""), "C:/x");
    EXPECT_EQ(TresourceMap::GetResourceNumber("view", "saAlphabuffer", 0), 8);
    TresourceMap::Set("view", "saFrameBufferMode", "double");
    EXPECT_EQ(TresourceMap::GetResourceString("view", "saFrameBufferMode", ""), "double");

    std::remove(path.c_str());
    TresourceMap::Clear();
    EXPECT_EQ(TresourceMap::GetResourceString("view", "saFrameBufferMode", "none"), "none");
}

namespace {

class TsilentHandler : public TerrorHandler
{
public:
    void handle(Tseverity severity, const Tstring& message) override { fSeen.emplace_back(severity, message); }

    std::vector<std::pair<Tseverity, Tstring>> fSeen;
};

} // namespace

TEST(TerrorHandler, ReportsGoToSubscribersAndTheHandlerInForce)
{
    TerrorHandler* const before = TerrorHandler::current();
    ASSERT_TRUE(before);
    std::vector<Tstring> heard;
    TerrorHandler::Tsubscription subscription;
    {
        TsilentHandler handler;
        EXPECT_EQ(TerrorHandler::install(&handler), before);
        subscription = TerrorHandler::subscribe([&heard](TerrorHandler::Tseverity, const Tstring& message) {
            heard.push_back(message);
            if (message == "first")
                TerrorHandler::report(TerrorHandler::kWarning, "second"); // from inside
        });
        const auto ignored = TerrorHandler::subscribe(nullptr);
        TerrorHandler::report(TerrorHandler::kError, "first");
        ASSERT_EQ(handler.fSeen.size(), 2u);
        EXPECT_EQ(handler.fSeen[0].first, TerrorHandler::kWarning);
        EXPECT_EQ(handler.fSeen[1].second, "first");
        EXPECT_EQ(heard.size(), 2u);
    }
    EXPECT_EQ(TerrorHandler::current(), nullptr);
    TerrorHandler::report(TerrorHandler::kError, "nobody in force");
    EXPECT_EQ(heard.size(), 3u);
    subscription.end();
    TerrorHandler::report(TerrorHandler::kError, "nobody listens");
    EXPECT_EQ(heard.size(), 3u);
    EXPECT_EQ(TerrorHandler::install(before), nullptr);
}
