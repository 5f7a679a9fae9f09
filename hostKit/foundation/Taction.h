#pragma once

#include <functional>
#include <type_traits>
#include <utility>

class Tevent;

/** A command that the host runs with an event. */
class Taction
{
public:
    Taction() = default;
    Taction(const Taction&) = delete;
    Taction& operator=(const Taction&) = delete;
    virtual ~Taction();

    /** Returns whether the event was dealt with. */
    virtual bool run(const Tevent& event) = 0;
};

/** A command made of a function. One that returns nothing deals with every event. */
class TfunctionAction : public Taction
{
public:
    template <class F, class = std::enable_if_t<std::is_invocable_v<F&, const Tevent&>>>
    explicit TfunctionAction(F function)
    {
        if constexpr (std::is_void_v<std::invoke_result_t<F&, const Tevent&>>) {
            fFunction = [function = std::move(function)](const Tevent& event) mutable {
                function(event);
                return true;
            };
        } else {
            fFunction = std::move(function);
        }
    }

    /** False for an empty function. */
    bool run(const Tevent& event) override;

private:
    std::function<bool(const Tevent&)> fFunction;
};
