#include "Graphics/textures/TglTextureObjectArray.h"

#include <memory>
#include <new>

void TglTextureObjectArray::construct(unsigned first, unsigned last)
{
    if (first >= last || first > length())
        return;
    for (unsigned i = first; i < last && i < length(); ++i) {
        TglTextureObject& element = (*this)[i];
        std::destroy_at(&element);
        new (&element) TglTextureObject;
    }
    if (last > length())
        setLength(last);
}

void TglTextureObjectArray::destruct(unsigned first, unsigned last)
{
    last = std::min(last, length());
    if (first >= last)
        return;
    shuffle(first, 0, last - first);
    setLength(length() - (last - first));
}

void TglTextureObjectArray::destroy(char* memory, unsigned count)
{
    if (memory)
        std::destroy_n(reinterpret_cast<TglTextureObject*>(memory), count);
}

void TglTextureObjectArray::initialize(char* to, char* from, unsigned count)
{
    if (to && from)
        std::uninitialized_copy_n(reinterpret_cast<const TglTextureObject*>(from), count,
                                  reinterpret_cast<TglTextureObject*>(to));
}
