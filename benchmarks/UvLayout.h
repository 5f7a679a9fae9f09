#pragma once

#include "Graphics/interaction/TuvCache.h"

/** Quads in a grid that fills the square from -1 to 1, each with four corners of its own. */
class UvLayout
{
public:
    /** @p side by @p side quads. */
    explicit UvLayout(int side);

    void draw(T3dPort& port) const { fCache.draw(port); }
    /** Draws the same in immediate mode, in the context that is bound. */
    void drawRaw() const;

private:
    T2FloatArray fCorners;
    TuInt32Array fIndices;
    TuvCache fCache;
};
