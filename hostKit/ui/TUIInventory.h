#pragma once

#include "foundation/Tstring.h"

#include <utility>
#include <vector>

class Tcontrol;

/**
 * The controls of a program by name. It owns none of them: a control leaves by itself when it is destroyed. For the
 * thread of the user interface.
 */
class TUIInventory
{
public:
    /**
     * Enters a control; one that is already in gets the new name.
     * @return false for a null control. A null name is an empty one.
     */
    bool add(Tcontrol* control, const char* name);

    /** Takes a control out without deleting it; one that is not in, or null, is ignored. */
    void remove(Tcontrol* control);

    /** The control of the name that was entered first; null when there is none. */
    Tcontrol* find(const char* name) const;

    bool contains(const Tcontrol* control) const;

    /** Number of controls. */
    unsigned count() const { return static_cast<unsigned>(fControls.size()); }

private:
    std::vector<std::pair<Tcontrol*, Tstring>> fControls;
};

/** The program's inventory, never null. It stays until the process ends. */
extern TUIInventory* gUIInventory;
