// Pixel transfer and backing store.

#include "Graphics/3dPort/T3dPort.h"

#include "foundation/TsharedObject.h"

void T3dPort::discardBackingStore()
{
    if (fBackingStore && fBackingStore->remove() == 0)
        delete fBackingStore;
    fBackingStore = nullptr;
    fBackingSaved = false;
}
