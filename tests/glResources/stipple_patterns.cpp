// Stipples: the masks, the display lists behind them, and what they let through.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "Graphics/glResources/TglPolyStipple.h"

#include <GL/glext.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using Calls = std::vector<std::string>;
using Bytes = std::vector<unsigned char>;

constexpr int kSide = 32;
constexpr int kWidth = 64;
constexpr int kHeight = 48;

/** Whether a mask lets the pixel through, the leftmost one in the highest bit. */
bool passes(const unsigned char* mask, int x, int y)
{
    return mask[y % kSide * 4 + x % kSide / 8] & (0x80 >> (x % 8));
}

Bytes maskOf(const TglPolyStipple& stipple)
{
    return Bytes(stipple.mask(), stipple.mask() + TglPolyStipple::kMaskBytes);
}

Bytes numbered(int count, int first)
{
    Bytes bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<unsigned char>(first + 5 * i));
    return bytes;
}

struct NamedPattern
{
    const char* name;
    const TglPolyStipple& stipple;
    unsigned code;
};

const NamedPattern kNamed[] = {
    {"solid", TglPolyStipple::kSolid, 0xFFFF},      {"halftone", TglPolyStipple::kHalftone, 0xA5A5},
    {"25 %", TglPolyStipple::k25Percent, 0xA0A0},   {"75 %", TglPolyStipple::k75Percent, 0xAFAF},
    {"slash", TglPolyStipple::kSlash, 0x9C63},
};

class Stipples : public testing::Test
{
protected:
    Stipples() : fWindow(kWidth, kHeight)
    {
        EXPECT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    Calls callsOf(const std::function<void()>& operation)
    {
        GlRecorder recorder;
        recorder.start();
        operation();
        recorder.stop();
        return recorder.calls();
    }

    /** Which pixels @p draw reaches, drawing in pixels. */
    std::vector<bool> reached(const std::function<void()>& draw)
    {
        T3dPort& p = port();
        p.clearColor(kCblack);
        p.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        p.color(kCwhite);
        p.pushOrtho2D();
        p.setCurrentContext();
        draw();
        p.popOrtho2D();
        std::vector<GLubyte> green(kWidth * kHeight);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, kWidth, kHeight, GL_GREEN, GL_UNSIGNED_BYTE, green.data());
        return std::vector<bool>(green.begin(), green.end());
    }

    testing::AssertionResult showsThrough(const unsigned char* mask)
    {
        const std::vector<bool> seen = reached([] { glRectd(-1, -1, kWidth, kHeight); });
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                if (seen[std::size_t(y * kWidth + x)] != passes(mask, x, y))
                    return testing::AssertionFailure() << "pixel " << x << ", " << y;
        return testing::AssertionSuccess();
    }

    PortWindow<> fWindow;
};

} // namespace

TEST(PolygonStippleMask, OfACodeIsATileOfFourByFour)
{
    for (const unsigned code : {0xFFFFu, 0xA5A5u, 0xA0A0u, 0xAFAFu, 0x9C63u, 0x0000u, 0x1248u, 0xFFFEu}) {
        const TglPolyStipple stipple{static_cast<unsigned short>(code)};
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x)
                ASSERT_EQ(bool(code >> (4 * (y % 4) + 3 - x % 4) & 1), passes(stipple.mask(), x, y))
                    << std::hex << code << std::dec << ", " << x << ", " << y;
        EXPECT_EQ(code == 0xFFFF, stipple.isSolid());
    }
    for (const NamedPattern& each : kNamed)
        EXPECT_EQ(maskOf(TglPolyStipple(static_cast<unsigned short>(each.code))), maskOf(each.stipple)) << each.name;
}

TEST(PolygonStippleMask, OfBytes)
{
    const Bytes whole = numbered(128, 3);
    EXPECT_EQ(whole, maskOf(TglPolyStipple(whole.data(), 128)));

    // Sixteen rows of two bytes go to the even rows, the first four once more to the odd ones at the end.
    const Bytes sixteen = numbered(32, 11);
    Bytes expected(128, 0);
    const auto put = [&](int row, int pair) {
        for (int i = 0; i < 4; ++i)
            expected[std::size_t(4 * row + i)] = sixteen[std::size_t(2 * pair + i % 2)];
    };
    for (int i = 0; i < 16; ++i)
        put(2 * i, i);
    put(25, 0);
    put(27, 1);
    put(29, 2);
    put(31, 3);
    EXPECT_EQ(expected, maskOf(TglPolyStipple(sixteen.data(), 32)));

    // Eight rows repeat every seven, the later one winning where two meet.
    const Bytes eight = numbered(8, 0x21);
    const int kRows[32] = {0, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3, 4, 5, 6, 7, 1, 2, 3};
    const TglPolyStipple stipple(eight.data(), 8);
    for (int row = 0; row < kSide; ++row)
        for (int i = 0; i < 4; ++i)
            ASSERT_EQ(eight[std::size_t(kRows[row])], stipple.mask()[4 * row + i]) << "row " << row;
}

