#include "commandEngine/Tsyntax.h"

#include <algorithm>
#include <cstring>

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Empty for what is no name.
Tstring withDash(const char* name)
{
    const char* bare = name && *name == '-' ? name + 1 : name;
    if (!bare || !isLetter(*bare))
        return Tstring();
    const char* end = bare + 1;
    while (isLetter(*end) || (*end >= '0' && *end <= '9'))
        ++end;
    if (*end)
        return Tstring();
    return Tstring("-") + bare;
}

} // namespace

bool Tsyntax::addFlag(const char* shortName, const char* longName, TargumentType first, TargumentType second,
                      TargumentType third)
{
    Tflag flag{withDash(shortName), withDash(longName), {}, false};
    if (flag.shortName.isEmpty() || flag.longName.isEmpty() || find(flag.shortName) || find(flag.longName))
        return false;
    for (const TargumentType type : {first, second, third})
        if (type != kNoArgument)
            flag.types.push_back(type);
    fFlags.push_back(std::move(flag));
    return true;
}

bool Tsyntax::makeFlagMultiUse(const char* name)
{
    auto* flag = const_cast<Tflag*>(find(name));
    if (flag)
        flag->multiUse = true;
    return flag != nullptr;
}

const Tsyntax::Tflag* Tsyntax::find(const Tstring& name) const
{
    // A null byte ends a name only for C.
    const Tstring wanted = std::strlen(name.asChar()) == name.length() ? withDash(name.asChar()) : Tstring();
    const auto flag = std::find_if(fFlags.begin(), fFlags.end(), [&](const Tflag& each) {
        return each.shortName == wanted || each.longName == wanted;
    });
    return flag == fFlags.end() ? nullptr : &*flag;
}
