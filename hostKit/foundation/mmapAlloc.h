#pragma once

#include <cstddef>

/**
 * @p size bytes of zeroed memory straight from the system (mmap), for large temporary blocks; null for 0 or on
 * failure. The system's memory map of the process shows the block under the name @p tag, where the kernel can do so.
 */
void* mmapAlloc(std::size_t size, const char* tag = nullptr);

/** Gives back a block of mmapAlloc with the size it was asked for (munmap); null is ignored. */
void mmapFree(void* memory, std::size_t size);