TEST(PolygonStippleMask, SolidIsWhatHidesNothing)
{
    const Bytes ones(128, 0xFF);
    Bytes one = ones;
    one[77] = 0xFE;
    const struct
    {
        const unsigned char* bytes;
        int count;
        bool solid;
    } cases[] = {
        {ones.data(), 128, true},       {one.data(), 128, false}, {ones.data(), 8, true},
        {ones.data(), 32, false},       {one.data(), 5, true},    {one.data(), 0, true},
        {one.data(), -1, true},         {one.data(), 129, true},  {nullptr, 128, true},
        {nullptr, 8, true},
    };
    for (const auto& each : cases) {
        const TglPolyStipple stipple(each.bytes, each.count);
        EXPECT_EQ(each.solid, stipple.isSolid()) << each.count;
        EXPECT_EQ(each.solid, maskOf(stipple) == ones) << each.count;
    }
}

TEST_F(Stipples, APolygonShowsThroughTheMaskAtOnceAndByList)
{
    const Bytes bytes = numbered(128, 1);
    const TglPolyStipple own(bytes.data(), 128);
    for (int round = 0; round < 2; ++round) {
        for (const NamedPattern& each : kNamed) {
            port().polygonStipple(each.stipple);
            EXPECT_TRUE(showsThrough(each.stipple.mask())) << each.name << ", round " << round;
        }
        port().polygonStipple(own);
        EXPECT_TRUE(showsThrough(own.mask())) << "round " << round;
    }
    port().polygonStipple(TglPolyStipple::kSolid);
    EXPECT_TRUE(showsThrough(TglPolyStipple::kSolid.mask()));
}

TEST_F(Stipples, ALineShowsItsPattern)
{
    const std::pair<const TglLineStipple*, unsigned> named[] = {
        {&TglLineStipple::kSolid, 0xFFFF},      {&TglLineStipple::kDotted, 0x5555},
        {&TglLineStipple::kLongDotted, 0x7777}, {&TglLineStipple::kShortDotted, 0x1111},
        {&TglLineStipple::kDashed, 0x3333},     {&TglLineStipple::kLongDashed, 0x3F3F},
        {&TglLineStipple::kShortDashed, 0x0303}};
    const TglLineStipple wide(0x0F35, 3);
    const auto expect = [this](const TglLineStipple& stipple) {
        port().lineStipple(stipple);
        const std::vector<bool> seen = reached([] {
            glBegin(GL_LINES);
            glVertex2i(0, 20);
            glVertex2i(kWidth, 20);
            glEnd();
        });
        for (int x = 0; x < kWidth; ++x)
            EXPECT_EQ(bool(stipple.fPattern >> (x / stipple.fFactor % 16) & 1), seen[std::size_t(20 * kWidth + x)])
                << std::hex << stipple.fPattern << std::dec << ", pixel " << x;
    };
    for (int round = 0; round < 2; ++round) {
        for (const auto& [stipple, pattern] : named) {
            EXPECT_EQ(pattern, stipple->fPattern);
            EXPECT_EQ(1, stipple->fFactor);
            expect(*stipple);
        }
        expect(wide);
    }
}

