#pragma once

#include "foundation/Tstring.h"

/** An environment variable, read anew at each question. */
class TenvironmentVariable
{
public:
    explicit TenvironmentVariable(const char* name) : fName(name) {}

    bool isSet() const { return value() != nullptr; }
    /** Null when it is not set. */
    const char* value() const;
    /** The value as a decimal number; @p def when it is not set or no int. */
    int asInt(int def = 0) const;
    /** True when set to something else than "", "0", "false", "off" or "no", in letters of any case. */
    bool isEnabled() const;

private:
    Tstring fName;
};
