#include "ui/Tcontrol.h"

#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/Tmetaclass.h"
#include "foundation/TportRect.h"
#include "ui/TUIInventory.h"

#include <QWidget>

namespace {

bool runCommand(Taction* command, const Tevent& event)
{
    return command && command->run(event);
}

void* constructPlainControl()
{
    return new Tcontrol;
}

// Makes the name known as soon as the library is loaded, before the first control exists.
[[maybe_unused]] const Tmetaclass* const kRegistered = Tcontrol::sTypeof();

} // namespace

Tcontrol::~Tcontrol()
{
    gUIInventory->remove(this);
}

Tmetaclass* Tcontrol::sTypeof()
{
    static Tmetaclass metaclass("control", sizeof(Tcontrol), TclientServer::sTypeof(), constructPlainControl);
    return &metaclass;
}

Tmetaclass* Tcontrol::typeof() const
{
    return sTypeof();
}

void* Tcontrol::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : TclientServer::cast(metaclass);
}

bool Tcontrol::doPress(const Tevent& event)
{
    return runCommand(fPressCommand, event);
}

bool Tcontrol::doDoubleClick(const Tevent&)
{
    return false;
}

bool Tcontrol::doUpdate(const Tevent&)
{
    return false;
}

bool Tcontrol::doEnterRegion(const Tevent& event)
{
    return runCommand(fEnterCommand, event);
}

bool Tcontrol::doExitRegion(const Tevent& event)
{
    return runCommand(fExitCommand, event);
}

bool Tcontrol::doStow(const Tevent&)
{
    return false;
}

bool Tcontrol::doUnStow(const Tevent&)
{
    return false;
}

bool Tcontrol::doPtrMoved(const Tevent&)
{
    return false;
}

bool Tcontrol::doMouseWheel(const Tevent&)
{
    return false;
}

void Tcontrol::visibleNotify(bool) {}

void Tcontrol::adjustEventLocalPosition(Tevent&) const {}

void Tcontrol::beginSelect(unsigned*, int) {}

int Tcontrol::endSelect()
{
    return 0;
}

bool Tcontrol::pixelMapRead(TpixelMap&, short)
{
    return false;
}

bool Tcontrol::pixelMapRead(TgenericPixelMap<float>&, TportRect, PixelMapReadColorSpace)
{
    return false;
}

void Tcontrol::parentWindowMoveNotify() {}

bool Tcontrol::resize(const Trect&)
{
    return false;
}

bool Tcontrol::doDrag(const Tevent& event)
{
    return runCommand(fDragCommand, event);
}

bool Tcontrol::doRelease(const Tevent& event)
{
    return runCommand(fReleaseCommand, event);
}

bool Tcontrol::doHold(const Tevent& event)
{
    return runCommand(fHoldCommand, event);
}

bool Tcontrol::doKeyPress(const Tevent&)
{
    return false;
}

bool Tcontrol::doKeyRelease(const Tevent&)
{
    return false;
}

bool Tcontrol::doKeyRepeat(const Tevent&)
{
    return false;
}

void Tcontrol::setPressCommand(Taction* command)
{
    fPressCommand = command;
}

void Tcontrol::setDragCommand(Taction* command)
{
    fDragCommand = command;
}

void Tcontrol::setReleaseCommand(Taction* command)
{
    fReleaseCommand = command;
}

void Tcontrol::setHoldCommand(Taction* command)
{
    fHoldCommand = command;
}

void Tcontrol::setEnterCommand(Taction* command)
{
    fEnterCommand = command;
}

void Tcontrol::setExitCommand(Taction* command)
{
    fExitCommand = command;
}

Tcontrol* Tcontrol::constructControl(const char* name)
{
    const Tmetaclass* metaclass = name ? Tmetaclass::find(name) : nullptr;
    if (!metaclass || !metaclass->istype(sTypeof())) {
        return nullptr;
    }
    return static_cast<Tcontrol*>(metaclass->construct());
}

QWidget* Tcontrol::qControl() const
{
    return fQControl;
}

void Tcontrol::setQControl(QWidget* widget)
{
    fQControl = widget;
}
