#pragma once

#include <QPoint>

#include <functional>
#include <set>

class QWidget;

/** Processes events until @p condition holds; false when it does not within @p milliseconds. */
bool waitFor(const std::function<bool()>& condition, int milliseconds = 5000);
/** Shows a top-level widget and waits until it is on the display. */
bool showAndWait(QWidget& widget);

/**
 * Real events of pointer and keyboard, made by the X server (XTEST), as a hand would. Each operation returns when Qt has
 * delivered the event, or false when that did not happen. Positions are the widget's, in its own pixels. What is still
 * held down at the end is let go, and the pointer moves out of the way.
 *
 * The pointer is one for the whole display: tests that use this belong to suites named ...RealEvents, which run alone.
 */
class XEvents
{
public:
    enum Button { kLeft = 1, kMiddle = 2, kRight = 3 };

    XEvents() = default;
    XEvents(const XEvents&) = delete;
    XEvents& operator=(const XEvents&) = delete;
    ~XEvents();

    bool moveTo(const QWidget& widget, const QPoint& position);
    bool press(int button = kLeft);
    bool release(int button = kLeft);
    bool click(const QWidget& widget, const QPoint& position, int button = kLeft);
    bool doubleClick(const QWidget& widget, const QPoint& position, int button = kLeft);
    bool drag(const QWidget& widget, const QPoint& from, const QPoint& to, int button = kLeft);
    /** Turns the wheel under the pointer by so many notches, away from the user for positive ones. */
    bool wheel(const QWidget& widget, const QPoint& position, int notches);

    /** Keys by X keysym, such as XK_Shift_L or XK_a. They go to the window that focus() chose. */
    bool keyDown(unsigned long keysym);
    bool keyUp(unsigned long keysym);
    /** Without a window manager nobody else gives a window the keyboard. */
    bool focus(QWidget& widget);

private:
    std::set<int> fButtons;
    std::set<unsigned long> fKeys;
};
