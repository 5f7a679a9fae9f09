#include "Graphics/textures/TglTextureObject.h"

#include <cstddef>

namespace {

// Compilers make vectors of this loop, but need instructions for it that not every processor of the kind has.
#ifdef __x86_64__
__attribute__((target_clones("avx2", "ssse3", "default")))
#endif
void copyThreeOfFour(std::size_t count, const unsigned char* from, unsigned char* to)
{
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            to[3 * i + k] = from[4 * i + k];
}

} // namespace

bool TglTextureObject::stripAlphaChannel(unsigned count, const unsigned* source, unsigned char* destination)
{
    if (count == 0 || !source || !destination)
        return false;
    copyThreeOfFour(count, reinterpret_cast<const unsigned char*>(source), destination);
    return true;
}
