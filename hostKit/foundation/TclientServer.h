#pragma once

#include <vector>

class Tclient;
class Tmetaclass;
class TserverModifiedMsg;

/** Posts messages to its clients. For one thread. Its metaclass is named "clientServer". */
class TclientServer
{
public:
    TclientServer() = default;
    TclientServer(const TclientServer&) = delete;
    TclientServer& operator=(const TclientServer&) = delete;

    /** Takes leave of every client (Tclient::serverDeleted). */
    virtual ~TclientServer();
    virtual Tmetaclass* typeof() const;
    /** This server when asked for its own metaclass, else null. */
    virtual void* cast(Tmetaclass* metaclass);

    static Tmetaclass* sTypeof();

    /** False for null and for one that is a client already. */
    bool addClient(Tclient* client);
    /** False for one that is no client. */
    bool removeClient(Tclient* client);
    unsigned clientCount() const;

    /**
     * Hands the message to each client, in the order in which they came. While it goes round, clients may come,
     * leave, be deleted and delete the server: who has left hears nothing, who has come hears the next message.
     */
    void notify(const TserverModifiedMsg& message);

private:
    struct Tround;

    std::vector<Tclient*> fClients; // null for one that left while a message went round
    Tround* fRound = nullptr;       // the innermost of those under way
    bool fIsDying = false;
};
