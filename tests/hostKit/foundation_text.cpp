#include "foundation/Tstring.h"
#include "foundation/TstringResource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

TEST(Tstring, GrowsAndAppendsItselfLikeTheStandardString)
{
    std::mt19937 engine(7);
    Tstring text;
    std::string reference;
    for (int i = 0; i < 300; ++i) {
        const unsigned kind = engine() % 4;
        if (kind == 0 && text.length() < 20000) {
            text += text;
            reference += std::string(reference);
        } else if (kind == 1 && text.length() > 0) {
            const unsigned start = engine() % text.length();
            const unsigned length = std::min(30u, text.length() - start);
            text.append(text.asChar() + start, length);
            reference.append(std::string(reference, start, length));
        } else if (kind == 2) {
            text += static_cast<char>(engine());
            reference += text.asChar()[text.length() - 1];
        } else {
            text = text + "some text";
            reference += "some text";
        }
        ASSERT_EQ(text.toStdString(), reference);
        ASSERT_EQ(text.asChar()[text.length()], '\0');
    }
}

TEST(Tstring, FormatTakesArgumentsByAscendingNumber)
{
    struct Tcase
    {
        const char* pattern;
        const char* wanted;
    };
    // Each with the arguments "courier" and 12.
    const Tcase cases[] = {
        {"-*-^1s-bold-^8d-*", "-*-courier-bold-12-*"},
        {"^8d of ^1s, ^1s", "12 of courier, courier"},
        {"^2d^1s", "12courier"},
        {"^1d ^2s", "courier 12"},
        {"^7s", "courier"},
        {"^1s ^2s ^10s", "courier 12 ^10s"},
        {"^^1s ^^^1s", "^1s ^courier"},
        {"^ ^x ^s ^12 ^-1s ^1", "^ ^x ^s ^12 ^-1s ^1"},
        {"^99999999999s ^3s", "^99999999999s courier"},
        {"^", "^"},
        {"", ""},
    };
    for (const Tcase& each : cases)
        EXPECT_EQ(Tstring::tFormat(each.pattern, "courier", 12), each.wanted) << each.pattern;
    // What an argument holds is not looked at again.
    EXPECT_EQ(Tstring::tFormat("^1s^2s", Tstring("^2s^^"), std::string("b")), "^2s^^b");
    EXPECT_EQ(Tstring::tFormat("^1s"), "^1s");
    EXPECT_EQ(Tstring::tFormat("[^1s]", static_cast<const char*>(nullptr)), "[]");
    EXPECT_EQ(Tstring::tFormat("^1d ^2d ^3d ^4d", INT64_MIN, UINT64_MAX, static_cast<short>(-5), 0u),
              "-9223372036854775808 18446744073709551615 -5 0");
    EXPECT_EQ(Tstring::tFormat(s_T3dPortStrings::rOpenGLErr, 1280, "invalid enumerant"),
              "OpenGL error 1280: invalid enumerant");
}
