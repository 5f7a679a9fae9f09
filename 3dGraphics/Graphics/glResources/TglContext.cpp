#include "Graphics/glResources/TglContext.h"

#include "Graphics/glResources/TglColorTable.h"

TglTextureUnits TglContext::fsTextureUnits;

namespace {

constexpr std::uint32_t kCodeCount = 18;

// A row per context type: the buffers and options that getContextType was asked for when it gave that code.
constexpr std::uint32_t kCapabilities[kCodeCount] = {
    /* 0 */ 0x10,
    /* 1 */ 0,
    /* 2 */ 0x8 | 0x10,
    /* 3 */ 0x8,
    /* 4 */ 0,
    /* 5 */ 0,
    /* 6 */ 0x8 | 0x20,
    /* 7 */ 0x8 | 0x20 | 0x40,
    /* 8 */ 0x10,
    /* 9 */ 0x10,
    /* 10 */ 0x8 | 0x10 | 0x20,
    /* 11 */ 0x8 | 0x10 | 0x20 | 0x40,
    /* 12 */ 0x8 | 0x10 | 0x40,
    /* 13 */ 0x8 | 0x10 | 0x40 | 0x80,
    /* 14 */ 0x8 | 0x10 | 0x20 | 0x40 | 0x80,
    /* 15 */ 0x8 | 0x10 | 0x20 | 0x80,
    /* 16 */ 0x8 | 0x10 | 0x80,
    /* 17 */ 0x8 | 0x10 | 0x40 | 0x100,
};

} // namespace

TglContext::TglContext(TcontextType type, bool flag) : fDirtyBits(16), fValidBits(6)
{
    fValidBits.setAll();
    fDirtyBits.assign(kPortFlag15, flag);
    if (type < kCodeCount)
        fDirtyBits.set(kCapabilities[type]);
    if (type == 8 || type == 9)
        fIndexBufferCount = static_cast<std::uint16_t>(type - 7);
}

TglContext::~TglContext() = default;

void TglContext::colorIndex(TglColorTable* table, short index)
{
    if (!table)
        return;
    fColorIndex = index;
    fHardwareIndex = table->hardwareIndex(index);
    fColor = table->colorRGB(index);
    fColorDisturbed = false;
    glColor3fv(&fColor.r);
}

void TglContext::setIndexBuffer(TindexBuffer buffer, int mask)
{
    const auto wanted = static_cast<std::uint32_t>(mask);
    if (wanted == fIndexWriteMask)
        return;
    glIndexMask(wanted);
    fIndexBuffer = buffer;
    fIndexWriteMask = wanted;
    fHardwareIndex = kUnknownIndex;
    fColorIndex = 0;
    fColor = kCtransparent;
}
