// Fonts against the X server that has them.

#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/XText.h"

#include "Graphics/glResources/TglFont.h"
#include "graphicsResources/Font.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace {

Display* display()
{
    return static_cast<Display*>(T3dPort::getDisplay());
}

const char kCourier[] = "-*-courier-bold-r-normal-*-14-*-*-*-*-*-iso8859-1";
const char kFrom32[] = "-*-terminal-bold-r-normal-*-14-*-*-*-*-*-iso8859-1";

class Fonts : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        fWindow.port().setCurrentContext();
    }

    PortWindow<> fWindow{60, 40};
};

class FontPathOnScreen : public Fonts
{
};

} // namespace

TEST_F(Fonts, MetricsAreTheServers)
{
    for (const char* name : {TglFont::defaultFont().fontName(), TglFont::smallFont().fontName(), kCourier, kFrom32}) {
        const XText x(name);
        const TglFont font(name, 12);
        int height = 0;
        int descent = 0;
        std::string all;
        for (unsigned c = std::max(1u, x.font().min_char_or_byte2); c < 128; ++c) {
            const char text[] = {char(c), 0};
            EXPECT_EQ(font.textWidth(display(), text), x.width(text)) << name << c;
            int direction, up, down;
            XCharStruct overall;
            XTextExtents(const_cast<XFontStruct*>(&x.font()), text, 1, &direction, &up, &down, &overall);
            height = std::max(height, overall.ascent + overall.descent);
            descent = std::max<int>(descent, overall.descent);
            all += text;
        }
        EXPECT_EQ(font.textWidth(display(), (all + "\xff\x80").c_str()), x.width(all));
        EXPECT_EQ(font.textHeight(display()), height);
        EXPECT_EQ(font.textDescent(display()), descent);
        EXPECT_EQ(font.ref()->getGRFont(display())->textWidth(all.c_str()), x.width(all));
    }
}

TEST_F(Fonts, ListsBeginAtTheBlockWhateverTheFirstCharacterIs)
{
    const XText x(kFrom32);
    ASSERT_EQ(x.font().min_char_or_byte2, 32u);
    // Room for the block alone: what lies behind it is somebody else's, and empty.
    const GLuint taken = glGenLists(1000);
    glDeleteLists(taken, 224);
    glClear(GL_COLOR_BUFFER_BIT);
    fWindow.port().color(kCwhite);
    glRasterPos2f(-0.5f, -0.5f); // pixel 15, 10 under the identity
    const TglFont font(kFrom32, 12);
    font.apply(display(), "\x01"
                          "A\xe4g");
    EXPECT_EQ(font.ref()->fLists->count(), GLsizei(x.font().max_char_or_byte2 - 31));
    EXPECT_EQ(drawnPixels(60, 40, 0xFFFFFF), moved(x.pixels("A\xe4g"), 15, 10, TportRect(0, 0, 60, 40)));
    EXPECT_NE(font.ref()->fLists->first(), taken) << "lists of somebody else's were overwritten";
}

TEST_F(FontPathOnScreen, TheSearchGoesBelowAndAboveInTurn)
{
    int count = 0;
    char** const path = XGetFontPath(display(), &count);
    std::vector<char*> unscaled;
    for (int i = 0; i < count; ++i)
        if (std::string(path[i]).find(":unscaled") != std::string::npos)
            unscaled.push_back(path[i]);
    ASSERT_FALSE(unscaled.empty());
    XSetFontPath(display(), unscaled.data(), int(unscaled.size()));

    // Bold Helvetica comes in 8, 10, 11, 12, 14, 17, 18, 20, 24, 25 and 34 pixels.
    const std::pair<float, int> cases[] = {{12, 11}, {13.7f, 12}, {14, 12}, {16, 17},  {22, 20},
                                           {30, 34}, {1, 8},      {-3, 8},  {1e9f, 34}};
    for (const auto& [wanted, found] : cases) {
        const TglFont font("-*-helvetica-bold-r-normal-*-99-*-*-*-*-*-iso8859-1", wanted);
        EXPECT_GT(font.textWidth(display(), "a"), 0);
        EXPECT_EQ(font.ref()->fScale, wanted / float(found));
        EXPECT_EQ(font.fontName(), "-*-helvetica-bold-r-normal-*-" + std::to_string(found) + "-*-*-*-*-*-iso8859-1");
    }
    XSetFontPath(display(), path, count);
    XFreeFontPath(path);
}

TEST_F(Fonts, AMissingFamilyIsReportedAndLookedForAgain)
{
    ErrorCollector errors;
    for (const char* name : {"-*-nosuch-bold-r-normal-*-12-*-*-*-*-*-iso8859-1", "nonsense", ""}) {
        errors.clear();
        const TglFont font(name, 12);
        EXPECT_EQ(font.textWidth(display(), "a") + font.textHeight(display()), 0);
        font.apply(display(), "a");
        EXPECT_THAT(errors.messages(), testing::Each("Failed trying to load font : " + std::string(name)));
        EXPECT_EQ(errors.messages().size(), 3u);
    }
}
