#pragma once

class TclientServer;
class Tmetaclass;

/** The message that something about a server has changed. Its metaclass is named "serverModifiedMsg". */
class TserverModifiedMsg
{
public:
    explicit TserverModifiedMsg(TclientServer* server = nullptr) : fServer(server) {}
    TserverModifiedMsg(const TserverModifiedMsg&) = default;
    TserverModifiedMsg& operator=(const TserverModifiedMsg&) = default;

    virtual ~TserverModifiedMsg();
    virtual Tmetaclass* typeof() const;
    /** This message when asked for its own metaclass, else null. */
    virtual void* cast(Tmetaclass* metaclass);

    /** The server that posts the message. */
    TclientServer* server() const { return fServer; }

    static Tmetaclass* sTypeof();
    /** A new message of @p metaclass; null for a null metaclass or one that is no message's. */
    static void* construct(Tmetaclass* metaclass);
    /** As construct, in memory of the metaclass's size. */
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);

private:
    TclientServer* fServer;
};

static_assert(sizeof(TserverModifiedMsg) == 16);
