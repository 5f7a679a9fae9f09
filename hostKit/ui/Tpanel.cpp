#include "ui/Tpanel.h"

#include "ui/TpanelManager.h"

Tpanel::Tpanel(QWidget* widget, const char* name) : QObject(widget), fWidget(widget), fName(name)
{
    gThePanelManager->fPanels.append(this);
}

Tpanel::~Tpanel()
{
    gThePanelManager->fPanels.removeItem(this);
    if (hasFocus())
        gThePanelManager->changeFocus(nullptr);
}

bool Tpanel::hasFocus() const
{
    return gThePanelManager->focusPanel() == this;
}

void Tpanel::pressNotify()
{
    gThePanelManager->setFocusPanel(this);
}
