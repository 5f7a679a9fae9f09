// Scripts in Python, and what they may do to the program.

#include "Commands/Doors.h"

#include "commandEngine/TmetaCommandActionRegistration.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using ::testing::HasSubstr;

class Python : public CommandTest
{
};

/** Runs the command whose name has the next number, if there is one. */
class NestCmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    int doIt() override
    {
        const std::string next = "nest" + std::to_string(std::stoi(name().toStdString().substr(4)) + 1);
        if (!TcommandEngine::find(next))
            return 1;
        const TcommandOutcome outcome = TcommandEngine::execute(next);
        setError(outcome.error);
        return outcome.ok;
    }
};

} // namespace

TEST_F(Python, ValuesAreThoseOfTheLanguage)
{
    const std::pair<const char*, const char*> cases[] = {
        {"lirn.colorIndexSliderGrp('g', l='ä', v=2)", "'g'"},
        {"lirn.colorIndexSliderGrp('g', q=True, v=True)", "2"},
        {"lirn.colorIndexSliderGrp('g', query=True, label=True)", "'ä'"},
        {"lirn.colorIndexSliderGrp('g', exists=True)", "True"},
        {"lirn.colorIndexSliderGrp('g', e=True, cw=[(1, 20), (2, 30)], fdr=False)", "'g'"},
        {"lirn.colorIndexSliderGrp('g', q=True, columnWidth=True)", "[20, 30, 160]"},
        {"lirn.deleteUI('g')", ""},
    };
    for (const auto& [script, value] : cases)
        EXPECT_EQ(python(script), (Answer{true, value})) << script;
    const std::pair<const char*, const char*> wrong[] = {
        {"lirn.image(3)", "lirn.error: image: The name of an object must be a string."},
        {"lirn.image('i', image=None)",
         "lirn.error: image: A value of type NoneType can't be an argument of '-image'."},
        {"lirn.image('i', w=10**30)", "lirn.error: image: The value of '-width' is out of range."},
        {"lirn.image('i', q=True, w=3)", "lirn.error: image: Flag '-width' must be True or False here."},
        {"lirn.image('i', w=(1, 2))", "lirn.error: image: Flag '-width' has 1 argument(s)."},
        {"lirn.image('i', w=())", "lirn.error: image: Flag '-width' needs 1 argument(s), the next of type integer."},
        {"lirn.colorIndexSliderGrp(cc=3)",
         "lirn.error: colorIndexSliderGrp: A value of type int can't be an argument of '-changeCommand'."},
    };
    for (const auto& [script, message] : wrong)
        EXPECT_EQ(python(script), (Answer{false, message})) << script;
    EXPECT_FALSE(python("lirn.image('i\\0j')").ok);
    EXPECT_FALSE(python("lirn.image('i', **{'w\\0j': 1})").ok);
    EXPECT_EQ(python("try:\n  lirn.image(q=True)\nexcept RuntimeError as e:\n  caught = str(e)").ok, true);
    EXPECT_EQ(python("caught").text, "'image: The name of a control is missing.'");
}

