#pragma once

// The TinyXML document classes, for hosts that read and write XML: linking lib3dGraphics links them too.

#include <tinyxml.h>
