#include "Commands/colorSliderCmds/TelfColorIndexSliderGrpCmd.h"

#include "commandEngine/TfailedException.h"
#include "commandEngine/TmetaCommandActionRegistration.h"
#include "commandEngine/commandFlags.h"
#include "ui/QlirnLabel.h"
#include "ui/QlirnQtHelper.h"
#include "ui/QlirnSlider.h"
#include "ui/TUIInventory.h"

#include <QVariant>

#include <algorithm>
#include <memory>

namespace {

constexpr char kForceDragRefreshFlag[] = "-fdr";
constexpr char kInvisibleFlag[] = "-inv";

TmetaCommandActionRegistration<TelfColorIndexSliderGrpCmd> gColorIndexSliderGrpCmd("colorIndexSliderGrp");

} // namespace

TelfColorIndexSliderGrpCmd::TelfColorIndexSliderGrpCmd(const char* name) : TelfBaseGrpCmd(name) {}

bool TelfColorIndexSliderGrpCmd::appendSyntax()
{
    return TelfBaseGrpCmd::appendSyntax() && flags().addFlag(kELFlabelFlag, kELFlabelFlagLong, Tsyntax::kString) &&
           flags().addFlag(kELFextraLabelFlag, kELFextraLabelFlagLong, Tsyntax::kString) &&
           flags().addFlag(kELFchangeCommandFlag, kELFchangeCommandFlagLong, Tsyntax::kScript) &&
           flags().addFlag(kELFdragCommandFlag, kELFdragCommandFlagLong, Tsyntax::kScript) &&
           flags().addFlag(kForceDragRefreshFlag, "-forceDragRefresh") &&
           flags().addFlag(kELFvalueFlag, kELFvalueFlagLong, Tsyntax::kInteger) &&
           flags().addFlag(kELFminValueFlag, kELFminValueFlagLong, Tsyntax::kInteger) &&
           flags().addFlag(kELFmaxValueFlag, kELFmaxValueFlagLong, Tsyntax::kInteger) &&
           flags().addFlag(kInvisibleFlag, "-invisible", Tsyntax::kInteger);
}

bool TelfColorIndexSliderGrpCmd::makeControl()
{
    auto swatch = std::make_unique<QlirnLabel>();
    swatch->setProperty("objectTypeUI", "staticText");
    auto slider = std::make_unique<QlirnSlider>();
    slider->setProperty("objectTypeUI", "intSlider");
    slider->setPageStep(1);

    const bool withLabel = args().isFlagSet(kELFlabelFlag);
    fWidget = new QlirnColorIndexSliderGrp(qParent(), withLabel, swatch.release(), slider.release(),
                                           args().isFlagSet(kELFextraLabelFlag));
    if (withLabel)
        fWidget->setLabelText(args().string(kELFlabelFlag));

    int column = 0;
    const auto addColumn = [&](int width, Qt::Alignment alignment, bool takesExtra) {
        ++column;
        fWidget->setColumnWidth(column, width, takesExtra);
        fWidget->setColumnAttach(column, QlirnWidgetGrp::kBoth);
        fWidget->setColumnAlign(column, alignment | Qt::AlignVCenter);
    };
    if (withLabel)
        addColumn(140, Qt::AlignRight, false);
    addColumn(80, Qt::AlignHCenter, false);
    addColumn(160, Qt::AlignLeft, true);
    return true;
}

void TelfColorIndexSliderGrpCmd::deleteControl()
{
    delete fWidget;
    fWidget = nullptr;
}

bool TelfColorIndexSliderGrpCmd::findPtrs()
{
    fWidget = qobject_cast<QlirnColorIndexSliderGrp*>(
        gUIInventory->find(objectName().asChar(), "QlirnColorIndexSliderGrp", true, false));
    return fWidget != nullptr;
}

QWidget* TelfColorIndexSliderGrpCmd::qControl() const
{
    return fWidget;
}

void TelfColorIndexSliderGrpCmd::clear()
{
    TelfBaseGrpCmd::clear();
    fWidget = nullptr;
}

int TelfColorIndexSliderGrpCmd::doEditFlags()
{
    if (!fWidget)
        return 0;
    try {
        if (args().isFlagSet(kELFlabelFlag))
            fWidget->setLabelText(args().string(kELFlabelFlag));
        if (args().isFlagSet(kELFextraLabelFlag))
            fWidget->setExtraLabelText(args().string(kELFextraLabelFlag));
        editRange();
        if (args().isFlagSet(kInvisibleFlag)) {
            const int index = args().integer(kInvisibleFlag);
            if (index < fWidget->minValue() || index > fWidget->maxValue())
                fWidget->setInvisibleIndex(-1);
        }
        if (args().isFlagSet(kELFvalueFlag))
            editValue();
        if (args().isFlagSet(kELFchangeCommandFlag))
            QlirnQtHelper::linkControlSignalToScriptAction(fWidget, SIGNAL(groupChangeCompleted()), "changeCommand",
                                                           args().script(kELFchangeCommandFlag));
        if (args().isFlagSet(kELFdragCommandFlag))
            QlirnQtHelper::setCommandScript(fWidget, "dragCommand", args().script(kELFdragCommandFlag));
    } catch (const TfailedException& e) {
        setError(e.key());
        return 0;
    }
    return TelfBaseGrpCmd::doEditFlags();
}

void TelfColorIndexSliderGrpCmd::editRange()
{
    const bool hasMin = args().isFlagSet(kELFminValueFlag);
    const bool hasMax = args().isFlagSet(kELFmaxValueFlag);
    const int newMin = hasMin ? args().integer(kELFminValueFlag) : fWidget->minValue();
    const int newMax = hasMax ? args().integer(kELFmaxValueFlag) : fWidget->maxValue();
    if ((hasMin || hasMax) && newMax <= newMin)
        throw TfailedException("s_HiceExceptionStrings.rELFmaxValueMustBeGreaterThanMinValue");
    if (hasMin)
        fWidget->setMinValue(newMin);
    if (hasMax)
        fWidget->setMaxValue(newMax);
}

void TelfColorIndexSliderGrpCmd::editValue()
{
    const int given = args().integer(kELFvalueFlag);
    const int value = std::clamp(given, fWidget->minValue(), fWidget->maxValue());
    if (given < value)
        TcommandEngine::displayWarning("s_HiceExceptionStrings.rELFvalueMustBeGreaterThanOrEqualToMinValue");
    else if (given > value)
        TcommandEngine::displayWarning("s_HiceExceptionStrings.rELFvalueMustBeLessThanOrEqualToMaxValue");
    if (fWidget) // whoever is told of the warning can have closed it
        fWidget->setValue(value);
}

int TelfColorIndexSliderGrpCmd::doQueryFlags()
{
    if (!fWidget)
        return 0;
    if (args().isFlagSet(kELFlabelFlag))
        setResult(fWidget->labelText());
    else if (args().isFlagSet(kELFextraLabelFlag))
        setResult(fWidget->extraLabelText());
    else if (args().isFlagSet(kELFvalueFlag))
        setResult(fWidget->value());
    else if (args().isFlagSet(kELFminValueFlag))
        setResult(fWidget->minValue());
    else if (args().isFlagSet(kELFmaxValueFlag))
        setResult(fWidget->maxValue());
    else if (args().isFlagSet(kInvisibleFlag))
        setResult(fWidget->invisibleIndex());
    else
        return TelfBaseGrpCmd::doQueryFlags();
    return 1;
}
