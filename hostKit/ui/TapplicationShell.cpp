#include "ui/TapplicationShell.h"

#include <QGuiApplication>
#include <QPointer>
#include <QX11Info>

const TapplicationShell* TapplicationShell::current()
{
    // Every text that is drawn comes by, and Qt looks its display up by name.
    static thread_local TapplicationShell shell;
    static thread_local QPointer<QCoreApplication> application;
    if (!qApp)
        return nullptr;
    if (!shell.fDisplay || application != qApp) {
        application = qApp;
        const bool isOnX = QX11Info::isPlatformX11();
        shell.fDisplay = isOnX ? QX11Info::display() : nullptr;
        shell.fScreen = isOnX ? QX11Info::appScreen() : 0;
    }
    return shell.fDisplay ? &shell : nullptr;
}
