// The console, the panel of controls and the ready script, in the window of the viewer.

#include <QApplication>
#include <QX11Info>

#include "TscriptConsole.h"
#include "TviewerWindow.h"
#include "support/PortWindow.h"
#include "support/SliderHandle.h"
#include "ui/QlirnSlider.h"
#include "ui/QlirnStaticPicture.h"
#include "ui/TUIInventory.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <gtest/gtest.h>

#include <algorithm>

// X has a macro of that name.
constexpr QEvent::Type kKeyPress = QEvent::KeyPress;

// Last, for its macros.
#include <X11/extensions/XTest.h>

namespace {

class Scripts : public ::testing::Test
{
protected:
    void SetUp() override
    {
        fWindow.move(20, 20);
        static_cast<QWidget&>(fWindow).show();
        fWindow.openBuiltIn();
        fWindow.setShowsConsole(true);
        fOutput = fWindow.console().findChildren<QPlainTextEdit*>().at(0);
        fInput = fWindow.console().findChildren<QPlainTextEdit*>().at(1);
        settle();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(kKeyPress, key, modifiers);
        QApplication::sendEvent(fInput, &event);
    }
    void type(const char* text)
    {
        fInput->setPlainText(QString::fromUtf8(text));
        fInput->moveCursor(QTextCursor::End);
        press(Qt::Key_Return);
    }
    /** The block with the last text that the console shows. */
    QTextBlock last() const
    {
        const QTextBlock block = fOutput->document()->lastBlock();
        return block.length() > 1 ? block : block.previous();
    }
    /** The last lines that the console shows, newest last. */
    std::vector<std::string> lines(int count)
    {
        settle();
        waitUntil([] { return false; }, 60);
        std::vector<std::string> all;
        for (QTextBlock block = last(); block.isValid() && count-- > 0; block = block.previous())
            all.insert(all.begin(), block.text().toStdString());
        return all;
    }
    bool isLastRed()
    {
        const QColor color = last().begin().fragment().charFormat().foreground().color();
        return color.red() > 200 && color.green() < 130 && color.blue() < 130;
    }

    TviewerWindow fWindow{QSize(520, 420), {}, false};
    QPlainTextEdit* fOutput = nullptr;
    QPlainTextEdit* fInput = nullptr;
};

class ScriptsRealEvents : public Scripts
{
protected:
    ~ScriptsRealEvents() override { at(QPoint(0, 0)); }

    static void deliver()
    {
        XSync(QX11Info::display(), 0);
        waitUntil([] { return false; }, 60);
    }
    static void at(const QPoint& p)
    {
        XTestFakeMotionEvent(QX11Info::display(), -1, p.x(), p.y(), CurrentTime);
        deliver();
    }
    static void button(bool down)
    {
        XTestFakeButtonEvent(QX11Info::display(), 1, down, CurrentTime);
        deliver();
    }
    /** The views on the screen with another colour of the wire. */
    QImage withWire(unsigned short index)
    {
        TviewScene::Tstyle style = fWindow.style();
        style.fWireIndex = index;
        fWindow.setStyle(style);
        settle();
        return fWindow.shown();
    }
};

using Lines = std::vector<std::string>;

} // namespace

TEST_F(Scripts, TheConsoleShowsWhatRunsAndRemembersIt)
{
    fWindow.console().setLanguage(TscriptLanguage::kCommands);
    type("viewport -wireIndex 5; viewport -q -wireIndex");
    EXPECT_EQ(lines(2), (Lines{"> viewport -wireIndex 5; viewport -q -wireIndex", "5"}));
    EXPECT_FALSE(isLastRed());
    type("viewport -shading wire -wireIndex 9 -edges on");
    EXPECT_EQ(lines(1), (Lines{"viewport: The index of the wire is from 1 to 8, not 9."}));
    EXPECT_TRUE(isLastRed());
    EXPECT_EQ(fWindow.style().fShading, TviewScene::kSmooth) << "refused, and half done";
    EXPECT_FALSE(fWindow.style().fEdges);
    if (hasPython()) {
        fWindow.console().setLanguage(TscriptLanguage::kPython);
        type("for i in (1, 2):");
        EXPECT_EQ(fInput->toPlainText(), QStringLiteral("for i in (1, 2):\n    "));
        fInput->insertPlainText(QStringLiteral("print(lirn.viewport(q=True, wireIndex=True), end=' ')"));
        press(Qt::Key_Return);
        press(Qt::Key_Return);
        EXPECT_EQ(
            lines(3),
            (Lines{">>> for i in (1, 2):", "...     print(lirn.viewport(q=True, wireIndex=True), end=' ')", "5 5 "}));
        type("'after'");
        EXPECT_EQ(lines(1), (Lines{"'after'"}));
        press(Qt::Key_Up);
    }
    press(Qt::Key_Up);
    if (hasPython()) {
        fInput->moveCursor(QTextCursor::Start);
        press(Qt::Key_Up);
    }
    EXPECT_TRUE(fInput->toPlainText().startsWith(QLatin1String("viewport -shading wire")));
    EXPECT_EQ(fWindow.console().language(), TscriptLanguage::kCommands);
    for (int i = 0; i < 5; ++i) {
        fInput->moveCursor(QTextCursor::End);
        press(Qt::Key_Down);
    }
    EXPECT_EQ(fInput->toPlainText(), QString());
}