TEST_F(Stipples, TheFirstUseCompilesAndTheOthersCall)
{
    const TglLineStipple line(0x1234, 2);
    const TglLineStipple sharing = line; // before there is a list: it makes its own
    const TglPolyStipple polygon(0x8421);
    EXPECT_THAT(callsOf([&] { port().lineStipple(line); }),
                ElementsAre("glGetIntegerv(GL_LIST_INDEX, pointer)", "glGenLists(1)",
                            MatchesRegex("glNewList\\([1-9][0-9]*, GL_COMPILE_AND_EXECUTE\\)"),
                            "glEnable(GL_LINE_STIPPLE)", "glLineStipple(2, 0x1234)", "glEndList()"));
    const TglLineStipple copy = line;
    TglLineStipple assigned(0x5678);
    assigned = line;
    const Calls call = {"glCallList(" + std::to_string(line.fList->first()) + ")"};
    for (const TglLineStipple* each : {&line, &copy, static_cast<const TglLineStipple*>(&assigned)})
        EXPECT_EQ(call, callsOf([&] { port().lineStipple(*each); }));
    EXPECT_FALSE(sharing.fList);

    EXPECT_THAT(callsOf([&] { port().polygonStipple(polygon); }),
                ElementsAre("glGetIntegerv(GL_LIST_INDEX, pointer)", "glGenLists(1)",
                            MatchesRegex("glNewList\\([1-9][0-9]*, GL_COMPILE_AND_EXECUTE\\)"),
                            "glEnable(GL_POLYGON_STIPPLE)", "glPolygonStipple(pointer)", "glEndList()"));
    const TglPolyStipple polygonCopy = polygon;
    const Calls polygonCall = callsOf([&] { port().polygonStipple(polygon); });
    EXPECT_THAT(polygonCall, ElementsAre(MatchesRegex("glCallList\\([1-9][0-9]*\\)")));
    EXPECT_EQ(polygonCall, callsOf([&] { port().polygonStipple(polygonCopy); }));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(Stipples, SolidOnesSwitchOff)
{
    const Bytes ones(128, 0xFF);
    port().lineStipple(TglLineStipple::kDashed);
    EXPECT_EQ(0x3333, T3dPortProbe::context(port())->fLineStipple.fPattern);
    EXPECT_EQ(Calls{"glDisable(GL_LINE_STIPPLE)"}, callsOf([&] { port().lineStipple(TglLineStipple::kSolid); }));
    EXPECT_EQ(0xFFFF, T3dPortProbe::context(port())->fLineStipple.fPattern);
    for (const TglPolyStipple& solid :
         {TglPolyStipple::kSolid, TglPolyStipple(ones.data(), 5), TglPolyStipple(ones.data(), 128)})
        EXPECT_EQ(Calls{"glDisable(GL_POLYGON_STIPPLE)"}, callsOf([&] { port().polygonStipple(solid); }));
}

TEST_F(Stipples, TheRecordKeepsTheListAlive)
{
    GLuint name = 0;
    {
        const TglLineStipple passing(0x1818);
        port().lineStipple(passing);
        name = passing.fList->first();
    }
    EXPECT_TRUE(glIsList(name));
    port().lineStipple(TglLineStipple::kSolid);
    EXPECT_FALSE(glIsList(name));
}

TEST_F(Stipples, AFirstUseInsideAHostsListIsPartOfIt)
{
    const TglPolyStipple stipple(0x8421);
    TglDisplayList list;
    port().newList(list, T3dPort::kCompile);
    port().polygonStipple(stipple);
    port().endList();
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
    EXPECT_FALSE(glIsEnabled(GL_POLYGON_STIPPLE));
    list.call();
    EXPECT_TRUE(showsThrough(stipple.mask()));
    port().polygonStipple(TglPolyStipple::kSolid);
    port().polygonStipple(stipple);
    port().polygonStipple(TglPolyStipple::kSolid);
    port().polygonStipple(stipple);
    EXPECT_TRUE(showsThrough(stipple.mask()));
}

TEST_F(Stipples, WithoutNamesForListsTheyStillApply)
{
    const TglPolyStipple stipple(0x1248);
    const TglLineStipple line(0x00FF);
    GlRecorder::failNext("glGenLists", 2);
    port().polygonStipple(stipple);
    port().lineStipple(line);
    GlRecorder::resetOverrides();
    EXPECT_TRUE(showsThrough(stipple.mask()));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
    port().polygonStipple(TglPolyStipple::kSolid);
    port().polygonStipple(stipple);
    EXPECT_TRUE(showsThrough(stipple.mask()));
    port().polygonStipple(TglPolyStipple::kSolid);
    port().polygonStipple(stipple);
    EXPECT_TRUE(showsThrough(stipple.mask()));
}

TEST_F(Stipples, AnAbsurdFactorDoesNoHarm)
{
    for (const int factor : {0, -1, 257, 0x7FFFFFFF}) {
        port().lineStipple(TglLineStipple(0x3333, factor));
        reached([] { glRectd(0, 0, 5, 5); });
        EXPECT_EQ(TstringArray(), port().stateDifferences()) << factor;
    }
}

TEST(StipplesAmongPorts, AreCompiledOnceInTheProcess)
{
    PortWindow<> second(20, 20);
    GLuint name = 0;
    {
        PortWindow<> first(20, 20);
        ASSERT_TRUE(first.show() && second.show());
        first.port().polygonStipple(TglPolyStipple::kSlash);
        first.port().lineStipple(TglLineStipple::kDashed);
        name = TglLineStipple::kDashed.fList->first();
    }
    GlRecorder recorder;
    second.port().setCurrentContext();
    recorder.start();
    second.port().polygonStipple(TglPolyStipple::kSlash);
    second.port().lineStipple(TglLineStipple::kDashed);
    recorder.stop();
    EXPECT_EQ(2, recorder.count("glCallList"));
    EXPECT_EQ(2u, recorder.calls().size());
    EXPECT_EQ(name, TglLineStipple::kDashed.fList->first());
    GLubyte mask[TglPolyStipple::kMaskBytes] = {};
    glGetPolygonStipple(mask);
    EXPECT_EQ(0, std::memcmp(mask, TglPolyStipple::kSlash.mask(), sizeof mask));
    EXPECT_EQ(TstringArray(), second.port().stateDifferences());
}

TEST(StipplesWithoutAWidget, AreApplicableLater)
{
    {
        T3dPort port(nullptr, "none", false);
        port.lineStipple(TglLineStipple::kDotted);
        port.polygonStipple(TglPolyStipple::kHalftone);
    }
    PortWindow<> window(20, 20);
    ASSERT_TRUE(window.show());
    for (int round = 0; round < 2; ++round) {
        window.port().polygonStipple(TglPolyStipple::kHalftone);
        window.port().lineStipple(TglLineStipple::kDotted);
        EXPECT_TRUE(glIsEnabled(GL_POLYGON_STIPPLE));
        EXPECT_EQ(TstringArray(), window.port().stateDifferences());
        window.port().polygonStipple(TglPolyStipple::kSolid);
    }
}
