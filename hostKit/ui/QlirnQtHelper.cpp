#include "ui/QlirnQtHelper.h"

#include "foundation/Tmodifier.h"
#include "ui/QlirnScriptAction.h"

#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QVariant>
#include <QWheelEvent>
#include <QWidget>

Q_DECLARE_METATYPE(TscriptPtr)

namespace {

// Held by the widget itself, so that a registration ends with it.
constexpr char kPopupMenu[] = "LirnPopupMenu";
constexpr char kPopupButton[] = "LirnPopupButton";

constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};

QByteArray scriptProperty(const char* name)
{
    return QByteArray("LirnScript_") + name;
}

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

void QlirnQtHelper::setCommandScript(QObject* control, const char* name, const TscriptPtr& script)
{
    if (control && name) {
        control->setProperty(scriptProperty(name), script ? QVariant::fromValue(script) : QVariant());
    }
}

TscriptPtr QlirnQtHelper::commandScript(const QObject* control, const char* name)
{
    return control && name ? control->property(scriptProperty(name)).value<TscriptPtr>() : nullptr;
}

bool QlirnQtHelper::executeCommandScript(QObject* control, const char* name)
{
    const TscriptPtr script = commandScript(control, name);
    return script && script->run();
}

bool QlirnQtHelper::linkControlSignalToScriptAction(QObject* control, const char* signal, const char* name,
                                                    const TscriptPtr& script)
{
    if (!control || !signal || !name) {
        return false;
    }
    auto* action = control->findChild<QlirnScriptAction*>(QString::fromUtf8(name), Qt::FindDirectChildrenOnly);
    if (!action) {
        action = new QlirnScriptAction(control, name);
        if (!QObject::connect(control, signal, action, SLOT(run()))) {
            delete action;
            return false;
        }
    }
    setCommandScript(control, name, script);
    return true;
}
