#pragma once

#include "Graphics/Export.h"
#include "foundation/TserverModifiedMsg.h"

/** Posted to a port's clients when its widget was shown or hidden. */
class LIRN_3DGRAPHICS_EXPORT TviewportVisibilityChangedMsg : public TserverModifiedMsg
{
public:
    TviewportVisibilityChangedMsg(TclientServer* server, bool visible);

    static Tmetaclass* sTypeof();
    Tmetaclass* typeof() const override;
    void* cast(Tmetaclass* metaclass) override;
    /** A new message of @p metaclass; null for a null metaclass or one that is not of this type. */
    static void* construct(Tmetaclass* metaclass);
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);

    bool isVisible() const { return fVisible; }

private:
    bool fVisible;
};
