#pragma once

#include <GL/gl.h>

/** Saves groups of OpenGL state around code that changes them behind a port's record (glPushAttrib). */
class TsavedState
{
public:
    explicit TsavedState(GLbitfield groups) { glPushAttrib(groups); }
    ~TsavedState() { glPopAttrib(); }
    TsavedState(const TsavedState&) = delete;
    TsavedState& operator=(const TsavedState&) = delete;
};
