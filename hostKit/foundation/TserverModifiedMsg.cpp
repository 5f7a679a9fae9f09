#include "foundation/TserverModifiedMsg.h"

#include "foundation/Tmetaclass.h"

#include <new>

TserverModifiedMsg::~TserverModifiedMsg() = default;

Tmetaclass* TserverModifiedMsg::sTypeof()
{
    static Tmetaclass metaclass(
        "serverModifiedMsg", sizeof(TserverModifiedMsg), nullptr, []() -> void* { return new TserverModifiedMsg; },
        [](void* memory) -> void* { return new (memory) TserverModifiedMsg; });
    return &metaclass;
}

namespace {

[[maybe_unused]] const Tmetaclass* const kRegistered = TserverModifiedMsg::sTypeof();

} // namespace

Tmetaclass* TserverModifiedMsg::typeof() const
{
    return sTypeof();
}

void* TserverModifiedMsg::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : nullptr;
}

void* TserverModifiedMsg::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* TserverModifiedMsg::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}
