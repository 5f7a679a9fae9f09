#include "ui/QlirnQtHelper.h"

#include "foundation/Tmodifier.h"
#include "ui_support.h"

#include <QMenu>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <memory>

namespace {

QMouseEvent pressOf(Qt::MouseButton button)
{
    return QMouseEvent(QEvent::MouseButtonPress, QPointF(3, 4), button, button, Qt::NoModifier);
}

} // namespace

TEST(QlirnQtHelper, ButtonsAndModifiersOfEvents)
{
    struct Tcase {
        Qt::MouseButton button;
        Qt::MouseButtons held;
        Qt::KeyboardModifiers keys;
        int lirnButton;
        unsigned modifiers;
    };
    const Tcase cases[] = {
        {Qt::LeftButton, Qt::LeftButton, Qt::NoModifier, 1, 0},
        {Qt::MiddleButton, Qt::MiddleButton, Qt::ShiftModifier, 2, 1},
        {Qt::RightButton, Qt::RightButton, Qt::ControlModifier, 3, 4},
        // a release: the button is not held any more
        {Qt::RightButton, Qt::LeftButton, Qt::AltModifier, 3, 8},
        {Qt::LeftButton, Qt::NoButton, Qt::ShiftModifier | Qt::AltModifier, 1, 9},
        // moves
        {Qt::NoButton, Qt::NoButton, Qt::NoModifier, 0, 0},
        {Qt::NoButton, Qt::MiddleButton, Qt::NoModifier, 2, 0},
        {Qt::NoButton, Qt::RightButton | Qt::MiddleButton, Qt::NoModifier, 2, 0},
        {Qt::NoButton, Qt::RightButton | Qt::LeftButton, Qt::NoModifier, 1, 0},
        // buttons and keys that the application does not know
        {Qt::BackButton, Qt::BackButton | Qt::LeftButton, Qt::KeypadModifier, 0, 0},
        {Qt::NoButton, Qt::ForwardButton, Qt::MetaModifier | Qt::ControlModifier, 0, 4},
    };
    for (const Tcase& tested : cases) {
        SCOPED_TRACE(::testing::Message() << "button " << tested.button << ", held " << int(tested.held));
        unsigned modifiers = 99;
        int button = 99;
        const QMouseEvent event(QEvent::MouseMove, QPointF(), tested.button, tested.held, tested.keys);
        QlirnQtHelper::getMouseEventLirnButtonInfo(&event, modifiers, button);
        EXPECT_EQ(button, tested.lirnButton);
        EXPECT_EQ(modifiers, tested.modifiers);
    }

    const QWheelEvent wheel(QPointF(), QPointF(), QPoint(), QPoint(0, 120), Qt::RightButton,
                            Qt::ShiftModifier | Qt::ControlModifier, Qt::NoScrollPhase, false);
    unsigned modifiers = 99;
    int button = 99;
    QlirnQtHelper::getMouseEventLirnButtonInfo(&wheel, modifiers, button);
    EXPECT_EQ(button, 3);
    EXPECT_EQ(modifiers, unsigned(kShift | kControl));

    QlirnQtHelper::getMouseEventLirnButtonInfo(static_cast<const QMouseEvent*>(nullptr), modifiers, button);
    EXPECT_EQ(button, 0);
    EXPECT_EQ(modifiers, 0u);
}

using QlirnQtHelperPopup = UiTest;

TEST_F(QlirnQtHelperPopup, MenuAppearsForItsWidgetAndButton)
{
    QWidget widget;
    QWidget other;
    QMenu menu;
    menu.addAction("Frame all");
    QMouseEvent left = pressOf(Qt::LeftButton);
    QMouseEvent right = pressOf(Qt::RightButton);

    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, &right));
    QlirnQtHelper::setPopupMenu(&widget, &menu);
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, &left));
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&other, &right));
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(nullptr, &right));
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, nullptr));
    EXPECT_FALSE(menu.isVisible());
    EXPECT_TRUE(QlirnQtHelper::handlePopupMenu(&widget, &right));
    EXPECT_TRUE(menu.isVisible());
    menu.hide();

    QlirnQtHelper::setPopupMenu(&widget, &menu, Qt::LeftButton);
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, &right));
    EXPECT_TRUE(QlirnQtHelper::handlePopupMenu(&widget, &left));
    menu.hide();

    QlirnQtHelper::setPopupMenu(&widget, nullptr);
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, &left));
    QlirnQtHelper::setPopupMenu(nullptr, &menu);
    QlirnQtHelper::setPopupMenu(&widget, std::make_unique<QMenu>().get());
    EXPECT_FALSE(QlirnQtHelper::handlePopupMenu(&widget, &right));
}
