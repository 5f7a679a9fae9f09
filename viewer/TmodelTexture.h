#pragma once

#include "Graphics/textures/TglTextureObject.h"
#include "foundation/TpixelMap.h"

#include <QString>

/** A picture on a model: the pixels, which can be painted on, and the texture that shows them. */
class TmodelTexture
{
public:
    enum Tfilter { kNearest, kLinear, kMipmapped };

    /** Reads an image file. Returns what is wrong, without a full stop; empty when nothing is. */
    QString load(const QString& path);
    /** A board of squares, to paint on where there is no picture. */
    void makeBoard();
    bool isEmpty() const { return !fPixels.pixels(); }

    int width() const { return fPixels.width(); }
    int height() const { return fPixels.height(); }

    Tfilter filter() const { return fFilter; }
    void setFilter(Tfilter filter);

    /** Paints a round dab at a place in texture space, where it repeats; @p radius in texels. */
    void dab(double u, double v, double radius, const TportColor& color);

    /** Binds the texture, after it was brought up to date. */
    void apply(T3dPort& port);

private:
    void upload();
    void take(int width, int height, const unsigned char* topRow, int bytesPerLine);

    TpixelMap fPixels;
    TglTextureObject fTexture;
    Tfilter fFilter = kMipmapped;
    bool fUploaded = false;
};
