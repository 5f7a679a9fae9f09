#pragma once

#include "Graphics/textures/TelementArray.h"
#include "Graphics/textures/TtextureName.h"

#include <cstring>

/** The names of a texture object. Plain pointers: who owns the array counts the names. */
class TtextureNamePtrArray : public TelementArray<TtextureName*>
{
public:
    TtextureNamePtrArray() : TelementArray(8) {}

    // What the host's arrays do with elements. Pointers need no construction.

    void construct(unsigned, unsigned) {}
    void destruct(unsigned, unsigned) {}
    void destroy(char*, unsigned) {}
    /** Copies @p count pointers from the memory @p from to @p to. */
    void initialize(char* to, char* from, unsigned count)
    {
        if (to && from && count > 0)
            std::memmove(to, from, std::size_t(count) * sizeof(TtextureName*));
    }
};
