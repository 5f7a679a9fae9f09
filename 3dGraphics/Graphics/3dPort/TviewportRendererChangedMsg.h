#pragma once

#include "Graphics/Export.h"
#include "foundation/TserverModifiedMsg.h"
#include "foundation/Tstring.h"

/** Posted to a port's clients when another renderer draws it from now on. */
class LIRN_3DGRAPHICS_EXPORT TviewportRendererChangedMsg : public TserverModifiedMsg
{
public:
    TviewportRendererChangedMsg(TclientServer* server, const Tstring& oldRenderer, const Tstring& newRenderer);

    static Tmetaclass* sTypeof();
    Tmetaclass* typeof() const override;
    void* cast(Tmetaclass* metaclass) override;
    /** A new message of @p metaclass; null for a null metaclass or one that is not of this type. */
    static void* construct(Tmetaclass* metaclass);
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);

    const Tstring& oldRenderer() const { return fOldRenderer; }
    const Tstring& newRenderer() const { return fNewRenderer; }

private:
    Tstring fOldRenderer;
    Tstring fNewRenderer;
};
