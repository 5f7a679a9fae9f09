#include "ui/QlirnQtHelper.h"

#include "foundation/Tmodifier.h"

#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QVariant>
#include <QWheelEvent>
#include <QWidget>

namespace {

// Held by the widget itself, so that a registration ends with it.
constexpr char kPopupMenu[] = "LirnPopupMenu";
constexpr char kPopupButton[] = "LirnPopupButton";

constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};

int lirnButtonOf(Qt::MouseButton button, Qt::MouseButtons buttons)
{
    int number = 1;
    for (const Qt::MouseButton candidate : kButtons) {
        if (button == Qt::NoButton ? buttons.testFlag(candidate) : button == candidate) {
            return number;
        }
        ++number;
    }
    return 0;
}

} // namespace

void QlirnQtHelper::getMouseEventLirnButtonInfo(Qt::MouseButton button, Qt::MouseButtons buttons,
                                                Qt::KeyboardModifiers keys, unsigned& modifiers, int& lirnButton)
{
    modifiers = (keys.testFlag(Qt::ShiftModifier) ? unsigned(kShift) : 0u) |
                (keys.testFlag(Qt::ControlModifier) ? unsigned(kControl) : 0u) |
                (keys.testFlag(Qt::AltModifier) ? unsigned(kAlt) : 0u);
    lirnButton = lirnButtonOf(button, buttons);
}

void QlirnQtHelper::getMouseEventLirnButtonInfo(const QMouseEvent* event, unsigned& modifiers, int& lirnButton)
{
    modifiers = 0;
    lirnButton = 0;
    if (event) {
        getMouseEventLirnButtonInfo(event->button(), event->buttons(), event->modifiers(), modifiers, lirnButton);
    }
}

void QlirnQtHelper::getMouseEventLirnButtonInfo(const QWheelEvent* event, unsigned& modifiers, int& lirnButton)
{
    modifiers = 0;
    lirnButton = 0;
    if (event) {
        getMouseEventLirnButtonInfo(Qt::NoButton, event->buttons(), event->modifiers(), modifiers, lirnButton);
    }
}

void QlirnQtHelper::setPopupMenu(QWidget* widget, QMenu* menu, Qt::MouseButton button)
{
    if (!widget) {
        return;
    }
    widget->setProperty(kPopupMenu, menu ? QVariant::fromValue(QPointer<QMenu>(menu)) : QVariant());
    widget->setProperty(kPopupButton, menu ? QVariant(int(button)) : QVariant());
}

bool QlirnQtHelper::handlePopupMenu(QWidget* widget, QMouseEvent* event)
{
    if (!widget || !event || event->button() == Qt::NoButton) {
        return false;
    }
    QMenu* menu = widget->property(kPopupMenu).value<QPointer<QMenu>>();
    if (!menu || widget->property(kPopupButton).toInt() != int(event->button())) {
        return false;
    }
    menu->popup(event->globalPos());
    event->accept();
    return true;
}
