#pragma once

// GLX and Xlib without the macros that collide with Qt's and the standard library's names. Include Qt headers first.

#include <GL/glx.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#undef Bool
#undef CursorShape
#undef Expose
#undef False
#undef FocusIn
#undef FocusOut
#undef FontChange
#undef KeyPress
#undef KeyRelease
#undef None
#undef Status
#undef True
#undef Unsorted

namespace QlirnX11 {

constexpr XID kNone = 0;
constexpr int kTrue = 1;

} // namespace QlirnX11
