#include "Commands/imageCmds/TiceStaticImageCmd.h"

#include "commandEngine/TfailedException.h"
#include "commandEngine/TmetaCommandActionRegistration.h"
#include "commandEngine/commandFlags.h"
#include "ui/QlirnUiObjectType.h"
#include "ui/TUIInventory.h"

namespace {

TmetaCommandActionRegistration<TiceStaticImageCmd> gImageCmd("image");

} // namespace

TiceStaticImageCmd::TiceStaticImageCmd(const char* name) : TiceControlBaseCmd(name)
{
    QlirnUiObjectType::registerUiObjectType("image", &QlirnStaticPicture::staticMetaObject, "staticImage");
}

bool TiceStaticImageCmd::appendSyntax()
{
    return TiceControlBaseCmd::appendSyntax() && flags().addFlag(kELFimageFlag, kELFimageFlagLong, Tsyntax::kString);
}

bool TiceStaticImageCmd::makeControl()
{
    try {
        fControl = new QlirnStaticPicture(qParent());
        fControl->setPicture("");
    } catch (...) {
        deleteControl();
        return false;
    }
    return true;
}

void TiceStaticImageCmd::deleteControl()
{
    delete fControl;
    fControl = nullptr;
}

bool TiceStaticImageCmd::findPtrs()
{
    fControl =
        qobject_cast<QlirnStaticPicture*>(gUIInventory->find(objectName().asChar(), "QlirnStaticPicture", true, false));
    return fControl != nullptr;
}

QWidget* TiceStaticImageCmd::qControl() const
{
    return fControl;
}

void TiceStaticImageCmd::clear()
{
    TiceControlBaseCmd::clear();
    fControl = nullptr;
}

int TiceStaticImageCmd::doEditFlags()
{
    try {
        if (fControl && args().isFlagSet(kELFimageFlag))
            fControl->setPicture(args().string(kELFimageFlag));
    } catch (const TfailedException& e) {
        setError(e.key());
        return 0;
    }
    return TiceControlBaseCmd::doEditFlags();
}

int TiceStaticImageCmd::doQueryFlags()
{
    if (!fControl || !args().isFlagSet(kELFimageFlag))
        return TiceControlBaseCmd::doQueryFlags();
    setResult(fControl->picture());
    return 1;
}
