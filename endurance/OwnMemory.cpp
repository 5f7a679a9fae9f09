#include "OwnMemory.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <link.h>
#include <new>

namespace {

std::atomic<long> gBytes{0};
std::atomic<long> gBlocks{0};

} // namespace

long OwnMemory::bytes()
{
    return gBytes;
}

long OwnMemory::blocks()
{
    return gBlocks;
}

#ifndef __SANITIZE_ADDRESS__

namespace {

struct alignas(std::max_align_t) Theader
{
    std::size_t fSize;
    bool fIsOwn;
};

struct Trange
{
    std::uintptr_t fFirst = 0;
    std::uintptr_t fEnd = 0;
};

struct Tmodules
{
    std::array<Trange, 32> fOwn;
    std::size_t fCount = 0;
};

bool isOwn(const char* path)
{
    const char* const slash = std::strrchr(path, '/');
    const char* const name = slash ? slash + 1 : path;
    for (const char* beginning : {"lib3dGraphics", "libhost"})
        if (std::strncmp(name, beginning, std::strlen(beginning)) == 0)
            return true;
    return false;
}

int noteModule(dl_phdr_info* info, std::size_t, void* data)
{
    auto& modules = *static_cast<Tmodules*>(data);
    if (!isOwn(info->dlpi_name))
        return 0;
    for (int i = 0; i < info->dlpi_phnum && modules.fCount < modules.fOwn.size(); ++i) {
        const auto& segment = info->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            const std::uintptr_t first = info->dlpi_addr + segment.p_vaddr;
            modules.fOwn[modules.fCount++] = {first, first + segment.p_memsz};
        }
    }
    return 0;
}

/** Those that the program is linked with; plug-ins come later and are not looked for. */
const Tmodules& modules()
{
    static const Tmodules found = [] {
        Tmodules made;
        dl_iterate_phdr(noteModule, &made);
        return made;
    }();
    return found;
}

void* allocate(std::size_t size, const void* caller)
{
    auto* header = static_cast<Theader*>(std::malloc(sizeof(Theader) + size));
    if (!header)
        return nullptr;
    const auto at = reinterpret_cast<std::uintptr_t>(caller);
    const Tmodules& known = modules();
    bool own = false;
    for (std::size_t i = 0; i < known.fCount && !own; ++i)
        own = at >= known.fOwn[i].fFirst && at < known.fOwn[i].fEnd;
    header->fSize = size;
    header->fIsOwn = own;
    if (own) {
        gBytes += static_cast<long>(size);
        ++gBlocks;
    }
    return header + 1;
}

void release(void* block)
{
    if (!block)
        return;
    Theader* const header = static_cast<Theader*>(block) - 1;
    if (header->fIsOwn) {
        gBytes -= static_cast<long>(header->fSize);
        --gBlocks;
    }
    std::free(header);
}

} // namespace

// The forms without exceptions that the standard library has call these; those for greater alignments go by themselves.

void* operator new(std::size_t size)
{
    void* const block = allocate(size, __builtin_return_address(0));
    if (!block)
        throw std::bad_alloc();
    return block;
}

void* operator new[](std::size_t size)
{
    void* const block = allocate(size, __builtin_return_address(0));
    if (!block)
        throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept
{
    release(block);
}

void operator delete[](void* block) noexcept
{
    release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

#endif
