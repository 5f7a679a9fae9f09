#include "commandEngine/pythonCommands.h"

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TiceBaseCmd.h"

#include <algorithm>

namespace {

// Never deleted, as the commands themselves may have static storage.
std::vector<TiceBaseCmd*>& open()
{
    static auto* all = new std::vector<TiceBaseCmd*>;
    return *all;
}

} // namespace

bool pythonRegisterLirnCommand(TiceBaseCmd* command)
{
    if (!command || command->name().isEmpty() ||
        std::any_of(open().begin(), open().end(),
                    [command](const TiceBaseCmd* each) { return each->name() == command->name(); })) {
        return false;
    }
    open().push_back(command);
    return true;
}

void pythonUnregisterLirnCommand(const TiceBaseCmd* command)
{
    open().erase(std::remove(open().begin(), open().end(), command), open().end());
}

const std::vector<TiceBaseCmd*>& pythonLirnCommands()
{
    return open();
}

TcommandOutcome pythonDispatchLirnCommand(TiceBaseCmd& command, const TcommandTokens& arguments)
{
    return TcommandEngine::run(command, arguments);
}
