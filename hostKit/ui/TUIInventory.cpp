#include "ui/TUIInventory.h"

#include <algorithm>

// Never deleted: controls with static storage leave it as late as at the end of the process.
TUIInventory* gUIInventory = new TUIInventory;

bool TUIInventory::add(Tcontrol* control, const char* name)
{
    if (!control) {
        return false;
    }
    for (auto& entry : fControls) {
        if (entry.first == control) {
            entry.second = Tstring(name);
            return true;
        }
    }
    fControls.emplace_back(control, Tstring(name));
    return true;
}

void TUIInventory::remove(Tcontrol* control)
{
    const auto entry = std::find_if(fControls.begin(), fControls.end(),
                                    [control](const auto& each) { return each.first == control; });
    if (entry != fControls.end()) {
        fControls.erase(entry);
    }
}

Tcontrol* TUIInventory::find(const char* name) const
{
    if (!name) {
        return nullptr;
    }
    const Tstring wanted(name);
    for (const auto& entry : fControls) {
        if (entry.second == wanted) {
            return entry.first;
        }
    }
    return nullptr;
}

bool TUIInventory::contains(const Tcontrol* control) const
{
    return std::any_of(fControls.begin(), fControls.end(),
                       [control](const auto& each) { return each.first == control; });
}
