#include "commandEngine/TcommandEngine.h"

#include "commandEngine/TiceBaseCmd.h"
#include "commandEngine/commandMessages.h"
#include "foundation/TerrorHandler.h"

#include <algorithm>
#include <map>

namespace {

// Never deleted: commands with static storage leave it as late as at the end of the process.
std::map<Tstring, TiceBaseCmd*>& registry()
{
    static auto* all = new std::map<Tstring, TiceBaseCmd*>;
    return *all;
}

int gDepth = 0;

struct Tnesting
{
    Tnesting() { ++gDepth; }
    ~Tnesting() { --gDepth; }
};

TcommandOutcome failure(const Tstring& error)
{
    return {false, {}, error};
}

bool isFlag(const std::string& word)
{
    return word.size() > 1 && word[0] == '-' &&
           ((word[1] >= 'a' && word[1] <= 'z') || (word[1] >= 'A' && word[1] <= 'Z'));
}

struct Tstatement
{
    Tstring command;
    TcommandTokens arguments;
};

/** False when a quote is not closed. */
bool split(const Tstring& source, std::vector<Tstatement>& statements)
{
    const std::string text = source.toStdString();
    bool fresh = true; // the next word is a command's name
    std::size_t i = 0;
    const auto put = [&](TcommandToken token) {
        if (fresh)
            statements.emplace_back();
        auto& statement = statements.back();
        if (!fresh) {
            statement.arguments.push_back(std::move(token));
        } else if (const auto* word = std::get_if<TbareWord>(&token.value)) {
            statement.command = word->text;
        } else {
            statement.command = std::get<Tstring>(token.value);
        }
        fresh = false;
    };
    while (i < text.size()) {
        const char c = text[i];
        if (c == ';' || c == '\n') {
            fresh = true;
            ++i;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            ++i;
        } else if (text.compare(i, 2, "//") == 0) {
            i = std::min(text.find('\n', i), text.size());
        } else if (c == '"') {
            std::string value;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\' && i + 1 < text.size()) {
                    ++i;
                    value += text[i] == 'n' ? '\n' : text[i] == 't' ? '\t' : text[i];
                } else {
                    value += text[i];
                }
            }
            if (i >= text.size())
                return false;
            ++i;
            put({false, Tstring(value)});
        } else {
            const std::size_t end = std::min(text.find_first_of(" \t\r\n;\"", i), text.size());
            const std::string word = text.substr(i, end - i);
            i = end;
            if (isFlag(word))
                put({true, Tstring(word)});
            else
                put({false, TbareWord{Tstring(word)}});
        }
    }
    return true;
}

class TcommandScript : public Tscript
{
public:
    explicit TcommandScript(const Tstring& text) : fText(text) {}

    Tstring text() const override { return fText; }
    bool run() override
    {
        const TcommandOutcome outcome = TcommandEngine::execute(fText);
        if (!outcome.ok)
            TcommandEngine::displayError(outcome.error);
        return outcome.ok;
    }

private:
    Tstring fText;
};

} // namespace

bool TcommandEngine::add(TiceBaseCmd* command)
{
    if (!command || command->name().isEmpty())
        return false;
    const bool isNew = registry().emplace(command->name(), command).second;
    if (!isNew)
        displayError(Tstring::tFormat("There is a command '^1s' already.", command->name()));
    return isNew;
}

void TcommandEngine::remove(const TiceBaseCmd* command)
{
    for (auto each = registry().begin(); each != registry().end(); ++each) {
        if (each->second == command) {
            registry().erase(each);
            return;
        }
    }
}

TiceBaseCmd* TcommandEngine::find(const Tstring& name)
{
    const auto found = registry().find(name);
    return found == registry().end() ? nullptr : found->second;
}

std::vector<TiceBaseCmd*> TcommandEngine::commands()
{
    std::vector<TiceBaseCmd*> all;
    for (const auto& each : registry())
        all.push_back(each.second);
    return all;
}

TcommandOutcome TcommandEngine::run(TiceBaseCmd& command, const TcommandTokens& arguments)
{
    if (gDepth >= kMaxDepth)
        return failure("Commands lie too deep in one another.");
    const Tnesting nesting;
    return command.run(arguments);
}

TcommandOutcome TcommandEngine::execute(const Tstring& text)
{
    std::vector<Tstatement> statements;
    if (!split(text, statements))
        return failure("A quote is not closed.");
    TcommandOutcome outcome{true, {}, {}};
    for (const Tstatement& statement : statements) {
        TiceBaseCmd* command = find(statement.command);
        outcome = command ? run(*command, statement.arguments)
                          : failure(Tstring::tFormat("There is no command '^1s'.", statement.command));
        if (!outcome.ok)
            break;
    }
    return outcome;
}

TscriptPtr TcommandEngine::makeScript(const Tstring& text)
{
    return std::make_shared<TcommandScript>(text);
}

void TcommandEngine::displayWarning(const Tstring& message)
{
    TerrorHandler::report(TerrorHandler::kWarning, commandMessage(message));
}

void TcommandEngine::displayError(const Tstring& message)
{
    TerrorHandler::report(TerrorHandler::kError, commandMessage(message));
}
