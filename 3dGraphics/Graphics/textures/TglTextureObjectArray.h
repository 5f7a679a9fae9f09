#pragma once

#include "Graphics/Export.h"
#include "Graphics/textures/TelementArray.h"
#include "Graphics/textures/TglTextureObject.h"

/**
 * Texture objects by value. Elements move by assignment, which leaves scale and bias with the place, not with the
 * texture; when the array needs more memory they are copied into it, which leaves updaters behind.
 */
class LIRN_3DGRAPHICS_EXPORT TglTextureObjectArray : public TelementArray<TglTextureObject>
{
public:
    using TelementArray::TelementArray;

    /** Makes the elements from @p first up to but not including @p last new ones, as many as are missing at the end
     * too. */
    void construct(unsigned first, unsigned last);
    /** Destroys the elements from @p first up to but not including @p last; those after them move down. */
    void destruct(unsigned first, unsigned last);
    /** Destroys the @p count texture objects in @p memory. */
    static void destroy(char* memory, unsigned count);
    /** Copy-constructs, in the memory @p to, the @p count texture objects in @p from. */
    static void initialize(char* to, char* from, unsigned count);
};
