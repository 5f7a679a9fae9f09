#include "commandEngine/TdeleteUICmd.h"

#include "commandEngine/TfailedException.h"
#include "commandEngine/TiceControlBaseCmd.h"
#include "commandEngine/TmetaCommandActionRegistration.h"
#include "ui/TUIInventory.h"

#include <QWidget>

namespace {

TmetaCommandActionRegistration<TdeleteUICmd> gDeleteUICmd("deleteUI");

} // namespace

bool TdeleteUICmd::appendSyntax()
{
    flags().setMaxObjects(~0u);
    return TiceBaseCmd::appendSyntax();
}

int TdeleteUICmd::doIt()
{
    std::vector<QWidget*> widgets;
    for (const Tstring& name : args().objects()) {
        widgets.push_back(gUIInventory->find(name.asChar(), nullptr, true, false));
        if (!widgets.back())
            throw TfailedException(Tstring::tFormat("Control '^1s' not found.", name));
    }
    if (widgets.empty())
        throw TfailedException("The name of a control is missing.");
    for (QWidget* widget : widgets) {
        // What is in it goes with it, and must not be found, or taken as a parent, until then.
        gUIInventory->removeWidget(widget);
        for (const QWidget* child : widget->findChildren<QWidget*>())
            gUIInventory->removeWidget(child);
        QWidget* parent = TiceControlBaseCmd::defaultParent();
        if (widget == parent || (parent && widget->isAncestorOf(parent)))
            TiceControlBaseCmd::setDefaultParent(nullptr);
        // The control's own script may be what deletes it, and then the control is in the middle of an event.
        widget->hide();
        widget->deleteLater();
    }
    return 1;
}
