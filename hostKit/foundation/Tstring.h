#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <type_traits>

template <class T> class Tarray;

/**
 * Owned text in 16 bytes; the empty text needs no memory. Bytes are not interpreted: a null byte counts as any other,
 * but ends what asChar() shows to a C function.
 */
class Tstring
{
public:
    /** An argument of tFormat: text, or an integer of any width. Refers to the text it was made of. */
    class Targ
    {
    public:
        Targ(const char* text);
        Targ(const Tstring& text) : fText(text.asChar()), fLength(text.length()) {}
        template <class I, class = std::enable_if_t<std::is_integral_v<I>>>
        Targ(I value) : fValue(static_cast<std::uint64_t>(value)), fIsNegative(value < I(0)), fIsInteger(true)
        {
        }

    private:
        friend class Tstring;

        const char* fText = "";
        std::size_t fLength = 0;
        std::uint64_t fValue = 0; // two's complement
        bool fIsNegative = false;
        bool fIsInteger = false;
    };

    Tstring() noexcept = default;
    /** A null pointer gives the empty text. */
    Tstring(const char* text);
    /** The first @p length bytes of @p text; empty for a null pointer. */
    Tstring(const char* text, std::size_t length);
    Tstring(const std::string& text);
    Tstring(const Tstring& other);
    Tstring(Tstring&& other) noexcept;
    ~Tstring() { delete[] fData; }

    Tstring& operator=(const Tstring& other);
    Tstring& operator=(Tstring&& other) noexcept;

    /** The text, ended by a null byte; never null. */
    const char* asChar() const noexcept { return fData ? fData : ""; }
    /** Length in bytes. */
    unsigned length() const noexcept { return fLength; }
    bool isEmpty() const noexcept { return fLength == 0; }

    /** Appends @p length bytes, which may be part of this text. What would not fit into 4 GB is not appended. */
    Tstring& append(const char* text, std::size_t length);
    Tstring& operator+=(const Tstring& other) { return append(other.asChar(), other.length()); }
    Tstring& operator+=(const char* text);
    Tstring& operator+=(char c) { return append(&c, 1); }

    /** Equal but for the case of the letters A to Z. */
    bool equalsIgnoreCase(const Tstring& other) const noexcept;
    /** Index of the first @p text in this one; -1 when there is none, or for a null pointer. */
    int find(const char* text) const noexcept;
    /** The parts between the separators, empty ones too. The empty text has no parts. Needs TstringArray.h. */
    Tarray<Tstring> split(char separator) const;
    std::string toStdString() const { return std::string(asChar(), fLength); }

    /**
     * Puts arguments into a pattern. Placeholders are "^<n>s" and "^<n>d", n a decimal number. The arguments belong
     * to the numbers in the pattern by ascending order, whatever the numbers are: in "^8d of ^1s" the first argument
     * goes to ^1s, the second to ^8d. A number may come more than once. "^^" is a caret; a placeholder without
     * argument, and any other caret, stays as it is.
     * @param args  Tstring, const char* or integers, each put in by its own type
     */
    template <class... A> static Tstring tFormat(const Tstring& pattern, const A&... args)
    {
        return format(pattern, {Targ(args)...});
    }

    friend bool operator==(const Tstring& a, const Tstring& b) noexcept { return compare(a, b) == 0; }
    friend bool operator!=(const Tstring& a, const Tstring& b) noexcept { return compare(a, b) != 0; }
    /** Order by the unsigned values of the bytes. */
    friend bool operator<(const Tstring& a, const Tstring& b) noexcept { return compare(a, b) < 0; }
    friend Tstring operator+(const Tstring& a, const Tstring& b)
    {
        Tstring sum(a);
        return sum += b;
    }

private:
    static int compare(const Tstring& a, const Tstring& b) noexcept;
    static Tstring format(const Tstring& pattern, std::initializer_list<Targ> args);

    char* fData = nullptr;
    std::uint32_t fLength = 0;
    std::uint32_t fCapacity = 0; // bytes allocated, with the one for the null byte
};

static_assert(sizeof(Tstring) == 16, "message classes of fixed size hold strings");

bool operator==(const Tstring& a, const char* b) noexcept;
inline bool operator==(const char* a, const Tstring& b) noexcept
{
    return b == a;
}
inline bool operator!=(const Tstring& a, const char* b) noexcept
{
    return !(a == b);
}
inline bool operator!=(const char* a, const Tstring& b) noexcept
{
    return !(b == a);
}

std::ostream& operator<<(std::ostream& out, const Tstring& text);
