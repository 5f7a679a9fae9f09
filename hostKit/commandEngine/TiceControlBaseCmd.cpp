#include "commandEngine/TiceControlBaseCmd.h"

#include "commandEngine/TfailedException.h"
#include "commandEngine/commandFlags.h"
#include "ui/QlirnUiObjectType.h"
#include "ui/TUIInventory.h"

#include <QApplication>
#include <QLayout>
#include <QPointer>
#include <QWidget>

namespace {

QPointer<QWidget>& defaultParentPointer()
{
    static auto* parent = new QPointer<QWidget>;
    return *parent;
}

bool isNameTaken(const Tstring& name)
{
    return gUIInventory->find(name.asChar(), nullptr, true, false) != nullptr;
}

bool isName(const Tstring& name)
{
    const char* const first = name.asChar();
    for (const char* c = first; c != first + name.length(); ++c) {
        const bool letter = (*c >= 'a' && *c <= 'z') || (*c >= 'A' && *c <= 'Z') || *c == '_';
        if (!letter && (c == first || *c < '0' || *c > '9'))
            return false;
    }
    return !name.isEmpty();
}

int extent(int value)
{
    if (value < 0 || value > QWIDGETSIZE_MAX)
        throw TfailedException(Tstring::tFormat("A size of ^1d is out of range.", value));
    return value;
}

} // namespace

void TiceControlBaseCmd::setDefaultParent(QWidget* parent)
{
    defaultParentPointer() = parent;
}

QWidget* TiceControlBaseCmd::defaultParent()
{
    return defaultParentPointer();
}

void TiceControlBaseCmd::clear()
{
    TiceBaseCmd::clear();
    fObjectName = Tstring();
    fParent = nullptr;
}

bool TiceControlBaseCmd::appendSyntax()
{
    return TiceBaseCmd::appendSyntax() && flags().addFlag(kELFeditFlag, kELFeditFlagLong) &&
           flags().addFlag(kELFqueryFlag, kELFqueryFlagLong) && flags().addFlag(kELFexistsFlag, kELFexistsFlagLong) &&
           flags().addFlag(kELFparentFlag, kELFparentFlagLong, Tsyntax::kString) &&
           flags().addFlag(kELFvisibleFlag, kELFvisibleFlagLong, Tsyntax::kBoolean) &&
           flags().addFlag(kELFenableFlag, kELFenableFlagLong, Tsyntax::kBoolean) &&
           flags().addFlag(kELFwidthFlag, kELFwidthFlagLong, Tsyntax::kInteger) &&
           flags().addFlag(kELFheightFlag, kELFheightFlagLong, Tsyntax::kInteger) &&
           flags().addFlag(kELFannotationFlag, kELFannotationFlagLong, Tsyntax::kString);
}

int TiceControlBaseCmd::doIt()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        throw TfailedException("There is no user interface.");
    if (!args().objects().empty())
        fObjectName = args().objects().front();
    if (args().uses(kELFexistsFlag)) {
        setResult(findPtrs());
        return 1;
    }
    if (!args().isEdit() && !args().isQuery())
        return create();
    if (fObjectName.isEmpty())
        throw TfailedException("The name of a control is missing.");
    if (!findPtrs())
        throw TfailedException(Tstring::tFormat("Control '^1s' not found.", fObjectName));
    if (args().isQuery()) {
        const int done = doQueryFlags();
        if (!done)
            setError("There is no flag that could be queried.");
        return done;
    }
    if (args().uses(kELFparentFlag))
        throw TfailedException("The parent of a control can't be edited.");
    setResult(fObjectName);
    return doEditFlags();
}

int TiceControlBaseCmd::create()
{
    if (fObjectName.isEmpty()) {
        const Tstring type = QlirnUiObjectType::typeName(name().asChar());
        const Tstring base = type.isEmpty() ? name() : type;
        int number = 1;
        do {
            fObjectName = base + std::to_string(number++);
        } while (isNameTaken(fObjectName));
    } else if (!isName(fObjectName)) {
        throw TfailedException(Tstring::tFormat("'^1s' is no name for a control.", fObjectName));
    } else if (isNameTaken(fObjectName)) {
        throw TfailedException(Tstring::tFormat("The name '^1s' is not unique.", fObjectName));
    }

    fParent = defaultParent();
    if (args().uses(kELFparentFlag)) {
        const Tstring parent = args().string(kELFparentFlag);
        fParent = gUIInventory->find(parent.asChar(), nullptr, true, false);
        if (!fParent)
            throw TfailedException(Tstring::tFormat("Parent '^1s' not found.", parent));
    }
    if (!fParent)
        throw TfailedException("There is no parent for the control.");

    struct Tundo
    {
        TiceControlBaseCmd* command;
        ~Tundo()
        {
            if (command)
                command->deleteControl();
        }
    } undo{this};
    if (!makeControl() || !qControl()) {
        setError("The control could not be made.");
        return 0;
    }
    qControl()->setObjectName(QString::fromUtf8(fObjectName.asChar()));
    gUIInventory->addWidget(qControl());
    setResult(fObjectName);
    if (!doEditFlags() || !qControl())
        return 0;
    undo.command = nullptr;
    if (QLayout* layout = fParent->layout())
        layout->addWidget(qControl());
    if (!args().uses(kELFvisibleFlag))
        qControl()->show();
    return 1;
}

int TiceControlBaseCmd::doEditFlags()
{
    // Whoever is told of a warning can have closed it.
    QWidget* control = qControl();
    if (!control)
        return 0;
    const auto given = [this](const char* flag) { return args().uses(flag) > 0; };
    const int width = given(kELFwidthFlag) ? extent(args().integer(kELFwidthFlag)) : -1;
    const int height = given(kELFheightFlag) ? extent(args().integer(kELFheightFlag)) : -1;
    if (width >= 0)
        control->setFixedWidth(width);
    if (height >= 0)
        control->setFixedHeight(height);
    if (given(kELFvisibleFlag))
        control->setVisible(args().boolean(kELFvisibleFlag));
    if (given(kELFenableFlag))
        control->setEnabled(args().boolean(kELFenableFlag));
    if (given(kELFannotationFlag))
        control->setToolTip(QString::fromUtf8(args().string(kELFannotationFlag).asChar()));
    return 1;
}

int TiceControlBaseCmd::doQueryFlags()
{
    const QWidget* control = qControl();
    if (!control)
        return 0;
    if (args().isFlagSet(kELFvisibleFlag))
        setResult(!control->isHidden());
    else if (args().isFlagSet(kELFenableFlag))
        setResult(control->isEnabled());
    else if (args().isFlagSet(kELFwidthFlag))
        setResult(control->width());
    else if (args().isFlagSet(kELFheightFlag))
        setResult(control->height());
    else if (args().isFlagSet(kELFannotationFlag))
        setResult(Tstring(control->toolTip().toStdString()));
    else if (args().isFlagSet(kELFparentFlag))
        setResult(Tstring(control->parentWidget() ? control->parentWidget()->objectName().toStdString() : ""));
    else
        return 0;
    return 1;
}
