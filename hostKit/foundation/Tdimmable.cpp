#include "foundation/Tdimmable.h"

Tdimmable::~Tdimmable() = default;

void Tdimmable::dim()
{
    fDimmed = true;
}

void Tdimmable::undim()
{
    fDimmed = false;
}
