#pragma once

#include "foundation/Tstring.h"

#include <functional>

/**
 * The Python that is part of the program. The module "lirn" has a function for every command open to scripts: objects
 * are its arguments, flags its keyword arguments under their short or long names, a flag without arguments or in a
 * query is given by True, several arguments of a flag by a tuple and several uses by a list of tuples. Results are
 * Python values; a command that fails raises lirn.error, a RuntimeError, with its message.
 *
 * @code
 *     import lirn
 *     def changed():
 *         print(lirn.colorIndexSliderGrp("wire", q=True, value=True))
 *     lirn.colorIndexSliderGrp("wire", label="Wire", minValue=1, maxValue=8, value=3, changeCommand=changed)
 * @endcode
 *
 * A flag that takes a script is given a callable, or a string of Python. All scripts share one set of global names;
 * lirn is among them. There is no input to read. The interpreter takes no setting from the environment. For the thread of the user interface;
 * nothing here throws. A script may start threads, which can't call commands and whose output comes once the program
 * waits for events.
 */
class TpythonInterpreter
{
public:
    /** How a script ended. */
    struct Toutcome
    {
        bool ok = false;
        Tstring value; ///< of an expression what Python shows of its value, nothing for None
        Tstring error; ///< the trace of the exception that ended the script; empty when none did
    };
    /** @param isError  written to sys.stderr, not sys.stdout */
    using Toutput = std::function<void(const Tstring& text, bool isError)>;

    /** The program's interpreter, started by the first call; it stays. Null when Python can't be started. */
    static TpythonInterpreter* instance();

    /**
     * Runs a script, which may be an expression. An exception ends the script and nothing more, also SystemExit: one
     * without an error code counts as a success.
     * @param name  what traces call the script
     */
    Toutcome execute(const Tstring& script, const char* name = "<script>");
    /** Runs the script in a file of UTF-8 text. */
    Toutcome executeFile(const char* path);

    /** Where what scripts write goes; at first, and with an empty function, to the standard streams. */
    void setOutput(Toutput output);

private:
    TpythonInterpreter() = default;
};
