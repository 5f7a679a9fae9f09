#pragma once

#include "foundation/Tstring.h"

#include <memory>

/** A piece of a user's script, ready to run: what a control runs when it is worked. */
class Tscript
{
public:
    Tscript() = default;
    Tscript(const Tscript&) = delete;
    Tscript& operator=(const Tscript&) = delete;
    virtual ~Tscript() = default;

    /** The script as it was written; of a function of the script's language, what names it. */
    virtual Tstring text() const = 0;

    /** Runs it, and reports to the error handler what goes wrong; false then. Never throws. */
    virtual bool run() = 0;
};

using TscriptPtr = std::shared_ptr<Tscript>;
