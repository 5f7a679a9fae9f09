#include "commandEngine/TargParser.h"

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TfailedException.h"
#include "commandEngine/commandFlags.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>

namespace {

const char* nameOf(Tsyntax::TargumentType type)
{
    switch (type) {
    case Tsyntax::kBoolean:
        return "boolean";
    case Tsyntax::kInteger:
        return "integer";
    case Tsyntax::kDouble:
        return "number";
    case Tsyntax::kString:
        return "string";
    case Tsyntax::kScript:
        return "script";
    case Tsyntax::kNoArgument:
        break;
    }
    return "nothing";
}

template <class T> std::optional<T> numberFrom(const Tstring& text)
{
    const char* first = text.asChar();
    const char* const last = first + text.length();
    if (text.length() > 1 && *first == '+' && first[1] != '-')
        ++first;
    T value{};
    const auto read = std::from_chars(first, last, value);
    return read.ec == std::errc() && read.ptr == last ? std::optional<T>(value) : std::nullopt;
}

std::optional<bool> switchFrom(const Tstring& text)
{
    for (const char* yes : {"1", "on", "true", "yes"})
        if (text.equalsIgnoreCase(yes))
            return true;
    for (const char* no : {"0", "off", "false", "no"})
        if (text.equalsIgnoreCase(no))
            return false;
    return std::nullopt;
}

} // namespace

TargParser::Tvalue TargParser::convert(const Tsyntax::Tflag& flag, Tsyntax::TargumentType type,
                                       const TcommandValue& value)
{
    const auto* word = std::get_if<TbareWord>(&value);
    const auto* text = std::get_if<Tstring>(&value);
    const auto* whole = std::get_if<long long>(&value);
    switch (type) {
    case Tsyntax::kBoolean:
        if (const auto* given = std::get_if<bool>(&value))
            return *given;
        if (whole && (*whole == 0 || *whole == 1))
            return *whole == 1;
        if (const auto given = word ? switchFrom(word->text) : std::nullopt)
            return *given;
        break;
    case Tsyntax::kInteger: {
        const auto given = whole  ? std::optional<long long>(*whole)
                           : word ? numberFrom<long long>(word->text)
                                  : std::nullopt;
        if (!given)
            break;
        if (*given < std::numeric_limits<int>::min() || *given > std::numeric_limits<int>::max())
            throw TfailedException(
                Tstring::tFormat("The value ^1d of flag '^2s' is out of range.", *given, flag.longName));
        return static_cast<int>(*given);
    }
    case Tsyntax::kDouble:
        if (const auto* given = std::get_if<double>(&value))
            return *given;
        if (whole)
            return static_cast<double>(*whole);
        if (const auto given = word ? numberFrom<double>(word->text) : std::nullopt)
            return *given;
        break;
    case Tsyntax::kString:
        if (word || text)
            return word ? word->text : *text;
        break;
    case Tsyntax::kScript:
        if (const auto* given = std::get_if<TscriptPtr>(&value))
            return *given;
        if (word || text)
            return TcommandEngine::makeScript(word ? word->text : *text);
        break;
    case Tsyntax::kNoArgument:
        break;
    }
    throw TfailedException(Tstring::tFormat("Flag '^1s' needs an argument of type ^2s.", flag.longName, nameOf(type)));
}

void TargParser::clear()
{
    fUses.clear();
    fObjects.clear();
    fEdit = fQuery = fAllFlags = false;
}

void TargParser::parse(const Tsyntax& syntax, const TcommandTokens& tokens)
{
    clear();
    try {
        take(syntax, tokens);
    } catch (...) {
        clear();
        throw;
    }
}

void TargParser::take(const Tsyntax& syntax, const TcommandTokens& tokens)
{
    std::vector<const Tsyntax::Tflag*> flags; // of each token, null for a value
    for (const TcommandToken& token : tokens) {
        flags.push_back(nullptr);
        if (!token.isFlag)
            continue;
        const Tstring& name = std::get<Tstring>(token.value);
        flags.back() = syntax.find(name);
        if (!flags.back())
            throw TfailedException(Tstring::tFormat("Unknown flag '^1s'.", name));
        fEdit |= flags.back()->shortName == kELFeditFlag;
        fQuery |= flags.back()->shortName == kELFqueryFlag;
    }
    if (fEdit && fQuery)
        throw TfailedException("A command can't edit and query at once.");

    for (std::size_t i = 0; i < tokens.size();) {
        const Tsyntax::Tflag* flag = flags[i];
        if (!flag) {
            const TcommandValue& value = tokens[i++].value;
            const auto* word = std::get_if<TbareWord>(&value);
            const auto* text = std::get_if<Tstring>(&value);
            if (!word && !text)
                throw TfailedException("The name of an object must be a string.");
            if (fObjects.size() == syntax.maxObjects())
                throw TfailedException(Tstring::tFormat("Unexpected argument '^1s'.", word ? word->text : *text));
            fObjects.push_back(word ? word->text : *text);
            continue;
        }
        if (!flag->multiUse && uses(flag->shortName.asChar()))
            throw TfailedException(Tstring::tFormat("Flag '^1s' is given more than once.", flag->longName));
        fUses.push_back({flag, {}});
        ++i;
        if (fQuery)
            continue;
        for (const Tsyntax::TargumentType type : flag->types) {
            if (i == tokens.size() || flags[i])
                throw TfailedException(Tstring::tFormat("Flag '^1s' needs ^2d argument(s), the next of type ^3s.",
                                                        flag->longName, flag->types.size(), nameOf(type)));
            fUses.back().values.push_back(convert(*flag, type, tokens[i++].value));
        }
    }
}

unsigned TargParser::uses(const char* shortName) const
{
    const char* bare = shortName && *shortName == '-' ? shortName + 1 : shortName;
    return static_cast<unsigned>(std::count_if(fUses.begin(), fUses.end(), [bare](const Tuse& use) {
        return bare && use.flag->shortName.asChar() + 1 == Tstring(bare);
    }));
}

template <class T> const T& TargParser::argument(const char* shortName, unsigned index, unsigned use) const
{
    const char* bare = shortName && *shortName == '-' ? shortName + 1 : shortName;
    for (const Tuse& each : fUses) {
        if (!bare || each.flag->shortName.asChar() + 1 != Tstring(bare) || use-- > 0)
            continue;
        if (index < each.values.size())
            if (const T* value = std::get_if<T>(&each.values[index]))
                return *value;
        break;
    }
    throw TfailedException(Tstring::tFormat("An argument of flag '-^1s' is missing.", bare ? bare : ""));
}

bool TargParser::boolean(const char* shortName, unsigned index, unsigned use) const
{
    return argument<bool>(shortName, index, use);
}

int TargParser::integer(const char* shortName, unsigned index, unsigned use) const
{
    return argument<int>(shortName, index, use);
}

double TargParser::real(const char* shortName, unsigned index, unsigned use) const
{
    return argument<double>(shortName, index, use);
}

Tstring TargParser::string(const char* shortName, unsigned index, unsigned use) const
{
    return argument<Tstring>(shortName, index, use);
}

TscriptPtr TargParser::script(const char* shortName, unsigned index, unsigned use) const
{
    return argument<TscriptPtr>(shortName, index, use);
}
