// Patterns with placeholders.

#include "fuzz/FuzzInput.h"

#include "foundation/Tstring.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const auto whole = input.take<long long>();
    const Tstring given(std::string(input.text(input.take<std::uint8_t>())));
    const std::string pattern(input.rest());

    const Tstring plain = Tstring::tFormat(Tstring(pattern));
    FUZZ_CHECK(plain.length() <= pattern.size());
    const Tstring filled = Tstring::tFormat(Tstring(pattern), given, whole, given.asChar(), unsigned(whole));
    const std::size_t longest = std::max<std::size_t>(given.length(), 20);
    FUZZ_CHECK(filled.length() <= pattern.size() * longest);
    if (pattern.find('^') == pattern.npos)
        FUZZ_CHECK(filled.toStdString() == pattern);
    FUZZ_CHECK(given.equalsIgnoreCase(given) && !(given < given));
    return 0;
}
