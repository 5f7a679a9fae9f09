#include "Graphics/3dPort/TviewportRendererChangedMsg.h"

#include "foundation/Tmetaclass.h"

#include <new>

static_assert(sizeof(TviewportRendererChangedMsg) == 48, "clients know the message by its size");

namespace {

Tmetaclass& metaclassOf()
{
    static Tmetaclass metaclass(
        "viewportRendererChangedMsg", sizeof(TviewportRendererChangedMsg), TserverModifiedMsg::sTypeof(),
        []() -> void* { return new TviewportRendererChangedMsg(nullptr, Tstring(), Tstring()); },
        [](void* memory) -> void* { return new (memory) TviewportRendererChangedMsg(nullptr, Tstring(), Tstring()); });
    return metaclass;
}

// Registers the type at library load.
[[maybe_unused]] const Tmetaclass& gRegistered = metaclassOf();

} // namespace

TviewportRendererChangedMsg::TviewportRendererChangedMsg(TclientServer* server, const Tstring& oldRenderer,
                                                         const Tstring& newRenderer)
    : TserverModifiedMsg(server), fOldRenderer(oldRenderer), fNewRenderer(newRenderer)
{
}

Tmetaclass* TviewportRendererChangedMsg::sTypeof()
{
    return &metaclassOf();
}

Tmetaclass* TviewportRendererChangedMsg::typeof() const
{
    return sTypeof();
}

void* TviewportRendererChangedMsg::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : TserverModifiedMsg::cast(metaclass);
}

void* TviewportRendererChangedMsg::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* TviewportRendererChangedMsg::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}
