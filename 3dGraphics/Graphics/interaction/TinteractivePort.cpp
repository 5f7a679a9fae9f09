#include "Graphics/interaction/TinteractivePort.h"

#include "foundation/Tmetaclass.h"
#include "foundation/TserverWatch.h"
#include "ui/ThandlerBlock.h"
#include "ui/Tpanel.h"
#include "ui/TpanelManager.h"

#include <new>

namespace {

Tmetaclass& metaclassOf()
{
    static Tmetaclass metaclass(
        "TinteractivePort", sizeof(TinteractivePort), T3dPort::sTypeof(), TinteractionDirector::sTypeof(),
        []() -> void* { return new TinteractivePort(nullptr, nullptr, false); },
        [](void* memory) -> void* { return new (memory) TinteractivePort(nullptr, nullptr, false); });
    return metaclass;
}

// Registers the type at library load.
[[maybe_unused]] const Tmetaclass& gRegistered = metaclassOf();

} // namespace

TinteractivePort::TinteractivePort(QWidget* parent, const char* name, bool stereo) : T3dPort(parent, name, stereo)
{
    findPaneLayout();
}

TinteractivePort::~TinteractivePort()
{
    TinteractivePort::detachHandlers();
}

Tmetaclass* TinteractivePort::sTypeof()
{
    return &metaclassOf();
}

Tmetaclass* TinteractivePort::typeof() const
{
    return sTypeof();
}

void* TinteractivePort::cast(Tmetaclass* metaclass)
{
    if (metaclass == sTypeof())
        return this;
    if (void* port = T3dPort::cast(metaclass))
        return port;
    return TinteractionDirector::cast(metaclass);
}

void* TinteractivePort::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* TinteractivePort::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}

void TinteractivePort::findPaneLayout()
{
    fPanelWidget = qControl();
    for (QWidget* widget = fPanelWidget ? fPanelWidget->parentWidget() : nullptr; widget;
         widget = widget->parentWidget()) {
        if (auto* layout = qobject_cast<QlirnPaneLayout*>(widget->layout())) {
            fPaneLayout = layout;
            fInPaneLayout = true;
            return;
        }
        fPanelWidget = widget;
    }
}

bool TinteractivePort::doPress(const Tevent& event)
{
    const TserverWatch self(this);
    activate();
    if (self.isAlive() && fInPaneLayout) {
        if (Tpanel* panel = gThePanelManager->panel(fPanelWidget, false))
            panel->pressNotify();
    }
    return self.isAlive() && T3dPort::doPress(event);
}

bool TinteractivePort::doKeyPress(const Tevent&)
{
    return false;
}

bool TinteractivePort::doEnterRegion(const Tevent& event)
{
    return T3dPort::doEnterRegion(event);
}

bool TinteractivePort::doExitRegion(const Tevent& event)
{
    return T3dPort::doExitRegion(event);
}

QWidget* TinteractivePort::rootQControl()
{
    return qControl();
}

void TinteractivePort::refresh(bool) {}

void TinteractivePort::attachHandlers(ThandlerBlock& block)
{
    setPressCommand(block.press());
    setDragCommand(block.drag());
    setReleaseCommand(block.release());
    setHoldCommand(block.hold());
    setDoubleClickCommand(block.doubleClick());
    setUpdateCommand(block.update());
    setPtrMovedCommand(block.ptrMoved());
    setEnterCommand(block.enter());
    setExitCommand(block.exit());
}

void TinteractivePort::detachHandlers()
{
    ThandlerBlock none;
    TinteractivePort::attachHandlers(none); // not a subclass's, which may begin with detaching
}
