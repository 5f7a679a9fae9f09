#include "Graphics/3dPort/TviewportVisibilityChangedMsg.h"

#include "foundation/Tmetaclass.h"

#include <new>

static_assert(sizeof(TviewportVisibilityChangedMsg) == 24, "clients know the message by its size");

namespace {

Tmetaclass& metaclassOf()
{
    static Tmetaclass metaclass(
        "viewportVisibilityChangedMsg", sizeof(TviewportVisibilityChangedMsg), TserverModifiedMsg::sTypeof(),
        []() -> void* { return new TviewportVisibilityChangedMsg(nullptr, false); },
        [](void* memory) -> void* { return new (memory) TviewportVisibilityChangedMsg(nullptr, false); });
    return metaclass;
}

// Registers the type at library load.
[[maybe_unused]] const Tmetaclass& gRegistered = metaclassOf();

} // namespace

TviewportVisibilityChangedMsg::TviewportVisibilityChangedMsg(TclientServer* server, bool visible)
    : TserverModifiedMsg(server), fVisible(visible)
{
}

Tmetaclass* TviewportVisibilityChangedMsg::sTypeof()
{
    return &metaclassOf();
}

Tmetaclass* TviewportVisibilityChangedMsg::typeof() const
{
    return sTypeof();
}

void* TviewportVisibilityChangedMsg::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : TserverModifiedMsg::cast(metaclass);
}

void* TviewportVisibilityChangedMsg::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* TviewportVisibilityChangedMsg::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}
