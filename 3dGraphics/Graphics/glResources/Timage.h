#pragma once

#include "foundation/TportRect.h"

#include <cstdlib>

/** A rectangle and the pixels of it, which it owns (malloc). */
class Timage : public TportRect
{
public:
    Timage() = default;
    ~Timage()
    {
        std::free(fPixels);
        fPixels = nullptr;
    }
    Timage(const Timage&) = delete;
    Timage& operator=(const Timage&) = delete;

    void* fPixels = nullptr;
};
