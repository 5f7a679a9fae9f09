#pragma once

#include <QString>

#include <functional>

/** \name Scripts of the viewer's user
 * Python, unless the program was built without it, and commands written as text (TcommandEngine::execute). */
///@{
enum class TscriptLanguage { kPython, kCommands };

struct TscriptOutcome
{
    bool ok = false;
    QString value; ///< what a Python expression or the last command answers; empty for nothing
    QString error;
};

constexpr bool hasPython()
{
#ifdef PORTVIEW_PYTHON
    return true;
#else
    return false;
#endif
}

TscriptOutcome runScript(TscriptLanguage language, const QString& text);
/** Runs a file of Python. */
TscriptOutcome runScriptFile(const QString& path);
/** What keeps a script from being read, without a full stop; empty when nothing does. */
QString scriptFileProblem(const QString& path);
/** Where what Python writes goes; with an empty function to the standard streams. */
void setScriptOutput(std::function<void(const QString& text, bool isError)> output);
///@}