TEST_F(Scripts, ControlsComeToThePanelAndGo)
{
    fWindow.console().setLanguage(TscriptLanguage::kCommands);
    QWidget* column = gUIInventory->find("controls", nullptr, true, false);
    ASSERT_TRUE(column);
    EXPECT_FALSE(column->isVisible());
    type("colorIndexSliderGrp one; image two -parent controls");
    settle();
    EXPECT_TRUE(column->isVisible());
    type("deleteUI one");
    settle();
    EXPECT_TRUE(column->isVisible());
    type("deleteUI two");
    settle();
    EXPECT_FALSE(column->isVisible());
    EXPECT_EQ(lines(1), (Lines{"> deleteUI two"}));
}

#ifdef PORTVIEW_PYTHON

TEST_F(Scripts, WildScriptsLeaveTheConsoleUsable)
{
    const struct
    {
        const char* script;
        const char* last;
        bool isRed;
    } cases[] = {
        {"def f(): f()\n", "f()", false},
        {"raise ValueError('no')", "ValueError: no", true},
        {"f()", "RecursionError: maximum recursion depth exceeded", true},
        {"exit(3)", "The script has ended with: 3", true},
        {"print('x' * 1000000)", "xxx", false},
        {"print('ab\\n' * 300000 + 'end')", "end", false},
        {"import sys\nfor i in range(100000): print(i, end=' '); sys.stderr.write('e')\n", "99999 e", false},
    };
    for (const auto& each : cases) {
        QElapsedTimer timer;
        timer.start();
        type(each.script);
        const Lines end = lines(1);
        EXPECT_LT(timer.elapsed(), 15000) << each.script;
        EXPECT_TRUE(QString::fromStdString(end[0]).endsWith(QLatin1String(each.last))) << end[0];
        EXPECT_EQ(isLastRed(), each.isRed) << each.script;
        EXPECT_LE(fOutput->document()->blockCount(), TscriptConsole::kMostLines);
        int longest = 0;
        for (QTextBlock block = fOutput->document()->begin(); block.isValid(); block = block.next())
            longest = std::max(longest, block.length());
        EXPECT_LE(longest, 600);
    }
    type("6 * 7");
    EXPECT_EQ(lines(1), (Lines{"42"}));
}

TEST_F(ScriptsRealEvents, TheReadyScriptsSliderDrivesTheWire)
{
    fWindow.setShowsConsole(false);
    fWindow.runScript(QStringLiteral(WIRE_COLOR_SCRIPT));
    ASSERT_FALSE(fWindow.showsConsole()) << fOutput->toPlainText().toStdString();
    settle();
    auto* group = gUIInventory->find("wireColor", nullptr, true, false);
    auto* picture = qobject_cast<QlirnStaticPicture*>(gUIInventory->find("wirePicture", nullptr, true, false));
    ASSERT_TRUE(group && picture && group->isVisible() && picture->isVisible());
    auto& slider = *group->findChild<QlirnSlider*>();
    const QImage first = picture->pixmap(Qt::ReturnByValue).toImage();
    EXPECT_EQ(first.size(), QSize(260, 195));
    const QImage wires[] = {withWire(3), withWire(7), withWire(1)};
    ASSERT_FALSE(wires[0] == wires[1] || wires[0] == wires[2]);

    at(sliderHandle(slider, 1));
    button(true);
    for (int i = 0; i < 2; ++i) {
        at(sliderHandle(slider, i ? 7 : 3));
        EXPECT_TRUE(waitUntil([&] { return fWindow.shown() == wires[i]; }, 2000)) << "step " << i;
        EXPECT_EQ(picture->pixmap(Qt::ReturnByValue).toImage(), first) << "not yet let go";
    }
    button(false);
    EXPECT_NE(picture->pixmap(Qt::ReturnByValue).toImage(), first);
}

#endif
