#include "foundation/Tstring.h"
#include "foundation/TsortedStringArray.h"
#include "foundation/TstringArray.h"
#include "foundation/TstringResource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>

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

TEST(Tstring, CopiesAreApartAndMovesLeaveNothingShared)
{
    Tstring a("viewport");
    Tstring b(a);
    b += "s";
    EXPECT_EQ(a, "viewport");
    a = *&a;
    EXPECT_EQ(a, "viewport");
    const char* const bytes = b.asChar();
    Tstring c(std::move(b));
    EXPECT_EQ(c.asChar(), bytes);
    b = "again";
    EXPECT_EQ(c, "viewports");
    Tstring& alias = c;
    c = std::move(alias);
    EXPECT_EQ(c, "viewports");
    a = c.asChar() + 4;
    EXPECT_EQ(a, "ports");
    c = c.asChar() + 4;
    EXPECT_EQ(c, "ports");
}

TEST(Tstring, NullAndEmptyTextsAreOne)
{
    const char* const null = nullptr;
    for (const Tstring& empty : {Tstring(), Tstring(null), Tstring(""), Tstring(null, 5), Tstring("abc", 0)}) {
        EXPECT_TRUE(empty.isEmpty());
        EXPECT_STREQ(empty.asChar(), "");
        EXPECT_EQ(empty, Tstring());
        EXPECT_TRUE(empty == null);
        EXPECT_TRUE(empty.split(',').isEmpty());
    }
    Tstring text("x");
    text += null;
    EXPECT_EQ(text, "x");
    EXPECT_EQ(text.find(null), -1);
    EXPECT_EQ(Tstring("a\0b", 3).length(), 3u);
    EXPECT_NE(Tstring("a\0b", 3), Tstring("a\0c", 3));
}

TEST(Tstring, ComparesFindsAndSplits)
{
    EXPECT_LT(Tstring("ab"), Tstring("abc"));
    EXPECT_LT(Tstring("z"), Tstring("\xE9")); // bytes above 127 are not negative
    EXPECT_FALSE(Tstring("b") < Tstring("a"));
    EXPECT_TRUE(Tstring("Persp_1").equalsIgnoreCase("pERSP_1"));
    EXPECT_FALSE(Tstring("persp").equalsIgnoreCase("perspView"));
    EXPECT_FALSE(Tstring("@").equalsIgnoreCase("`"));
    EXPECT_EQ(Tstring("GL_ARB_multitexture").find("multi"), 7);
    EXPECT_EQ(Tstring("GL").find("GLX"), -1);

    const TstringArray parts = Tstring(",a,,bc,").split(',');
    ASSERT_EQ(parts.length(), 5u);
    const char* const wanted[] = {"", "a", "", "bc", ""};
    for (unsigned i = 0; i < 5; ++i)
        EXPECT_EQ(parts[i], wanted[i]);
    EXPECT_EQ(Tstring("one").split(',').length(), 1u);
}

TEST(Tstring, FormatTakesArgumentsByAscendingNumber)
{
    struct Tcase {
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

TEST(TsortedStringArray, KeepsOrderWithoutDuplicates)
{
    TsortedStringArray names(2);
    EXPECT_EQ(names.insert("m"), 0u);
    EXPECT_EQ(names.insert("a"), 0u);
    EXPECT_EQ(names.insert("z"), 2u);
    EXPECT_EQ(names.insert("m"), 1u);
    EXPECT_EQ(names.insert(""), 0u);
    ASSERT_EQ(names.length(), 4u);
    for (unsigned i = 1; i < names.length(); ++i)
        EXPECT_LT(names[i - 1], names[i]);
    EXPECT_EQ(names.find("z"), 3);
    EXPECT_EQ(names.find("b"), -1);
    EXPECT_EQ(names.find("zz"), -1);
}
