#pragma once

#include "Graphics/3dPort/T3dPort.h"

#include <vector>

/** Solids of every kind, wire and filled, in their own positions in a cube of edge 2 about the origin. */
class SolidField
{
public:
    explicit SolidField(int count);

    /** Compiles raw lists of the very geometry that ports draw; to be called in a bound context, before any port draws.
     */
    void compile();

    /** Draws by the port's positioned forms. */
    void draw(T3dPort& port) const;
    /** Draws what compile has compiled, in a context that has it. */
    void drawRaw() const;

private:
    enum Tkind { kBox, kCone, kSphere, kCylinder, kOctahedron, kTetrahedron, kKinds };

    struct Solid
    {
        Tkind fKind = kBox;
        bool fFilled = false;
        T4dDblPoint fCentre;
        float fSize = 0;
        float fHeight = 0;
    };

    static GLuint listOffset(Tkind kind, bool filled) { return 2 * GLuint(kind) + filled; }

    std::vector<Solid> fSolids;
    GLuint fFirstList = 0;
};
