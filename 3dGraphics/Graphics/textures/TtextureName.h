#pragma once

#include "Graphics/Export.h"
#include "foundation/TsharedObject.h"

#include <GL/gl.h>

/** A counted OpenGL texture name. The texture goes with its last holder. */
class LIRN_3DGRAPHICS_EXPORT TtextureName : public TsharedObject
{
public:
    /** A new name of the current context's share group (glGenTextures), counted by nobody; name() is 0 without one. */
    TtextureName();
    /** Takes the name of @p other without sharing its count: whichever goes first takes the texture along. */
    TtextureName(const TtextureName& other) = default;
    /** Takes the name of @p other. The name before is not deleted. */
    TtextureName& operator=(const TtextureName& other) = default;
    /** Deletes the texture, if any context that has it is left. */
    ~TtextureName() override;

    GLuint name() const { return fName; }
    /** Deletes the texture now (glDeleteTextures); the name is 0 from then on. */
    void deleteTexture();

    friend bool operator==(const TtextureName& a, const TtextureName& b) { return a.fName == b.fName; }
    friend bool operator!=(const TtextureName& a, const TtextureName& b) { return a.fName != b.fName; }

private:
    GLuint fName = 0;
};
