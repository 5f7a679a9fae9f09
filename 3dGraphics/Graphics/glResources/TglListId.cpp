#include "Graphics/glResources/TglListId.h"

#include "QtExtensions/Q3dPort.h"

#include <new>

namespace {

constexpr int kPoolSize = 32;

/** Freed blocks, the youngest last. */
struct Pool
{
    void* fBlocks[kPoolSize];
    int fCount = 0;
};

Pool* gPool = nullptr;

} // namespace

TglListId::TglListId(GLsizei count) : fFirst(count > 0 ? glGenLists(count) : 0), fCount(count) {}

TcountedPtr<TglListId> TglListId::toCompile()
{
    GLint open = 0;
    glGetIntegerv(GL_LIST_INDEX, &open);
    TcountedPtr<TglListId> made;
    if (open == 0)
        made.reset(new TglListId(1));
    if (made && made->first() == 0)
        made.reset();
    return made;
}

TglListId::~TglListId()
{
    // The last holder may be a static object that goes when no context is left.
    if (fFirst != 0 && Q3dPort::ensureContext())
        glDeleteLists(fFirst, fCount);
}

void* TglListId::operator new(std::size_t size)
{
    if (size == sizeof(TglListId) && gPool && gPool->fCount > 0)
        return gPool->fBlocks[--gPool->fCount];
    return ::operator new(size);
}

void TglListId::operator delete(void* block, std::size_t size)
{
    if (!block)
        return;
    if (!gPool)
        gPool = new (std::nothrow) Pool;
    if (size == sizeof(TglListId) && gPool && gPool->fCount < kPoolSize)
        gPool->fBlocks[gPool->fCount++] = block;
    else
        ::operator delete(block);
}
