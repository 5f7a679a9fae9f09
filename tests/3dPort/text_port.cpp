// Text and bitmaps at points.

#include "Calls.h"
#include "support/XText.h"

#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "foundation/T2Int32.h"
#include "foundation/T4dDblPoint.h"

#include <gmock/gmock.h>

#include <limits>
#include <optional>

namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 60;
constexpr TportRect kAll(0, 0, kWidth, kHeight);
constexpr TportRect kInset(20, 10, 100, 50);
const char kText[] = "Ajg_f";

class PortText : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        port().setCurrentContext();
        port().color(kCwhite);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    }

    void TearDown() override
    {
        EXPECT_EQ(port().stateDifferences(), TstringArray());
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        GLint found[3] = {};
        glGetIntegerv(GL_UNPACK_ALIGNMENT, &found[0]);
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &found[1]);
        glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &found[2]);
        EXPECT_THAT(found, testing::ElementsAre(8, 1, 1));
    }

    T3dPort& port() { return fWindow.port(); }

    /** World units are pixels, in the viewport too. */
    void clear(const TportRect& view = kAll)
    {
        port().clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port().ortho(view.left, view.right, view.bottom, view.top, -1, 1);
    }
    XText::Pixels white() { return drawnPixels(kWidth, kHeight, 0xFFFFFF); }

    PortWindow<> fWindow{kWidth, kHeight};
};

TEST_F(PortText, LandsOnThePixelsOfTheXServersText)
{
    struct Case
    {
        T3dPort::TtextPos fPos;
        double fX, fY;
        std::optional<T2Int32> fBox;
        TportRect fView = kAll;
        bool fIsDrawn = true;
    };
    constexpr auto kL = T3dPort::kLeft;
    constexpr auto kC = T3dPort::kCenter;
    constexpr auto kR = T3dPort::kRight;
    // clang-format off
    const Case cases[] = {
        {kL, 10, 20, {}},         {kC, 60, 20, {}},          {kR, 110, 20, {}},
        {kL, 10.62, 20.62, {}},   {kL, 10.63, 20.63, {}},    {kC, 60.9, 20, {}},
        {kL, -9, 20, {}},         {kR, kWidth + 9, 20, {}},  {kC, 60, -5, {}},
        {kL, 20, kHeight - 4, {}},
        {kL, 10, 20, T2Int32{60, 31}}, {kC, 60, 20, T2Int32{61, 4}}, {kR, 110, 20, T2Int32{70, 30}},
        {kL, 30, 20, T2Int32{-5, -5}}, {kL, 30, 20, {}, kInset},     {kR, 40, 48, {}, kInset},
        // Boxes that do not reach between the edges
        {kL, kWidth, 20, {}, kAll, false},  {kR, 0, 20, {}, kAll, false}, {kC, 60, kHeight, {}, kAll, false},
        {kL, 0, 20, T2Int32{0, 0}, kAll, false}, {kL, 100, 20, {}, kInset, false},
        {kL, std::numeric_limits<double>::quiet_NaN(), 20, {}, kAll, false}, {kL, 1e300, 1e300, {}, kAll, false},
    };
    // clang-format on
    const XText x(port().font().fontName());
    const XText::Pixels ink = x.pixels(kText);
    const int textHeight = port().font().textHeight(T3dPort::getDisplay());
    for (const Case& c : cases) {
        for (const bool hasBackground : {false, true}) {
            SCOPED_TRACE(testing::Message() << c.fPos << " at " << c.fX << ',' << c.fY << " box " << c.fBox.has_value()
                                            << " background " << hasBackground);
            port().pushViewport(c.fView);
            clear(c.fView);
            port().blending(true);
            port().text({c.fX, c.fY, 0}, kText, c.fPos, c.fBox ? &*c.fBox : nullptr,
                        hasBackground ? TportColor(0, 0, 1) : kCtransparent);
            EXPECT_EQ(port().glContextRecord()->fBlending, !hasBackground || !c.fIsDrawn);
            const XText::Pixels white = drawnPixels(kWidth, kHeight, 0xFFFFFF);
            const XText::Pixels blue = drawnPixels(kWidth, kHeight, 0x0000FF);
            port().popViewport();
            if (!c.fIsDrawn) {
                EXPECT_TRUE(white.empty() && blue.empty());
                continue;
            }
            const int w = c.fBox ? std::max(0, c.fBox->width) : x.width(kText);
            const int h = c.fBox ? std::max(0, c.fBox->height) : textHeight;
            const double shift = c.fPos == kL ? 0 : c.fPos == kC ? x.width(kText) * 0.5 : x.width(kText);
            const XText::Pixels wanted =
                moved(ink, int(std::floor(c.fX - shift + 0.375)), int(std::floor(c.fY + (h - textHeight) / 2 + 0.375)),
                      kAll); // viewports do not clip bitmaps
            EXPECT_EQ(white, wanted);
            const int left = int(c.fX - (c.fPos == kL ? 0 : c.fPos == kC ? w / 2 : w));
            XText::Pixels box;
            for (int i = 0; hasBackground && i < w * h; ++i)
                if (wanted.count({left + i % w, int(c.fY) + i / w}) == 0)
                    box.emplace(left + i % w, int(c.fY) + i / w);
            EXPECT_EQ(blue, moved(box, 0, 0, c.fView));
        }
    }
}

