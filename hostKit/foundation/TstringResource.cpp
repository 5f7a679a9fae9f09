#include "foundation/TstringResource.h"

Tstring s_T3dPortStrings::rOpenGLErr("OpenGL error ^1s: ^2s");
