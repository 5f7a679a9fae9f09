#include "support/XEvents.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#undef Bool
#undef FocusIn
#undef KeyPress
#undef KeyRelease
#undef None

#include <thread>
#include <utility>

namespace {

/** Counts the events of one type that Qt hands to its windows. */
class Arrivals : public QObject
{
public:
    explicit Arrivals(QEvent::Type type) : fType(type) { qApp->installEventFilter(this); }

    bool wait(int count = 1)
    {
        return waitFor([&] { return fCount >= count; });
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        fCount += object->isWindowType() && event->type() == fType;
        return false;
    }

private:
    QEvent::Type fType;
    int fCount = 0;
};

Display* display()
{
    return QX11Info::display();
}

void fakeButton(int button, bool isDown)
{
    XTestFakeButtonEvent(display(), static_cast<unsigned>(button), isDown, CurrentTime);
    XSync(display(), 0);
}

void fakeKey(unsigned long keysym, bool isDown)
{
    XTestFakeKeyEvent(display(), XKeysymToKeycode(display(), keysym), isDown, CurrentTime);
    XSync(display(), 0);
}

QPoint pointer()
{
    ::Window root = 0;
    ::Window child = 0;
    int x = -1;
    int y = -1;
    int inWindowX = 0;
    int inWindowY = 0;
    unsigned mask = 0;
    XQueryPointer(display(), DefaultRootWindow(display()), &root, &child, &x, &y, &inWindowX, &inWindowY, &mask);
    return {x, y};
}

} // namespace

bool waitFor(const std::function<bool()>& condition, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

bool showAndWait(QWidget& widget)
{
    widget.show();
    return waitFor([&] { return widget.windowHandle() && widget.windowHandle()->isExposed(); });
}

XEvents::~XEvents()
{
    for (const int button : fButtons)
        fakeButton(button, false);
    for (const unsigned long key : fKeys)
        fakeKey(key, false);
    XTestFakeMotionEvent(display(), -1, DisplayWidth(display(), DefaultScreen(display())) - 1,
                         DisplayHeight(display(), DefaultScreen(display())) - 1, CurrentTime);
    XSync(display(), 0);
    QApplication::processEvents();
}

bool XEvents::moveTo(const QWidget& widget, const QPoint& position)
{
    const QPoint target = widget.mapToGlobal(position) * widget.devicePixelRatioF();
    if (pointer() == target)
        return true;
    Arrivals arrivals(QEvent::MouseMove);
    XTestFakeMotionEvent(display(), -1, target.x(), target.y(), CurrentTime);
    XSync(display(), 0);
    return arrivals.wait() && pointer() == target;
}

bool XEvents::press(int button)
{
    Arrivals arrivals(QEvent::MouseButtonPress);
    fButtons.insert(button);
    fakeButton(button, true);
    return arrivals.wait();
}

bool XEvents::release(int button)
{
    Arrivals arrivals(QEvent::MouseButtonRelease);
    fButtons.erase(button);
    fakeButton(button, false);
    return arrivals.wait();
}

bool XEvents::click(const QWidget& widget, const QPoint& position, int button)
{
    return moveTo(widget, position) && press(button) && release(button);
}

bool XEvents::doubleClick(const QWidget& widget, const QPoint& position, int button)
{
    return click(widget, position, button) && press(button) && release(button);
}

bool XEvents::drag(const QWidget& widget, const QPoint& from, const QPoint& to, int button)
{
    return moveTo(widget, from) && press(button) && moveTo(widget, to) && release(button);
}

bool XEvents::wheel(const QWidget& widget, const QPoint& position, int notches)
{
    if (!moveTo(widget, position))
        return false;
    Arrivals arrivals(QEvent::Wheel);
    const int button = notches > 0 ? 4 : 5;
    for (int i = 0; i < qAbs(notches); ++i) {
        fakeButton(button, true);
        fakeButton(button, false);
    }
    return arrivals.wait(qAbs(notches));
}

bool XEvents::keyDown(unsigned long keysym)
{
    Arrivals arrivals(QEvent::KeyPress);
    fKeys.insert(keysym);
    fakeKey(keysym, true);
    return arrivals.wait();
}

bool XEvents::keyUp(unsigned long keysym)
{
    Arrivals arrivals(QEvent::KeyRelease);
    fKeys.erase(keysym);
    fakeKey(keysym, false);
    return arrivals.wait();
}

bool XEvents::focus(QWidget& widget)
{
    widget.setFocus();
    XSetInputFocus(display(), widget.window()->winId(), RevertToParent, CurrentTime);
    XSync(display(), 0);
    return waitFor([&] { return QApplication::focusWidget() == &widget; });
}
