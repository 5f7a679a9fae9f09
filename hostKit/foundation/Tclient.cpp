#include "foundation/Tclient.h"

#include "foundation/TclientServer.h"

Tclient::~Tclient()
{
    while (!fServers.empty())
        fServers.back()->removeClient(this);
}

void Tclient::serverDeleted(TclientServer*) {}
