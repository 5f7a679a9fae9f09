#pragma once

#include "Graphics/textures/TelementArray.h"

class TglTextureObject;

/** Texture objects that the array does not own. */
class TglTextureObjectPtrArray : public TelementArray<TglTextureObject*>
{
public:
    /** An empty array with room for @p capacity pointers. */
    explicit TglTextureObjectPtrArray(unsigned capacity) : TelementArray(capacity) {}

    /** Makes element @p index be @p object; places that this adds before it are null. */
    void createAndSet(unsigned index, TglTextureObject* object)
    {
        setLength(std::max(length(), index + 1));
        if (index < length())
            (*this)[index] = object;
    }
    /** Exchanges the contents. */
    void swap(TglTextureObjectPtrArray& other) { std::swap(static_cast<Tarray&>(*this), static_cast<Tarray&>(other)); }

    // A run of the other array, cut to what that has; it may be this array.

    void copy(const TglTextureObjectPtrArray& other) { copy(other, 0, other.length()); }
    void copy(const TglTextureObjectPtrArray& other, unsigned count) { copy(other, 0, count); }
    void copy(const TglTextureObjectPtrArray& other, unsigned start, unsigned count)
    {
        TglTextureObjectPtrArray run(0);
        run.catenate(other, start, count);
        swap(run);
    }
    void catenate(const TglTextureObjectPtrArray& other) { catenate(other, 0, other.length()); }
    void catenate(const TglTextureObjectPtrArray& other, unsigned count) { catenate(other, 0, count); }
    void catenate(const TglTextureObjectPtrArray& other, unsigned start, unsigned count)
    {
        if (start < other.length())
            addLast(other.data() + start, std::min(count, other.length() - start));
    }
};
