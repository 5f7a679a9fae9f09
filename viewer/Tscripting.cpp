#include "Tscripting.h"

#include "commandEngine/TcommandEngine.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#ifdef PORTVIEW_PYTHON
#include "script/TpythonInterpreter.h"
#endif

namespace {

QString toQt(const Tstring& text)
{
    return QString::fromUtf8(text.asChar(), static_cast<int>(text.length()));
}

#ifdef PORTVIEW_PYTHON
TscriptOutcome toOutcome(const TpythonInterpreter::Toutcome& outcome)
{
    return {outcome.ok, toQt(outcome.value), toQt(outcome.error).trimmed()};
}
#endif

[[maybe_unused]] TscriptOutcome withoutPython()
{
    return {false, QString(), QCoreApplication::translate("Tscripting", "There is no Python.")};
}

} // namespace

TscriptOutcome runScript(TscriptLanguage language, const QString& text)
{
    const Tstring script = text.toStdString();
    if (language == TscriptLanguage::kCommands) {
        const TcommandOutcome outcome = TcommandEngine::execute(script);
        return {outcome.ok, toQt(asText(outcome.result)), toQt(outcome.error)};
    }
#ifdef PORTVIEW_PYTHON
    if (TpythonInterpreter* python = TpythonInterpreter::instance())
        return toOutcome(python->execute(script, "<console>"));
#endif
    return withoutPython();
}

TscriptOutcome runScriptFile([[maybe_unused]] const QString& path)
{
#ifdef PORTVIEW_PYTHON
    if (TpythonInterpreter* python = TpythonInterpreter::instance())
        return toOutcome(python->executeFile(QFile::encodeName(path).constData()));
#endif
    return withoutPython();
}

QString scriptFileProblem(const QString& path)
{
    if (QFileInfo(path).isDir())
        return QStringLiteral("Is a directory");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
}

void setScriptOutput([[maybe_unused]] std::function<void(const QString&, bool)> output)
{
#ifdef PORTVIEW_PYTHON
    TpythonInterpreter* python = TpythonInterpreter::instance();
    if (!python)
        return;
    if (!output)
        python->setOutput({});
    else
        python->setOutput(
            [output = std::move(output)](const Tstring& text, bool isError) { output(toQt(text), isError); });
#endif
}
