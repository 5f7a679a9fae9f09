#include "foundation/TenvironmentVariable.h"

#include "foundation/LirnGetEnv.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>

const char* TenvironmentVariable::value() const
{
    return LirnGetEnv(fName.asChar());
}

int TenvironmentVariable::asInt(int def) const
{
    const char* const text = value();
    if (!text)
        return def;
    const char* const end = text + std::strlen(text);
    int number = 0;
    const auto [after, error] = std::from_chars(text, end, number);
    return error == std::errc() && after == end ? number : def;
}

bool TenvironmentVariable::isEnabled() const
{
    static constexpr const char* kOff[] = {"", "0", "false", "off", "no"};
    const char* const text = value();
    return text && std::none_of(std::begin(kOff), std::end(kOff),
                                [text = Tstring(text)](const char* off) { return text.equalsIgnoreCase(off); });
}
