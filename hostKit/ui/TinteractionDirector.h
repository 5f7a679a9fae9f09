#pragma once

class QWidget;
class TclientServer;
class Tevent;
class ThandlerBlock;
class Tmetaclass;

/**
 * Base of what directs the interaction in a view: it takes a tool's handlers and installs them as the commands of its
 * events. Of all directors of the program one is the current one, the one that the user worked in last: a host sends it
 * what goes to no view in particular, such as a change of the modifier keys. Its metaclass is named
 * "interactionDirector". For the thread of the user interface.
 *
 * @code
 *     if (TinteractionDirector* director = TinteractionDirector::current())
 *         director->modifierStateChanged(event);
 * @endcode
 */
class TinteractionDirector
{
public:
    TinteractionDirector() = default;
    TinteractionDirector(const TinteractionDirector&) = delete;
    TinteractionDirector& operator=(const TinteractionDirector&) = delete;

    /** A current director that goes leaves none. */
    virtual ~TinteractionDirector();
    virtual Tmetaclass* typeof() const;
    /** This director when asked for the metaclass of TinteractionDirector, else null. */
    virtual void* cast(Tmetaclass* metaclass);

    /** The outermost widget of the view; null without one. */
    virtual QWidget* rootQControl() = 0;
    /** Installs the handlers of @p block in the place of those installed before. */
    virtual void attachHandlers(ThandlerBlock& block) = 0;
    virtual void detachHandlers() = 0;
    /** Keys of Tmodifier went down or up. Here the state is kept for modifiers(). */
    virtual void modifierStateChanged(const Tevent& event);

    /** Makes this the current director, and tells the clients of currentChanges() when it was not. */
    void activate();
    bool isActive() const { return current() == this; }
    /** Bits of Tmodifier, as last told. */
    unsigned modifiers() const { return fModifiers; }

    /** Null when none was activated, or when that one is gone. */
    static TinteractionDirector* current();
    /** Posts a TserverModifiedMsg whenever another director, or none, has become the current one. */
    static TclientServer& currentChanges();

    static Tmetaclass* sTypeof();

private:
    unsigned fModifiers = 0;
};
