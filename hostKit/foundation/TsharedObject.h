#pragma once

#include "foundation/TmtRefCounter.h"

/**
 * Base of objects with a reference count, held by TcountedPtr. The count never deletes: who takes away the last
 * reference deletes the object. A copy is a new object that nobody counts yet.
 */
class TsharedObject
{
public:
    TsharedObject() = default;
    TsharedObject(const TsharedObject&) {}
    TsharedObject& operator=(const TsharedObject&) { return *this; }
    virtual ~TsharedObject();

    /** Counts one holder more; returns the new count. */
    int add() const { return fCounter.add(); }
    /** Counts one holder less; returns the count left, at 0 the caller deletes the object. */
    int remove() const { return fCounter.remove(); }

    /** True with at least one counted holder. */
    bool isCounted() const { return fCounter.count() > 0; }
    /** True with two counted holders or more. */
    bool isShared() const { return fCounter.count() > 1; }

private:
    mutable TmtRefCounter fCounter;
};
