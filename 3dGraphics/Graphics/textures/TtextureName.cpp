#include "Graphics/textures/TtextureName.h"

#include "QtExtensions/Q3dPort.h"

TtextureName::TtextureName()
{
    if (Q3dPort::ensureContext())
        glGenTextures(1, &fName);
}

TtextureName::~TtextureName()
{
    deleteTexture();
}

void TtextureName::deleteTexture()
{
    // The last holder may go when no port is left, and the textures are gone with the last context.
    if (fName != 0 && Q3dPort::ensureContext())
        glDeleteTextures(1, &fName);
    fName = 0;
}
