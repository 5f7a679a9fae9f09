// Pixel transfer and backing store.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/glResources/TglPixels.h"

void T3dPort::discardBackingStore()
{
    fBackingStore.reset();
    fBackingSaved = false;
}
