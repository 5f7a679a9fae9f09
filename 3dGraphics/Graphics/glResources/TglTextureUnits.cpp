#include "Graphics/glResources/TglTextureUnits.h"

#include <algorithm>

TglTextureUnits::TglTextureUnits() : fLocks(8) {}

TglTextureUnits::~TglTextureUnits() = default;

bool TglTextureUnits::setUnitCount(unsigned n)
{
    if (unitCount() != 0)
        return false;
    fLocks.setLength(n);
    return true;
}

bool TglTextureUnits::lockUnit(unsigned u)
{
    if (u >= unitCount())
        return false;
    fLocks[u] = 1;
    return true;
}

bool TglTextureUnits::unlockUnit(unsigned u)
{
    if (u >= unitCount())
        return false;
    fLocks[u] = 0;
    return true;
}

bool TglTextureUnits::isUnitLocked(unsigned u) const
{
    return u >= unitCount() || fLocks[u] != 0;
}

void TglTextureUnits::unlockedUnits(TuInt32Array& out) const
{
    for (unsigned u = 0; u < unitCount(); ++u)
        if (fLocks[u] != 0)
            out.append(u);
}

unsigned TglTextureUnits::unlockedUnitCount() const
{
    return static_cast<unsigned>(std::count_if(fLocks.begin(), fLocks.end(), [](auto lock) { return lock != 0; }));
}
