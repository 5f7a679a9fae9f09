#include "foundation/TclientServer.h"

#include "foundation/Tclient.h"
#include "foundation/Tmetaclass.h"

#include <algorithm>

// A message on its way round; rounds nest when a client posts another one.
struct TclientServer::Tround
{
    Tround* fOuter = nullptr;
    bool fServerIsGone = false;
};

TclientServer::~TclientServer()
{
    for (Tround* round = fRound; round; round = round->fOuter)
        round->fServerIsGone = true;
    fRound = nullptr;
    fIsDying = true;
    // Any of the calls may take further clients out.
    while (!fClients.empty()) {
        Tclient* const client = fClients.back();
        fClients.pop_back();
        if (!client)
            continue;
        auto& servers = client->fServers;
        servers.erase(std::remove(servers.begin(), servers.end(), this), servers.end());
        client->serverDeleted(this);
    }
}

Tmetaclass* TclientServer::sTypeof()
{
    static Tmetaclass metaclass("clientServer", sizeof(TclientServer), nullptr);
    return &metaclass;
}

Tmetaclass* TclientServer::typeof() const
{
    return sTypeof();
}

void* TclientServer::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : nullptr;
}

bool TclientServer::addClient(Tclient* client)
{
    if (!client || fIsDying || std::find(fClients.begin(), fClients.end(), client) != fClients.end())
        return false;
    fClients.push_back(client);
    client->fServers.push_back(this);
    return true;
}

bool TclientServer::removeClient(Tclient* client)
{
    const auto found = client ? std::find(fClients.begin(), fClients.end(), client) : fClients.end();
    if (found == fClients.end())
        return false;
    // A round under way goes by index.
    if (fRound)
        *found = nullptr;
    else
        fClients.erase(found);
    auto& servers = client->fServers;
    servers.erase(std::remove(servers.begin(), servers.end(), this), servers.end());
    return true;
}

unsigned TclientServer::clientCount() const
{
    return static_cast<unsigned>(fClients.size() -
                                 std::count(fClients.begin(), fClients.end(), static_cast<Tclient*>(nullptr)));
}

void TclientServer::notify(const TserverModifiedMsg& message)
{
    Tround round{fRound};
    fRound = &round;
    const std::size_t count = fClients.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!fClients[i])
            continue;
        fClients[i]->receive(message);
        if (round.fServerIsGone)
            return;
    }
    fRound = round.fOuter;
    if (!fRound)
        fClients.erase(std::remove(fClients.begin(), fClients.end(), nullptr), fClients.end());
}
