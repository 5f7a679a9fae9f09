#pragma once

#include "foundation/Tstring.h"
#include "ui/Tscript.h"

#include <variant>
#include <vector>

/** A word of a command line without quotes: a number, a switch or a text, as the flag needs it. */
struct TbareWord
{
    Tstring text;
};

/** An argument as it was given. */
using TcommandValue = std::variant<bool, long long, double, Tstring, TbareWord, TscriptPtr>;

/** A piece of a command's arguments: a flag, under its short or long name, or a value. */
struct TcommandToken
{
    bool isFlag;
    TcommandValue value; ///< of a flag a Tstring, with the leading "-"
};
using TcommandTokens = std::vector<TcommandToken>;

/** What a command answers; nothing, when it answers nothing. */
using TcommandResult = std::variant<std::monostate, bool, int, double, Tstring, std::vector<int>>;

/** The result as text: 1 and 0 for a bool, the numbers of a list with spaces between them. */
Tstring asText(const TcommandResult& result);

/** How running a command has ended. */
struct TcommandOutcome
{
    bool ok = false;
    TcommandResult result; ///< nothing when it failed
    Tstring error;         ///< why it failed; empty when it did not
};