TEST_F(Python, ScriptsThatGoWrongLeaveTheProgramAlive)
{
    const struct
    {
        const char* script;
        bool ok;
        const char* message;
    } cases[] = {
        {"raise ValueError('no')", false, "ValueError: no"},
        {"def f(): f()\nf()", false, "RecursionError: maximum recursion depth exceeded"},
        {"def f(): return lirn.deleteUI(f())\nf()", false, "RecursionError: maximum recursion depth exceeded"},
        {"class C:\n  def __repr__(self): raise KeyError(1)\nc = C()", true, ""},
        {"c", false, "KeyError: 1"},
        {"raise SystemExit(c)", false, "KeyError: 1"},
        {"if", false, "SyntaxError: invalid syntax"},
        {"'a", false, "SyntaxError: unterminated string"},
        {"import threading, time\nt = threading.Thread(target=lambda: lirn.image('late'))\nt.start(); t.join()", true,
         ""},
        {"import sys; sys.exit()", true, ""},
        {"sys.exit('bye')", false, "The script has ended with: bye"},
        {"class I(int):\n  def __eq__(self, other): raise KeyError(2)\nraise SystemExit(I(0))", false, "KeyError: 2"},
        {"input()", false, "RuntimeError: input(): lost sys.stdin"},
        {"quit(3)", false, ""},
        {"del lirn.image, sys.stdout, lirn.error", true, ""},
        {"1 + 1", true, "2"},
    };
    for (const auto& tested : cases) {
        const Answer answer = python(tested.script);
        EXPECT_EQ(answer.ok, tested.ok) << tested.script << ": " << answer.text;
        EXPECT_THAT(answer.text, HasSubstr(tested.message));
    }
    EXPECT_FALSE(find<QlirnStaticPicture>("late"));
    EXPECT_EQ(CommandTest::text("image x"), (Answer{true, "x"}));
}

TEST_F(Python, OutputGoesWhereTheProgramWants)
{
    std::string out, err;
    auto* interpreter = TpythonInterpreter::instance();
    interpreter->setOutput([&](const Tstring& text, bool isError) { (isError ? err : out) += text.toStdString(); });
    ASSERT_TRUE(python("import sys\nfor i in range(1 << 14): print('x' * 63)\nprint('ü', file=sys.stderr)").ok);
    EXPECT_EQ(out.size(), std::size_t(1) << 20);
    EXPECT_EQ(err, "ü\n");
    interpreter->setOutput({});
    StdoutCapture capture;
    ASSERT_TRUE(python("print('plain')").ok);
    EXPECT_EQ(capture.text(), "plain\n");
}

TEST_F(Python, CommandsThatLieTooDeep)
{
    EXPECT_TRUE(python("lirn").ok);
    std::vector<std::unique_ptr<TmetaCommandActionRegistration<NestCmd>>> nests;
    const auto add = [&] {
        const std::string name = "nest" + std::to_string(nests.size());
        nests.push_back(std::make_unique<TmetaCommandActionRegistration<NestCmd>>(name.c_str()));
    };
    while (nests.size() < TcommandEngine::kMaxDepth)
        add();
    EXPECT_TRUE(python("lirn.nest0()").ok) << "a command that came after the interpreter";
    add();
    EXPECT_THAT(python("lirn.nest0()").text, HasSubstr("Commands lie too deep in one another."));
    nests.clear();
    EXPECT_EQ(python("lirn.nest0()").text, "AttributeError: module 'lirn' has no attribute 'nest0'");
}

TEST_F(Python, TheOneItWasBuiltWithWhateverComesFirstOnThePath)
{
    QTemporaryDir other;
    QFile fake(other.filePath("python3"));
    ASSERT_TRUE(fake.open(QFile::WriteOnly));
    fake.close();
    fake.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    const QByteArray directory = other.path().toLocal8Bit();
    const ScopedEnv path("PATH", directory.constData());
    const ScopedEnv home("PYTHONHOME", directory.constData());
    const ScopedEnv library("PYTHONPATH", directory.constData());
    EXPECT_EQ(python("__import__('sys').prefix").text, "'/usr'");
    EXPECT_EQ(python("__import__('json').dumps([1])").text, "'[1]'");

    QFile script(other.filePath("script.py"));
    ASSERT_TRUE(script.open(QFile::WriteOnly));
    script.write("\xef\xbb\xbfhere = 1\nraise ValueError\n");
    script.close();
    const auto outcome = TpythonInterpreter::instance()->executeFile(script.fileName().toLocal8Bit());
    EXPECT_THAT(outcome.error.toStdString(), HasSubstr("script.py\", line 2"));
    EXPECT_EQ(python("here").text, "1");
    EXPECT_FALSE(TpythonInterpreter::instance()->executeFile(nullptr).ok);
}
