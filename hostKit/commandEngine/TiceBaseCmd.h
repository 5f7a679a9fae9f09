#pragma once

#include "commandEngine/TargParser.h"

/**
 * A command. One object serves every run of it: clear() takes the last run's traces away. A command derives from this,
 * adds its flags in appendSyntax() and does its work in doEditFlags() and doQueryFlags(), or in doIt() when it is
 * neither.
 *
 * The order of the virtual functions is part of the interface.
 */
class TiceBaseCmd
{
public:
    /** Runs a command for a script. */
    using TscriptDispatch = TcommandOutcome (*)(TiceBaseCmd& command, const TcommandTokens& arguments);

    /** Entering it in TcommandEngine is for TmetaCommandActionRegistration. */
    explicit TiceBaseCmd(const char* name);
    TiceBaseCmd(const TiceBaseCmd&) = delete;
    TiceBaseCmd& operator=(const TiceBaseCmd&) = delete;
    /** Leaves TcommandEngine and the scripts' module. */
    virtual ~TiceBaseCmd();

    /** Carries out the flags given; 0 when it failed, see setError(). */
    virtual int doEditFlags() { return 1; }
    /** Sets the result to what the first flag given asks for; 0 when there is no such flag. */
    virtual int doQueryFlags() { return 0; }
    /** Forgets the last run. */
    virtual void clear();
    /** Adds the command's flags to syntax(); false when one can't be added. */
    virtual bool appendSyntax();
    /** What a run does once its arguments are parsed; 0 when it failed. May throw TfailedException. */
    virtual int doIt();

    const Tstring& name() const { return fName; }

    /** The command's flags; null when they can't be made. */
    const Tsyntax* syntax();

    /** Runs the command. Never throws; refused while it is running already. */
    TcommandOutcome run(const TcommandTokens& arguments);

    TscriptDispatch scriptDispatch() const { return fScriptDispatch; }
    void setScriptDispatch(TscriptDispatch dispatch) { fScriptDispatch = dispatch; }

protected:
    Tsyntax& flags() { return fSyntax; }
    TargParser& args() { return fArgs; }
    const TargParser& args() const { return fArgs; }
    void setResult(TcommandResult result) { fOutcome.result = std::move(result); }
    /** Why the run failed: a key of commandMessage(), or a text. The first one given stays. */
    void setError(const Tstring& message);

private:
    Tstring fName;
    Tsyntax fSyntax;
    TargParser fArgs;
    TcommandOutcome fOutcome;
    TscriptDispatch fScriptDispatch = nullptr;
    bool fSyntaxMade = false;
    bool fSyntaxGood = false;
    bool fRunning = false;
};
