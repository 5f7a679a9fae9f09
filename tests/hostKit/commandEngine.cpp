#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TfailedException.h"
#include "commandEngine/TmetaCommandActionRegistration.h"

#include "support/HostProbes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/** Notes its arguments, and runs the script it is given. */
class EchoCmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    bool appendSyntax() override
    {
        flags().setMaxObjects(2);
        return flags().addFlag("-b", "-bool", Tsyntax::kBoolean) && flags().addFlag("i", "int", Tsyntax::kInteger) &&
               flags().addFlag("-d", "-double", Tsyntax::kDouble) &&
               flags().addFlag("-s", "-string", Tsyntax::kString) &&
               flags().addFlag("-sc", "-script", Tsyntax::kScript) && flags().addFlag("-n", "-none") &&
               flags().addFlag("-p", "-pair", Tsyntax::kInteger, Tsyntax::kString) && flags().makeFlagMultiUse("p");
    }

    int doEditFlags() override
    {
        std::string text;
        const auto note = [&](const char* what, const std::string& value) { text += what + value + " "; };
        if (args().isFlagSet("b"))
            note("b", args().boolean("b") ? "1" : "0");
        if (args().isFlagSet("-i"))
            note("i", std::to_string(args().integer("i")));
        if (args().isFlagSet("d"))
            note("d", std::to_string(args().real("d")));
        if (args().isFlagSet("s"))
            note("s", args().string("s").toStdString());
        if (args().isFlagSet("n"))
            note("n", "");
        for (unsigned use = 0; use < args().uses("p"); ++use)
            note("p", std::to_string(args().integer("p", 0, use)) + args().string("p", 1, use).toStdString());
        for (const Tstring& object : args().objects())
            note("o", object.toStdString());
        setResult(Tstring(text));
        if (args().isFlagSet("sc"))
            return args().script("sc")->run();
        return 1;
    }

    void giveAllFlags() { args().setAllFlags(true); }
    int doIt() override
    {
        if (args().objects().size() == 1 && args().objects()[0] == "all")
            giveAllFlags();
        return TiceBaseCmd::doIt();
    }
};

} // namespace

TEST(commandEngine, Arguments)
{
    TmetaCommandActionRegistration<EchoCmd> echo("echo");
    const struct
    {
        const char* text;
        const char* result; // null: an error
        const char* error;
    } cases[] = {
        {"", "", ""},
        {" // nothing\n ; ;\n", "", ""},
        {"echo -b on -i -3 -d 2.5 -s word", "b1 i-3 d2.500000 sword ", ""},
        {"echo -int 4 -string \"a \\\"b\\\"; //\" one two", "i4 sa \"b\"; // oone otwo ", ""},
        {"echo -i +7 -d 7; echo -n // last", "n ", ""},
        {"echo -p 1 a -pair 2 \"-b\"", "p1a p2-b ", ""},
        {"echo -i 2147483647", "i2147483647 ", ""},
        {"\"echo\" -s \"\"", "s ", ""},
        {"echo -i 2147483648", nullptr, "out of range"},
        {"echo -i 99999999999999999999", nullptr, "integer"},
        {"echo -i +-3", nullptr, "integer"},
        {"echo -i 3.5", nullptr, "'-int' needs an argument of type integer"},
        {"echo -i \"3\"", nullptr, "integer"},
        {"echo -b maybe", nullptr, "boolean"},
        {"echo -d 1x", nullptr, "number"},
        {"echo -i", nullptr, "needs 1 argument(s)"},
        {"echo -p 1 -n", nullptr, "needs 2 argument(s), the next of type string"},
        {"echo -i 1 -int 2", nullptr, "more than once"},
        {"echo -no", nullptr, "Unknown flag '-no'"},
        {"echo a b c", nullptr, "Unexpected argument 'c'"},
        {"echo -s \"open", nullptr, "quote"},
        {"nothing -s x", nullptr, "There is no command 'nothing'"},
        {"-i 3", nullptr, "There is no command '-i'"},
        {"echo all", nullptr, "An argument of flag '-b' is missing"},
        {"echo -n; echo -no; echo -i 1", nullptr, "Unknown flag"},
    };
    for (const auto& tested : cases) {
        SCOPED_TRACE(tested.text);
        const TcommandOutcome outcome = TcommandEngine::execute(tested.text);
        EXPECT_EQ(outcome.ok, tested.result != nullptr);
        EXPECT_EQ(asText(outcome.result), Tstring(tested.result));
        EXPECT_THAT(outcome.error.toStdString(), HasSubstr(tested.error));
    }
}

TEST(commandEngine, OneCommandOfAName)
{
    ErrorCollector errors;
    auto first = std::make_unique<TmetaCommandActionRegistration<EchoCmd>>("echo");
    {
        TmetaCommandActionRegistration<EchoCmd> second("echo");
        EXPECT_THAT(errors.messages(), ElementsAre("There is a command 'echo' already."));
        EXPECT_EQ(TcommandEngine::find("echo"), &first->command());
    }
    EXPECT_EQ(TmetaCommandActionRegistration<EchoCmd>::fsAction, &first->command());
    EXPECT_THAT(pythonLirnCommands(), ::testing::Contains(&first->command()));
    first.reset();
    EXPECT_FALSE(TcommandEngine::execute("echo").ok);
    EXPECT_EQ(TmetaCommandActionRegistration<EchoCmd>::fsAction, nullptr);
}

TEST(commandEngine, AScriptCannotRunTheCommandThatRunsIt)
{
    ErrorCollector errors;
    TmetaCommandActionRegistration<EchoCmd> outer("outer");
    TmetaCommandActionRegistration<EchoCmd> inner("inner");
    EXPECT_TRUE(TcommandEngine::execute("outer -sc \"inner -n\"").ok);
    EXPECT_FALSE(TcommandEngine::execute("outer -sc \"inner; outer -n\"").ok);
    EXPECT_THAT(errors.messages(), ElementsAre("outer: The command is running already."));
    EXPECT_TRUE(TcommandEngine::execute("outer -n").ok);
}

TEST(commandEngine, FlagsHaveNamesOfTheirOwn)
{
    Tsyntax syntax;
    EXPECT_TRUE(syntax.addFlag("-a", "-long"));
    for (const auto& [shortName, longName] : std::initializer_list<std::pair<const char*, const char*>>{
             {"a", "other"}, {"-o", "-long"}, {"-long", "-o"}, {"", "o"}, {nullptr, "o"}, {"-1", "o"}, {"o", "-o o"}}) {
        EXPECT_FALSE(syntax.addFlag(shortName, longName));
    }
    EXPECT_EQ(syntax.flags().size(), 1u);
    EXPECT_EQ(syntax.find("long"), syntax.find("-a"));
}
