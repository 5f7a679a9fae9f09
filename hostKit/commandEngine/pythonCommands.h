#pragma once

#include "commandEngine/TcommandValue.h"

class TiceBaseCmd;

/** \name Commands open to scripts
 * Which commands a script in Python can call. An interpreter, if the program has one, makes functions of them; none is
 * needed here. */
///@{
/** Opens a command to scripts under its name; false for null, for an empty name and for one that is taken. */
bool pythonRegisterLirnCommand(TiceBaseCmd* command);
/** Takes it away; one that is not open is ignored. */
void pythonUnregisterLirnCommand(const TiceBaseCmd* command);
const std::vector<TiceBaseCmd*>& pythonLirnCommands();

/** Runs a command for a script: the dispatch function of commands without one of their own. */
TcommandOutcome pythonDispatchLirnCommand(TiceBaseCmd& command, const TcommandTokens& arguments);
///@}
