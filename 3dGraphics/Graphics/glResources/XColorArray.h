#pragma once

#include "foundation/Tarray.h"

#include "QtExtensions/QlirnX11.h"

/** Colour cells as XStoreColors takes them. */
class XColorArray : public Tarray<XColor>
{
public:
    using Tarray<XColor>::Tarray;
};
