#define GL_GLEXT_PROTOTYPES
#include "Graphics/glResources/TglPixelStoreGuard.h"

#include <GL/gl.h>

TglPixelStoreGuard::TglPixelStoreGuard(Tdirection direction)
{
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    const bool pack = direction == kPack;
    glBindBuffer(pack ? GL_PIXEL_PACK_BUFFER : GL_PIXEL_UNPACK_BUFFER, 0);
    glPixelStorei(pack ? GL_PACK_SWAP_BYTES : GL_UNPACK_SWAP_BYTES, GL_FALSE);
    glPixelStorei(pack ? GL_PACK_LSB_FIRST : GL_UNPACK_LSB_FIRST, GL_FALSE);
    glPixelStorei(pack ? GL_PACK_ROW_LENGTH : GL_UNPACK_ROW_LENGTH, 0);
    glPixelStorei(pack ? GL_PACK_SKIP_ROWS : GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(pack ? GL_PACK_SKIP_PIXELS : GL_UNPACK_SKIP_PIXELS, 0);
    glPixelStorei(pack ? GL_PACK_ALIGNMENT : GL_UNPACK_ALIGNMENT, 1);
}

TglPixelStoreGuard::~TglPixelStoreGuard()
{
    glPopClientAttrib();
}
