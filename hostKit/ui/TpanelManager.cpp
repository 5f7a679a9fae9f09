#include "ui/TpanelManager.h"

#include "foundation/TserverModifiedMsg.h"
#include "ui/Tpanel.h"

#include <algorithm>

// Never deleted: widgets may go as late as at the end of the process.
TpanelManager* gThePanelManager = new TpanelManager;

Tpanel* TpanelManager::panel(QWidget* widget, bool enclosing) const
{
    for (; widget; widget = enclosing ? widget->parentWidget() : nullptr) {
        const auto found =
            std::find_if(fPanels.begin(), fPanels.end(), [&](const Tpanel* each) { return each->widget() == widget; });
        if (found != fPanels.end())
            return *found;
    }
    return nullptr;
}

Tpanel* TpanelManager::panel(const char* name) const
{
    const auto found =
        std::find_if(fPanels.begin(), fPanels.end(), [&](const Tpanel* each) { return name && each->name() == name; });
    return found == fPanels.end() ? nullptr : *found;
}

void TpanelManager::setFocusPanel(Tpanel* panel)
{
    if (panel != fFocusPanel && (!panel || fPanels.find(panel) >= 0))
        changeFocus(panel);
}

void TpanelManager::changeFocus(Tpanel* panel)
{
    fFocusPanel = panel;
    notify(TserverModifiedMsg(this));
}
