#include "ui/TinteractionDirector.h"

#include "foundation/TclientServer.h"
#include "foundation/Tevent.h"
#include "foundation/Tmetaclass.h"
#include "foundation/TserverModifiedMsg.h"

namespace {

TinteractionDirector* gCurrent = nullptr;

void makeCurrent(TinteractionDirector* director)
{
    gCurrent = director;
    TclientServer& server = TinteractionDirector::currentChanges();
    server.notify(TserverModifiedMsg(&server));
}

[[maybe_unused]] const Tmetaclass* const kRegistered = TinteractionDirector::sTypeof();

} // namespace

TinteractionDirector::~TinteractionDirector()
{
    if (gCurrent == this)
        makeCurrent(nullptr);
}

Tmetaclass* TinteractionDirector::sTypeof()
{
    static Tmetaclass metaclass("interactionDirector", sizeof(TinteractionDirector), nullptr);
    return &metaclass;
}

Tmetaclass* TinteractionDirector::typeof() const
{
    return sTypeof();
}

void* TinteractionDirector::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : nullptr;
}

void TinteractionDirector::modifierStateChanged(const Tevent& event)
{
    fModifiers = event.modifiers();
}

void TinteractionDirector::activate()
{
    if (gCurrent != this)
        makeCurrent(this);
}

TinteractionDirector* TinteractionDirector::current()
{
    return gCurrent;
}

TclientServer& TinteractionDirector::currentChanges()
{
    // Never deleted: directors may go as late as at the end of the process.
    static TclientServer& server = *new TclientServer;
    return server;
}
