#pragma once

#include "foundation/Tstring.h"

#include <deque>
#include <vector>

/** What flags a command has, and what goes with them. */
class Tsyntax
{
public:
    enum TargumentType {
        kNoArgument = 0,
        kBoolean = 1,
        kInteger = 2, ///< 32 bits
        kDouble = 3,
        kString = 5,
        kScript = 14
    };

    /** One flag of a command. */
    struct Tflag
    {
        Tstring shortName; ///< with the leading "-", as the long name
        Tstring longName;
        std::vector<TargumentType> types; ///< of the arguments, in order
        bool multiUse = false;            ///< may be given more than once
    };

    /**
     * Adds a flag with up to three arguments.
     * @param shortName, longName  letters and digits that start with a letter, with or without a leading "-"
     * @return false, and nothing is added, for a name that is none or that a flag has already
     */
    bool addFlag(const char* shortName, const char* longName, TargumentType first = kNoArgument,
                 TargumentType second = kNoArgument, TargumentType third = kNoArgument);
    /** Lets a flag be given more than once; false for an unknown one. */
    bool makeFlagMultiUse(const char* name);

    /** How many names of objects the command takes, at most; 1 at first. */
    void setMaxObjects(unsigned count) { fMaxObjects = count; }
    unsigned maxObjects() const { return fMaxObjects; }

    /** The flag of the short or long name, given with or without the leading "-"; null when there is none. */
    const Tflag* find(const Tstring& name) const;
    const std::deque<Tflag>& flags() const { return fFlags; }

private:
    std::deque<Tflag> fFlags; // pointers to the flags stay good
    unsigned fMaxObjects = 1;
};
