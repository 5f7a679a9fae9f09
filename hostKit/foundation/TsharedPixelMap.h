#pragma once

#include "foundation/Tarray.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TpixelMap.h"
#include "foundation/TsharedObject.h"

/** Holds one counted reference to a pixel map. Copies of the handle share the map. */
class TsharedPixelMap
{
public:
    /** No map. */
    TsharedPixelMap() = default;
    /** A map of its own of @p width by @p height pixels; no map for a size that cannot be had. */
    TsharedPixelMap(int width, int height) : fMap(new Tcounted)
    {
        if (!fMap->setSize(width, height))
            fMap.reset();
    }

    bool isNull() const { return !fMap; }
    bool isShared() const { return fMap && fMap->isShared(); }
    /** The map; null without one. */
    TpixelMap* map() const { return fMap.get(); }

    friend bool operator==(const TsharedPixelMap& a, const TsharedPixelMap& b) { return a.fMap == b.fMap; }
    friend bool operator!=(const TsharedPixelMap& a, const TsharedPixelMap& b) { return !(a == b); }

private:
    class Tcounted : public TsharedObject, public TpixelMap
    {
    };

    TcountedPtr<Tcounted> fMap;
};

using TsharedPixelMapArray = Tarray<TsharedPixelMap>;
