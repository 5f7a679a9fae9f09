#include "foundation/mmapAlloc.h"

#include <sys/mman.h>
#include <sys/prctl.h>

void* mmapAlloc(std::size_t size, const char* tag)
{
    if (size == 0)
        return nullptr;
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return nullptr;
#ifdef PR_SET_VMA
    if (tag)
        prctl(PR_SET_VMA, PR_SET_VMA_ANON_NAME, memory, size, tag);
#else
    static_cast<void>(tag);
#endif
    return memory;
}

void mmapFree(void* memory, std::size_t size)
{
    if (memory)
        munmap(memory, size);
}
