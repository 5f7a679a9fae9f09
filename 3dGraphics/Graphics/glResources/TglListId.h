#pragma once

#include "Graphics/Export.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TsharedObject.h"

#include <GL/gl.h>

#include <cstddef>

/**
 * A counted block of consecutive OpenGL display-list names; the last holder deletes the lists.
 *
 * The objects themselves are recycled: up to 32 freed ones are kept for the next.
 */
class LIRN_3DGRAPHICS_EXPORT TglListId : public TsharedObject
{
public:
    /** Reserves @p count consecutive names in the current context's share group (glGenLists). */
    explicit TglListId(GLsizei count);
    /** A list to compile into. Null while the current context compiles one, for lists do not nest, and without a name. */
    static TcountedPtr<TglListId> toCompile();
    /** Deletes the lists (glDeleteLists), if any context that has them is left. */
    ~TglListId() override;

    TglListId(const TglListId&) = delete;
    TglListId& operator=(const TglListId&) = delete;

    /** The first name of the block; 0 when OpenGL had none to give. */
    GLuint first() const { return fFirst; }
    GLsizei count() const { return fCount; }

    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);

private:
    GLuint fFirst = 0;
    GLsizei fCount = 0;
};
