#pragma once

#include "Graphics/Export.h"
#include "foundation/TsharedObject.h"

class TglTextureObject;

/** Brings a texture up to date when it is used next after TglTextureObject::changed. Clients derive from it. */
class LIRN_3DGRAPHICS_EXPORT TglTexObjUpdater : public TsharedObject
{
public:
    TglTexObjUpdater();
    ~TglTexObjUpdater() override;

    /**
     * Uploads a part of @p texture again, which is bound (glTexSubImage2D). The rectangle is in texels and aligned to
     * 32 of them, so that it may reach past the image by up to 31; it may be empty.
     * @param reserved  always 0
     */
    virtual void update(const TglTextureObject& texture, int x, int y, int width, int height, unsigned reserved) = 0;
};
