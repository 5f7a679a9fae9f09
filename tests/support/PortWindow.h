#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QVBoxLayout>
#include <QWidget>

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/TresourceMap.h"

#include <memory>

/** Runs the event loop until @p condition holds; false when it does not within @p milliseconds. */
template <class Condition> bool waitUntil(Condition condition, int milliseconds = 5000)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(milliseconds))
            return false;
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

/** Runs the event loop until there is nothing more to do. */
void settle();

/** The pixels that the X server shows of the port's own window. Null when there is none to be seen. */
QImage shownPixels(const T3dPort& port);

enum class Buffering { kSingle, kDouble };

/** A top-level window filled by one port. */
template <class Port = T3dPort> class PortWindow
{
public:
    PortWindow(int width, int height, Buffering buffering = Buffering::kSingle)
    {
        TresourceMap::Set("testPort", "saFrameBufferMode", buffering == Buffering::kDouble ? "double" : "single");
        fWindow.resize(width, height);
        auto* layout = new QVBoxLayout(&fWindow);
        layout->setContentsMargins(0, 0, 0, 0);
        fPort = std::make_unique<Port>(&fWindow, "testPort", false);
        if (QWidget* widget = fPort->qControl())
            layout->addWidget(widget);
    }

    Port& port() { return *fPort; }
    QWidget& window() { return fWindow; }
    void closePort() { fPort.reset(); }

    /** Shows the window and waits for the first paint. */
    bool show()
    {
        fWindow.show();
        const bool painted = waitUntil([this] { return !fPort->portFlags().test(T3dPort::kPortFirstPaintPending); });
        settle();
        return painted;
    }

private:
    QWidget fWindow;
    std::unique_ptr<Port> fPort;
};
