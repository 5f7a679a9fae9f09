#include "ui/TapplicationShell.h"

#include <QGuiApplication>
#include <QX11Info>

const TapplicationShell* TapplicationShell::current()
{
    static TapplicationShell shell;
    if (!qApp || !QX11Info::isPlatformX11())
        return nullptr;
    shell.fDisplay = QX11Info::display();
    shell.fScreen = QX11Info::appScreen();
    return shell.fDisplay ? &shell : nullptr;
}
