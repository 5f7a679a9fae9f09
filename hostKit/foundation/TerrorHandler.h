#pragma once

#include "foundation/Tstring.h"

#include <functional>
#include <memory>

/** Takes the reports of what went wrong. This one prints them to standard error; derive one to do otherwise. */
class TerrorHandler
{
public:
    enum Tseverity { kInformation, kWarning, kError };
    using Tlistener = std::function<void(Tseverity, const Tstring& message)>;

    /** Ends a subscription when it goes. */
    class Tsubscription
    {
    public:
        Tsubscription() = default;
        explicit Tsubscription(std::shared_ptr<const Tlistener> listener) : fListener(std::move(listener)) {}
        Tsubscription(Tsubscription&&) noexcept = default;
        Tsubscription& operator=(Tsubscription&&) noexcept;
        ~Tsubscription() { end(); }

        void end();

    private:
        std::shared_ptr<const Tlistener> fListener;
    };

    TerrorHandler() = default;
    TerrorHandler(const TerrorHandler&) = delete;
    TerrorHandler& operator=(const TerrorHandler&) = delete;
    /** A handler that is still in force gives way to none. */
    virtual ~TerrorHandler();

    virtual void handle(Tseverity severity, const Tstring& message);

    /** The handler in force, at first one that prints; null when it was taken away. */
    static TerrorHandler* current();
    /** Puts @p handler, not owned, in force; null for none. Returns the one before. */
    static TerrorHandler* install(TerrorHandler* handler);

    /** Tells every subscriber, then the handler in force. */
    static void report(Tseverity severity, const Tstring& message);

    /** Lets @p listener hear every report as long as the result is kept. For any thread; an empty one is ignored. */
    [[nodiscard]] static Tsubscription subscribe(Tlistener listener);
};
