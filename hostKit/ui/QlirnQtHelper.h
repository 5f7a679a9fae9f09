#pragma once

#include "ui/Tscript.h"

#include <Qt>

class QMenu;
class QMouseEvent;
class QObject;
class QWheelEvent;
class QWidget;

/** What the application's events and menus have to do with Qt's. */
class QlirnQtHelper
{
public:
    /**
     * Modifiers and button of a pointer event in the application's terms.
     *
     * The button is 1 for left, 2 for middle, 3 for right. An event that no button caused (a move, a wheel) has the
     * first of these that is held; no such button is 0.
     *
     * @param button the button that caused the event, Qt::NoButton for a move.
     * @param buttons the buttons held during the event.
     * @param modifiers set to the bits of Tmodifier.
     * @param lirnButton set to the button.
     */
    static void getMouseEventLirnButtonInfo(Qt::MouseButton button, Qt::MouseButtons buttons,
                                            Qt::KeyboardModifiers keys, unsigned& modifiers, int& lirnButton);

    /** The same of a Qt event; a null event has no modifier and no button. */
    static void getMouseEventLirnButtonInfo(const QMouseEvent* event, unsigned& modifiers, int& lirnButton);
    static void getMouseEventLirnButtonInfo(const QWheelEvent* event, unsigned& modifiers, int& lirnButton);

    /**
     * Registers the menu that pressing the button on the widget pops up, in place of an earlier one; a null menu takes
     * it away. The menu is not taken over, and may be destroyed at any time.
     */
    static void setPopupMenu(QWidget* widget, QMenu* menu, Qt::MouseButton button = Qt::RightButton);

    /**
     * Pops up the menu registered for the widget when the event's button is its button, at the event's place. Returns
     * without waiting for a choice.
     * @return true when a menu was shown: the event is used up.
     */
    static bool handlePopupMenu(QWidget* widget, QMouseEvent* event);

    /** \name Scripts of a control
     * A control keeps scripts under names such as "dragCommand"; they go with it. */
    ///@{
    /** Attaches a script, in place of an earlier one of the name; null takes it away. */
    static void setCommandScript(QObject* control, const char* name, const TscriptPtr& script);
    /** The script of the name, null when there is none. */
    static TscriptPtr commandScript(const QObject* control, const char* name);
    /** Runs the script of the name; false when there is none or it fails. The script may delete the control. */
    static bool executeCommandScript(QObject* control, const char* name);
    /**
     * Attaches a script and lets the signal, written with SIGNAL(), run what is attached under the name from then on.
     * @return false when the control has no such signal; then nothing is attached.
     */
    static bool linkControlSignalToScriptAction(QObject* control, const char* signal, const char* name,
                                                const TscriptPtr& script);
    ///@}
};
