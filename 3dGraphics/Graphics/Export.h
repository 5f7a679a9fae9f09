#pragma once

/** Marks what lib3dGraphics exports, for the library and its users alike; everything else in it is hidden. */
#define LIRN_3DGRAPHICS_EXPORT __attribute__((visibility("default")))
