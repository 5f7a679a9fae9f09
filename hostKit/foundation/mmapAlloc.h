#pragma once

#include <cstddef>

/**
 * @p size bytes of zeroed memory straight from the system (mmap), for large temporary blocks; null for 0 or on
 * failure.
 */
void* mmapAlloc(std::size_t size);

/** Gives back a block of mmapAlloc with the size it was asked for (munmap); null is ignored. */
void mmapFree(void* memory, std::size_t size);
