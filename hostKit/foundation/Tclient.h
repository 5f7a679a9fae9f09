#pragma once

#include <vector>

class TclientServer;
class TserverModifiedMsg;

/** Receives the messages of servers. */
class Tclient
{
public:
    Tclient() = default;
    Tclient(const Tclient&) = delete;
    Tclient& operator=(const Tclient&) = delete;
    /** Leaves every server. */
    virtual ~Tclient();

    virtual void receive(const TserverModifiedMsg& message) = 0;
    /** Called when a server is destroyed. The client is none of its any more. */
    virtual void serverDeleted(TclientServer* server);

private:
    friend class TclientServer;

    std::vector<TclientServer*> fServers;
};
