#pragma once

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnColorIndexSliderGrp.h"
#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TiceControlBaseCmd.h"
#include "script/TpythonInterpreter.h"
#include "ui/QlirnSlider.h"
#include "ui/QlirnStaticPicture.h"
#include "ui/TUIInventory.h"

#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

/** An outcome, the result as text; the error without what Python puts around it. */
struct Answer
{
    bool ok;
    std::string text;
};
inline bool operator==(const Answer& a, const Answer& b)
{
    return a.ok == b.ok && a.text == b.text;
}
inline std::ostream& operator<<(std::ostream& out, const Answer& answer)
{
    return out << (answer.ok ? "result " : "error ") << answer.text;
}

/** What a Python script ends with. */
inline Answer python(const std::string& script)
{
    const auto outcome = TpythonInterpreter::instance()->execute(script);
    std::string text = (outcome.ok ? outcome.value : outcome.error).toStdString();
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return {outcome.ok, text.substr(text.rfind('\n') + 1)};
}

enum class Door { kText, kPython };

/** Runs the commands by one of the ways there are, with controls in a panel of its own. */
class CommandTest : public ::testing::Test
{
public:
    using Flags = std::vector<std::pair<std::string, std::string>>; ///< long name, and argument as in both languages

    CommandTest()
    {
        fPanel.setObjectName("panel");
        new QVBoxLayout(&fPanel);
        TiceControlBaseCmd::setDefaultParent(&fPanel);
    }

    static Answer text(const std::string& commands)
    {
        const TcommandOutcome outcome = TcommandEngine::execute(commands);
        return {outcome.ok, (outcome.ok ? asText(outcome.result) : outcome.error).toStdString()};
    }

    /** An empty argument stands for a flag without one. */
    static Answer run(Door door, const std::string& command, const std::string& object, const Flags& flags)
    {
        std::string line = command;
        std::string arguments = object.empty() ? "" : "'" + object + "', ";
        for (const auto& [name, value] : flags) {
            line += " -" + name + " " + value;
            arguments += name + "=" + (value.empty() ? "True" : value) + ", ";
        }
        if (door == Door::kText)
            return text(line + " " + object);
        Answer answer = python("(lambda v: ' '.join(map(str, v)) if isinstance(v, list) else str(int(v)) if "
                               "isinstance(v, bool) else str(v))(lirn." +
                               command + "(" + arguments + "))");
        if (answer.ok && answer.text.size() >= 2)
            answer.text = answer.text.substr(1, answer.text.size() - 2);
        const std::string prefix = "lirn.error: ";
        if (answer.text.compare(0, prefix.size(), prefix) == 0)
            answer.text.erase(0, prefix.size());
        return answer;
    }

    QWidget& panel() { return fPanel; }

    template <class Widget> static Widget* find(const char* name)
    {
        return qobject_cast<Widget*>(gUIInventory->find(name, Widget::staticMetaObject.className(), true, false));
    }

private:
    QWidget fPanel;
};