TEST_F(PortText, OddTextsAreSafe)
{
    clear();
    const std::string longText(100000, 'x');
    const T2Int32 size{std::numeric_limits<int>::max(), std::numeric_limits<int>::max()};
    for (const char* text : {static_cast<const char*>(nullptr), "", longText.c_str(), "\x80\xff\xa0"})
        port().text({10, 20, 0}, text, T3dPort::kCenter, &size, TportColor(0, 1, 0));
}

TEST_F(PortText, WhatIsMadeWhileAListIsCompiledLeavesListAndErrorsAlone)
{
    clear();
    const XText x("-*-courier-bold-r-normal-*-14-*-*-*-*-*-iso8859-1");
    port().font(TglFont("-*-courier-bold-r-normal-*-14-*-*-*-*-*-iso8859-1", 14));
    TglDisplayList list;
    port().newList(list, T3dPort::kCompile);
    port().text({10, 20, 0}, kText, T3dPort::kLeft);
    port().bitmap(90.2f, 40.2f, 0.0f, TglBitmap::kFilledSquare);
    port().endList();
    EXPECT_THAT(white(), testing::IsEmpty());
    list.call();
    XText::Pixels wanted = moved(x.pixels(kText), 10, 20, kAll);
    for (int i = 0; i < 25; ++i)
        wanted.emplace(88 + i % 5, 38 + i / 5);
    EXPECT_EQ(white(), wanted);

    glEnable(GL_POINTS); // is no switch
    TglFont("-*-courier-bold-r-normal-*-17-*-*-*-*-*-iso8859-1", 17).apply(T3dPort::getDisplay(), kText);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
}

TEST_F(PortText, BitmapsCompileOnceAndAreCalledFromThenOn)
{
    const char* const rows[] = {"  .  ", " ... ", ". . .", "  .  ", "  .  "};
    const TglBitmap marker(rows, 5, 5, 2, 2);
    XText::Pixels wanted;
    for (int i = 0; i < 25; ++i)
        if (rows[i / 5][i % 5] != ' ')
            wanted.emplace(30 + i % 5 - 2, 20 - (i / 5 - 2));
    const TglBitmap copy(marker);
    GlRecorder recorder;
    for (const bool isFirst : {true, false}) {
        clear();
        port().setCurrentContext();
        recorder.start();
        isFirst ? port().bitmap(T4dDblPoint(30.2, 20.2, 0), marker) : port().bitmap(30.2f, 20.2f, 0.0f, &marker);
        recorder.stop();
        EXPECT_EQ(recorder.count("glBitmap"), isFirst) << recorder.text();
        EXPECT_EQ(white(), wanted) << isFirst;
    }
    EXPECT_EQ(recorder.names(), (std::vector<std::string>{"glRasterPos3f", "glCallList"}));
    EXPECT_EQ(marker.fBits, nullptr);
    EXPECT_NE(copy.fBits, nullptr);
    EXPECT_EQ(TglBitmap(marker).fList, marker.fList);
    port().bitmap(1, 2, 3, nullptr);
    port().bitmap(1, 2, 3, TglBitmap(static_cast<const char*>(nullptr)));
}

} // namespace
