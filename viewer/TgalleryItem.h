#pragma once

#include <vector>

class T3dPort;

/** One picture of the gallery: what is drawn, and how it is looked at. */
struct TgalleryItem
{
    enum Tlook {
        kFlat,    ///< the z = 0 plane, 3 units high, without light
        kStipple, ///< as kFlat, pixel by pixel
        kWire,    ///< from above and aside, z up, without light
        kLit      ///< the same with a headlight and a material
    };

    const char* fSection;
    const char* fName; ///< of the file, without ".png"
    Tlook fLook;
    void (*fDraw)(T3dPort& port);

    /** All of them, section by section. */
    static const std::vector<TgalleryItem>& all();
};
