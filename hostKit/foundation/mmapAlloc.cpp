#include "foundation/mmapAlloc.h"

#include <sys/mman.h>

void* mmapAlloc(std::size_t size)
{
    if (size == 0)
        return nullptr;
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

void mmapFree(void* memory, std::size_t size)
{
    if (memory)
        munmap(memory, size);
}
