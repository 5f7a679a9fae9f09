// Coordinate mapping.

#include "Graphics/3dPort/T3dPort.h"

#include "foundation/Tevent.h"

Tpoint T3dPort::windowToPort(const Tpoint& p) const
{
    return Tpoint{p.x, static_cast<short>(fPortRect.height() - p.y)};
}

Tpoint T3dPort::portToWindow(const Tpoint& p) const
{
    return windowToPort(p);
}

void T3dPort::adjustEventLocalPosition(Tevent& event) const
{
    event.setLocalPosition(windowToPort(event.getLocalPosition(1)), 1);
}
