#pragma once

#include "foundation/Tstring.h"

/** Texts of the drawing port that a program may put in its own language. */
namespace s_T3dPortStrings {

extern Tstring rOpenGLErr; ///< ^1s is the error's number, ^2s what it says

} // namespace s_T3dPortStrings
