// The slider group's widget: its range, its swatch, and the user's hand on it.

#include "Commands/Doors.h"
#include "support/SliderHandle.h"

#include <QKeyEvent>
#include <QWindow>
#include <QX11Info>

// X has a macro of that name.
constexpr QEvent::Type kKeyPress = QEvent::KeyPress;

// Last, for its macros.
#include <X11/extensions/XTest.h>

namespace {

using ::testing::ElementsAre;

class SliderGroup : public CommandTest
{
protected:
    QlirnColorIndexSliderGrp& make()
    {
        auto* group = new QlirnColorIndexSliderGrp(&panel(), false, new QLabel, new QlirnSlider, false);
        panel().layout()->addWidget(group);
        return *group;
    }
};

class SliderGroupRealEvents : public CommandTest
{
protected:
    void SetUp() override
    {
        // Scripts leave what they saw here.
        ASSERT_TRUE(text("colorIndexSliderGrp wire -maxValue 8 -value 3").ok);
        ASSERT_TRUE(
            python(
                "seen = []\ndef note(what): seen.append(f\"{what}{lirn.colorIndexSliderGrp('wire', q=1==1, v=True)}\")")
                .ok);
        panel().move(40, 40);
        panel().resize(400, 60);
        panel().show();
        ASSERT_TRUE(waitUntil([this] { return panel().windowHandle()->isExposed(); }));
        settle();
        ASSERT_TRUE(slider());
    }
    void TearDown() override
    {
        XTestFakeButtonEvent(QX11Info::display(), 1, False, CurrentTime);
        moveTo(QPoint(0, 0));
    }

    QlirnSlider* slider()
    {
        auto* group = find<QlirnColorIndexSliderGrp>("wire");
        return group ? group->lirnSlider() : nullptr;
    }
    QPoint handleAt(int value) { return sliderHandle(*slider(), value); }
    void moveTo(const QPoint& at)
    {
        XTestFakeMotionEvent(QX11Info::display(), -1, at.x(), at.y(), CurrentTime);
        deliver();
    }
    void button(bool down)
    {
        XTestFakeButtonEvent(QX11Info::display(), 1, down, CurrentTime);
        deliver();
    }
    /** Qt reads events in a thread of its own, which may be behind the server. */
    static void deliver()
    {
        XSync(QX11Info::display(), False);
        waitUntil([] { return false; }, 60);
    }
    std::string seen() { return python("' '.join(seen)").text; }
};

} // namespace

TEST_F(SliderGroup, RangesAndValues)
{
    QlirnColorIndexSliderGrp& group = make();
    const auto state = [&] {
        return std::vector<int>{group.value(), group.minValue(), group.maxValue(), group.invisibleIndex()};
    };
    EXPECT_THAT(state(), ElementsAre(0, 0, 10, -1));
    group.setMinValue(20);
    EXPECT_THAT(state(), ElementsAre(20, 20, 21, -1));
    group.setMaxValue(5);
    EXPECT_THAT(state(), ElementsAre(5, 4, 5, -1));
    group.setValue(70);
    EXPECT_EQ(group.value(), 70);
    EXPECT_EQ(group.lirnSlider()->value(), 5);
    group.setMaxValue(60);
    EXPECT_EQ(group.value(), group.lirnSlider()->value());
    group.setMinValue(std::numeric_limits<int>::max());
    group.setMaxValue(std::numeric_limits<int>::min());
    EXPECT_EQ(group.value(), std::numeric_limits<int>::min());
}

TEST_F(SliderGroup, TheSwatchShowsTheEntry)
{
    const TportColor colors[] = {{0.2f, 0.4f, 0.6f, 1},
                                 {1, 0, 0, 0},
                                 {0, 1, 0, 1},
                                 {2, -1, 0.5f, 1},
                                 {std::numeric_limits<float>::quiet_NaN(), 0, 1, 1}};
    const QRgb shown[] = {qRgb(51, 102, 153), qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(255, 0, 128), qRgb(0, 0, 255)};
    for (unsigned short i = 0; i < 5; ++i)
        T3dPort::setColorTable(i, colors[i]);
    QlirnColorIndexSliderGrp& group = make();
    panel().resize(300, 40);
    panel().show();
    settle();
    QWidget* swatch = group.column(1);
    const auto color = [&] { return swatch->grab().toImage().pixel(swatch->rect().center()) | 0xff000000; };
    for (int i = 0; i < 5; ++i) {
        group.lirnSlider()->setValue(i);
        EXPECT_EQ(color(), shown[i]) << "entry " << i;
        EXPECT_FALSE(swatch->isEnabled());
    }
    EXPECT_EQ(group.value(), 4);
    group.setValue(9);
    EXPECT_EQ(color(), shown[1]) << "outside the table";
    group.setInvisibleIndex(9);
    EXPECT_EQ(color(), shown[0]);
    EXPECT_TRUE(swatch->isEnabled());
    group.setValue(2);
    EXPECT_EQ(color(), shown[2]);
    EXPECT_FALSE(swatch->isEnabled());
}

TEST_F(SliderGroupRealEvents, DragAndChangeCommands)
{
    ASSERT_TRUE(
        python("lirn.colorIndexSliderGrp('wire', e=True, dragCommand=lambda: note('d'), changeCommand='note(\"c\")')")
            .ok);
    moveTo(handleAt(3));
    button(true);
    moveTo(handleAt(4));
    moveTo(handleAt(6));
    EXPECT_EQ(seen(), "'d4 d6'");
    button(false);
    EXPECT_EQ(seen(), "'d4 d6 c6'");

    // A press beside the handle turns a page, which is one step, and is no drag.
    moveTo(handleAt(0));
    button(true);
    button(false);
    EXPECT_EQ(seen(), "'d4 d6 c6 c5'");

    QKeyEvent key(kKeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(slider(), &key);
    QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider(), &wheel);
    EXPECT_EQ(seen(), "'d4 d6 c6 c5 c6 d5 c5'");

    // A script in its other language, in the place of the first; one that fails does no harm.
    ErrorCollector errors;
    ASSERT_TRUE(text("colorIndexSliderGrp -edit wire -cc \"image -image \\\"\\\" done; nonsense\" -dc \"\"").ok);
    moveTo(handleAt(5));
    button(true);
    moveTo(handleAt(1));
    button(false);
    EXPECT_EQ(seen(), "'d4 d6 c6 c5 c6 d5 c5'");
    EXPECT_TRUE(find<QlirnStaticPicture>("done"));
    EXPECT_THAT(errors.messages(), ElementsAre("There is no command 'nonsense'."));
    EXPECT_EQ(text("colorIndexSliderGrp -q -v wire"), (Answer{true, "1"}));
}

TEST_F(SliderGroupRealEvents, TheDragCommandMayDeleteTheGroup)
{
    ASSERT_TRUE(text("colorIndexSliderGrp -edit wire -dc \"deleteUI wire\"").ok);
    moveTo(handleAt(3));
    button(true);
    QPointer<QlirnSlider> held = slider();
    moveTo(handleAt(5));
    button(false);
    EXPECT_FALSE(held);
}
