#pragma once

#include "foundation/Tclient.h"
#include "foundation/TclientServer.h"

/**
 * Tells whether a server is still there. An operation that runs other people's code, which may delete the object it
 * belongs to, makes one first and asks it before it goes on.
 */
class TserverWatch : public Tclient
{
public:
    explicit TserverWatch(TclientServer* server) : fIsAlive(server && server->addClient(this)) {}

    bool isAlive() const { return fIsAlive; }

    void receive(const TserverModifiedMsg&) override {}
    void serverDeleted(TclientServer*) override { fIsAlive = false; }

private:
    bool fIsAlive;
};
