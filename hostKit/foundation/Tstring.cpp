#include "foundation/Tstring.h"

#include "foundation/TstringArray.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

namespace {

std::string_view viewOf(const Tstring& text)
{
    return {text.asChar(), text.length()};
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct Tplaceholder
{
    unsigned fNumber;
    std::size_t fLength; // in the pattern; 0 when there is no placeholder
};

Tplaceholder placeholderAt(std::string_view text)
{
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data() + 1, end, number);
    if (error != std::errc() || after == end || (*after != 's' && *after != 'd'))
        return {0, 0};
    return {number, static_cast<std::size_t>(after + 1 - text.data())};
}

// Walks over the carets of the pattern: text(view) for what goes out as it is, placeholder(number, view) for the rest.
template <class T, class P> void walkPattern(std::string_view pattern, T text, P placeholder)
{
    while (!pattern.empty()) {
        const std::size_t caret = pattern.find('^');
        text(pattern.substr(0, caret));
        if (caret == std::string_view::npos)
            return;
        pattern.remove_prefix(caret);
        const Tplaceholder found = placeholderAt(pattern);
        std::size_t used = 1;
        if (found.fLength > 0) {
            used = found.fLength;
            placeholder(found.fNumber, pattern.substr(0, used));
        } else {
            text(pattern.substr(0, 1));
            used = pattern.substr(0, 2) == "^^" ? 2 : 1;
        }
        pattern.remove_prefix(used);
    }
}

} // namespace

Tstring::Targ::Targ(const char* text) : fText(text ? text : ""), fLength(std::strlen(fText)) {}

Tstring::Tstring(const char* text) : Tstring(text, text ? std::strlen(text) : 0) {}

Tstring::Tstring(const char* text, std::size_t length)
{
    if (text)
        append(text, length);
}

Tstring::Tstring(const std::string& text) : Tstring(text.data(), text.size()) {}

Tstring::Tstring(const Tstring& other) : Tstring(other.fData, other.fLength) {}

Tstring::Tstring(Tstring&& other) noexcept
    : fData(std::exchange(other.fData, nullptr)), fLength(std::exchange(other.fLength, 0)),
      fCapacity(std::exchange(other.fCapacity, 0))
{
}

Tstring& Tstring::operator=(const Tstring& other)
{
    if (this != &other)
        *this = Tstring(other);
    return *this;
}

Tstring& Tstring::operator=(Tstring&& other) noexcept
{
    std::swap(fData, other.fData);
    std::swap(fLength, other.fLength);
    std::swap(fCapacity, other.fCapacity);
    return *this;
}

Tstring& Tstring::append(const char* text, std::size_t length)
{
    if (length == 0 || length >= UINT32_MAX - fLength)
        return *this;
    const std::uint32_t needed = fLength + static_cast<std::uint32_t>(length) + 1;
    if (needed <= fCapacity) {
        std::memmove(fData + fLength, text, length);
    } else {
        const std::uint64_t roomy = fData ? std::max<std::uint64_t>(needed, std::uint64_t(fCapacity) * 2) : needed;
        const auto capacity = static_cast<std::uint32_t>(std::min<std::uint64_t>(roomy, UINT32_MAX));
        char* const grown = new char[capacity];
        if (fData)
            std::memcpy(grown, fData, fLength);
        std::memcpy(grown + fLength, text, length); // before the old bytes go, of which it may be a part
        delete[] fData;
        fData = grown;
        fCapacity = capacity;
    }
    fLength += static_cast<std::uint32_t>(length);
    fData[fLength] = '\0';
    return *this;
}

Tstring& Tstring::operator+=(const char* text)
{
    return text ? append(text, std::strlen(text)) : *this;
}

bool Tstring::equalsIgnoreCase(const Tstring& other) const noexcept
{
    const std::string_view a = viewOf(*this);
    const std::string_view b = viewOf(other);
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

int Tstring::find(const char* text) const noexcept
{
    const std::size_t found = text ? viewOf(*this).find(text) : std::string_view::npos;
    return found > INT_MAX ? -1 : static_cast<int>(found);
}

TstringArray Tstring::split(char separator) const
{
    TstringArray parts;
    std::string_view rest = viewOf(*this);
    while (!isEmpty()) {
        const std::size_t end = rest.find(separator);
        const std::string_view part = rest.substr(0, end);
        parts.append(Tstring(part.data(), part.size()));
        if (end == std::string_view::npos)
            break;
        rest.remove_prefix(end + 1);
    }
    return parts;
}

int Tstring::compare(const Tstring& a, const Tstring& b) noexcept
{
    return viewOf(a).compare(viewOf(b));
}

Tstring Tstring::format(const Tstring& pattern, std::initializer_list<Targ> args)
{
    std::vector<unsigned> numbers;
    const auto note = [&](unsigned number, std::string_view) { numbers.push_back(number); };
    walkPattern(
        viewOf(pattern), [](std::string_view) {}, note);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());

    Tstring result;
    const auto text = [&](std::string_view piece) { result.append(piece.data(), piece.size()); };
    walkPattern(viewOf(pattern), text, [&](unsigned number, std::string_view placeholder) {
        const auto rank =
            static_cast<std::size_t>(std::lower_bound(numbers.begin(), numbers.end(), number) - numbers.begin());
        if (rank >= args.size()) {
            text(placeholder);
            return;
        }
        const Targ& arg = args.begin()[rank];
        if (!arg.fIsInteger) {
            text({arg.fText, arg.fLength});
            return;
        }
        char digits[24];
        const auto end = arg.fIsNegative
                             ? std::to_chars(digits, digits + sizeof digits, static_cast<std::int64_t>(arg.fValue))
                             : std::to_chars(digits, digits + sizeof digits, arg.fValue);
        text({digits, static_cast<std::size_t>(end.ptr - digits)});
    });
    return result;
}

bool operator==(const Tstring& a, const char* b) noexcept
{
    return viewOf(a) == std::string_view(b ? b : "");
}

std::ostream& operator<<(std::ostream& out, const Tstring& text)
{
    return out << viewOf(text);
}
