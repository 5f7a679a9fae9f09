#include "commandEngine/TiceBaseCmd.h"

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TfailedException.h"
#include "commandEngine/commandFlags.h"
#include "commandEngine/pythonCommands.h"

TiceBaseCmd::TiceBaseCmd(const char* name) : fName(name) {}

TiceBaseCmd::~TiceBaseCmd()
{
    pythonUnregisterLirnCommand(this);
    TcommandEngine::remove(this);
}

void TiceBaseCmd::clear()
{
    fArgs.clear();
    fOutcome = TcommandOutcome();
}

bool TiceBaseCmd::appendSyntax()
{
    return true;
}

int TiceBaseCmd::doIt()
{
    return fArgs.isQuery() ? doQueryFlags() : doEditFlags();
}

const Tsyntax* TiceBaseCmd::syntax()
{
    if (!fSyntaxMade) {
        fSyntaxMade = true;
        fSyntaxGood = appendSyntax();
    }
    return fSyntaxGood ? &fSyntax : nullptr;
}

TcommandOutcome TiceBaseCmd::run(const TcommandTokens& arguments)
{
    const auto failed = [this](const Tstring& why) { return TcommandOutcome{false, {}, fName + ": " + why}; };
    if (fRunning)
        return failed("The command is running already.");
    const Tsyntax* syntax = this->syntax();
    if (!syntax)
        return failed("The flags of the command can't be made.");
    struct Tguard
    {
        bool& running;
        ~Tguard() { running = false; }
    } guard{fRunning = true};
    clear();
    try {
        fArgs.parse(*syntax, arguments);
        fOutcome.ok = doIt() != 0 && fOutcome.error.isEmpty();
    } catch (const std::exception& e) {
        setError(e.what());
        fOutcome.ok = false;
    }
    TcommandOutcome outcome = std::move(fOutcome);
    clear();
    return outcome.ok ? outcome : failed(outcome.error.isEmpty() ? Tstring("The command failed.") : outcome.error);
}

void TiceBaseCmd::setError(const Tstring& message)
{
    if (fOutcome.error.isEmpty())
        fOutcome.error = commandMessage(message);
}
