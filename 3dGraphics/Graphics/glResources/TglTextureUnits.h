#pragma once

#include "Graphics/Export.h"
#include "foundation/Tarray.h"

/** The texture units of the process, each of which a caller can lock for itself. */
class LIRN_3DGRAPHICS_EXPORT TglTextureUnits
{
public:
    TglTextureUnits();
    virtual ~TglTextureUnits();

    /** Fixes the number of units, all unlocked. Works once per process: false when the count is already set. */
    bool setUnitCount(unsigned n);
    unsigned unitCount() const { return fLocks.length(); }

    /** Locks unit @p u; false for a unit that does not exist. */
    bool lockUnit(unsigned u);
    /** Unlocks unit @p u; false for a unit that does not exist. */
    bool unlockUnit(unsigned u);
    /** True for a locked unit and for one that does not exist. */
    bool isUnitLocked(unsigned u) const;

    /**
     * Appends to @p out, in increasing order, every unit whose lock is set. The name notwithstanding these are the
     * locked units; callers rely on it.
     */
    void unlockedUnits(TuInt32Array& out) const;
    /** The number of units whose lock is set, whatever the name says. */
    unsigned unlockedUnitCount() const;

private:
    TuInt8Array fLocks; ///< one flag per unit
};
