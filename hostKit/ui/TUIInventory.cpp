#include "ui/TUIInventory.h"

#include "foundation/TerrorHandler.h"

#include <algorithm>
#include <cstring>

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
    const auto entry =
        std::find_if(fControls.begin(), fControls.end(), [control](const auto& each) { return each.first == control; });
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

bool TUIInventory::addWidget(QWidget* widget)
{
    if (!widget || widget->objectName().isEmpty() ||
        find(widget->objectName().toUtf8().constData(), nullptr, true, false)) {
        return false;
    }
    fWidgets.erase(std::remove(fWidgets.begin(), fWidgets.end(), nullptr), fWidgets.end());
    fWidgets.emplace_back(widget);
    return true;
}

void TUIInventory::removeWidget(const QWidget* widget)
{
    fWidgets.erase(std::remove_if(fWidgets.begin(), fWidgets.end(),
                                  [widget](const auto& each) { return each.isNull() || each == widget; }),
                   fWidgets.end());
}

QWidget* TUIInventory::find(const char* name, const char* className, bool derived, bool report) const
{
    const QString wanted = QString::fromUtf8(name);
    for (const auto& widget : fWidgets) {
        if (!widget || widget->objectName() != wanted) {
            continue;
        }
        if (!className ||
            (derived ? widget->inherits(className) : std::strcmp(widget->metaObject()->className(), className) == 0)) {
            return widget;
        }
    }
    if (report) {
        TerrorHandler::report(TerrorHandler::kError, Tstring::tFormat("No control is named '^1s'.", Tstring(name)));
    }
    return nullptr;
}
