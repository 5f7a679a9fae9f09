#pragma once

#include "foundation/Tstring.h"

/**
 * Settings by the name of an object and a key. Values are those set by the program and, behind these, the ones of the
 * file that the environment variable LIRN_RESOURCES names: a "name.key: value" in each line, comments after '!'. The
 * name "*" stands for every object without a value of its own. For any thread.
 */
class TresourceMap
{
public:
    /** The value of "name.key", else of "*.key", else @p def. Null texts count as empty. */
    static Tstring GetResourceString(const char* name, const char* key, const char* def);
    /** The same as a decimal number; @p def too where the value is not an int and nothing else. */
    static int GetResourceNumber(const char* name, const char* key, int def);

    /** False for a null name or key; a null value is an empty one. */
    static bool Set(const char* name, const char* key, const char* value);
    /** Forgets all values. The file is read again by the next look-up. */
    static void Clear();
};
