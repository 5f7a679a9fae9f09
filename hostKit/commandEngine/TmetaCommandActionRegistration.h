#pragma once

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TiceBaseCmd.h"
#include "commandEngine/pythonCommands.h"

/**
 * Makes the one object of a command and enters it, for text and for scripts; both end with the registration. Meant for
 * a static object, so that the command comes and goes with its library. A name that is taken leaves the older command
 * as it is, with a report to the error handler.
 *
 * @code
 *     static TmetaCommandActionRegistration<TiceStaticImageCmd> gImageCmd("image");
 * @endcode
 */
template <class Command> class TmetaCommandActionRegistration
{
public:
    explicit TmetaCommandActionRegistration(const char* name) : fCommand(name)
    {
        if (!TcommandEngine::add(&fCommand))
            return;
        fsAction = &fCommand;
        fCommand.setScriptDispatch(pythonDispatchLirnCommand);
        pythonRegisterLirnCommand(&fCommand);
    }
    ~TmetaCommandActionRegistration()
    {
        if (fsAction == &fCommand)
            fsAction = nullptr;
    }

    Command& command() { return fCommand; }

    /** The registered object; null when there is none. */
    static inline Command* fsAction = nullptr;

private:
    Command fCommand;
};
