#pragma once

#include "commandEngine/TcommandValue.h"

class TiceBaseCmd;

/**
 * The commands of the program, and the ways to run them. For the thread of the user interface. Nothing here throws.
 *
 * @code
 *     TcommandEngine::execute("colorIndexSliderGrp -label \"Wire\" -minValue 1 -maxValue 8 -value 3");
 * @endcode
 */
class TcommandEngine
{
public:
    /** Enters a command; false for an empty name and, with a report to the error handler, for one that is taken. */
    static bool add(TiceBaseCmd* command);
    /** Takes a command out; one that is not in is ignored. */
    static void remove(const TiceBaseCmd* command);
    static TiceBaseCmd* find(const Tstring& name);
    /** All commands, in order of their names. */
    static std::vector<TiceBaseCmd*> commands();

    /** How deep commands, and scripts that run commands, can lie in one another. */
    static constexpr int kMaxDepth = 64;

    static TcommandOutcome run(TiceBaseCmd& command, const TcommandTokens& arguments);

    /**
     * Runs commands written as text and ends at the first that fails. A command is its name followed by flags, their
     * arguments and the names of objects; a semicolon or the end of the line ends it. Texts with spaces stand in double
     * quotes, where \\" is a quote, \\\\ a backslash, \\n a new line and \\t a tab; // begins a comment.
     * @return the outcome of the last command that ran; success without a result when there was none. A text with a
     * quote that is not closed runs nothing.
     */
    static TcommandOutcome execute(const Tstring& text);

    /** A script of commands written as text, see execute(). */
    static TscriptPtr makeScript(const Tstring& text);

    /** Shows a message, given by its key or text, without ending the command: reports it to the error handler. */
    static void displayWarning(const Tstring& message);
    /** The same for an error that no caller is told of. */
    static void displayError(const Tstring& message);
};
