#include "ui/QlirnQtHelper.h"

#include <QMouseEvent>

#include <gtest/gtest.h>

TEST(QlirnQtHelper, ButtonsAndModifiersOfEvents)
{
    struct Tcase
    {
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

    unsigned modifiers = 99;
    int button = 99;
    QlirnQtHelper::getMouseEventLirnButtonInfo(static_cast<const QMouseEvent*>(nullptr), modifiers, button);
    EXPECT_EQ(button, 0);
    EXPECT_EQ(modifiers, 0u);
}
