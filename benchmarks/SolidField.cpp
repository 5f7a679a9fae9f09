#include "SolidField.h"

#include <random>

SolidField::SolidField(int count)
{
    // The raw generator: the same numbers with every standard library.
    std::mt19937 random;
    const auto between = [&random](double low, double high) { return low + (high - low) * random() / 0xffffffffu; };
    for (int i = 0; i < count; ++i) {
        Solid solid;
        solid.fKind = Tkind(i % kKinds);
        solid.fFilled = i / kKinds % 2 != 0;
        solid.fCentre = T4dDblPoint{between(-1, 1), between(-1, 1), between(-1, 1), 1};
        solid.fSize = float(between(0.01, 0.03));
        const bool hasHeight = solid.fKind == kBox || solid.fKind == kCone || solid.fKind == kCylinder;
        solid.fHeight = hasHeight ? float(between(0.01, 0.03)) : solid.fSize;
        fSolids.push_back(solid);
    }
}

void SolidField::compile()
{
    // A port without a widget draws into any context, and while a list is open it sends a solid that it has no list of.
    T3dPort port(nullptr, "geometry", false);
    fFirstList = glGenLists(2 * kKinds);
    for (const bool filled : {false, true}) {
        const auto compileOne = [this, filled](Tkind kind, auto draw) {
            glNewList(fFirstList + listOffset(kind, filled), GL_COMPILE);
            draw();
            glEndList();
        };
        compileOne(kBox, [&] { port.box(filled); });
        compileOne(kCone, [&] { port.cone(filled); });
        compileOne(kSphere, [&] { port.sphere(filled); });
        compileOne(kCylinder, [&] { port.cylinder(filled, true); });
        compileOne(kOctahedron, [&] { port.octahedron(filled); });
        compileOne(kTetrahedron, [&] { port.tetrahedron(filled); });
    }
}

void SolidField::draw(T3dPort& port) const
{
    for (const Solid& s : fSolids) {
        switch (s.fKind) {
        case kBox:
            port.box(s.fCentre, s.fSize, s.fSize, s.fHeight, s.fFilled);
            break;
        case kCone:
            port.cone(s.fCentre, s.fSize, s.fHeight, s.fFilled);
            break;
        case kSphere:
            port.sphere(s.fCentre, s.fSize, s.fFilled);
            break;
        case kCylinder:
            port.cylinder(s.fCentre, s.fSize, s.fHeight, s.fFilled, true);
            break;
        case kOctahedron:
            port.octahedron(s.fCentre, s.fSize, s.fFilled);
            break;
        default:
            port.tetrahedron(s.fCentre, s.fSize, s.fFilled);
        }
    }
}

void SolidField::drawRaw() const
{
    for (const Solid& s : fSolids) {
        glPushMatrix();
        glTranslated(s.fCentre.x, s.fCentre.y, s.fCentre.z);
        glScalef(s.fSize, s.fSize, s.fHeight);
        glCallList(fFirstList + listOffset(s.fKind, s.fFilled));
        glPopMatrix();
    }
}
