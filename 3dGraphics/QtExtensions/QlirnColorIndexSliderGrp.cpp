#include "QtExtensions/QlirnColorIndexSliderGrp.h"

#include "Graphics/3dPort/T3dPort.h"
#include "ui/QlirnLabel.h"
#include "ui/QlirnQtHelper.h"
#include "ui/QlirnSlider.h"

#include <QSignalBlocker>

#include <limits>

namespace {

// Also for what is not a number.
double clampedChannel(float channel)
{
    return channel > 0.0f ? qMin(double(channel), 1.0) : 0.0;
}

} // namespace

QlirnColorIndexSliderGrp::QlirnColorIndexSliderGrp(QWidget* parent, bool withLabel, QLabel* swatch, QlirnSlider* slider,
                                                   bool withExtraLabel)
    : QlirnWidgetGrp(parent, withExtraLabel), fSlider(slider), fSwatch(swatch)
{
    if (withLabel) {
        auto* label = new QlirnLabel(this);
        label->setObjectName("color");
        addLabel(label);
    }
    if (fSwatch) {
        fSwatch->setObjectName("port");
        addControl(fSwatch);
    }
    if (fSlider) {
        fSlider->setObjectName("slider");
        addControl(fSlider);
        fSlider->setRange(fMinValue, fMaxValue);
        connect(fSlider, SIGNAL(valueChanged(int)), SLOT(useSliderValueToSetColorValue(int)));
        connect(fSlider, SIGNAL(actionTriggered(int)), SLOT(handleActionTriggered(int)));
        connect(fSlider, SIGNAL(sliderChangeCompleted()), SIGNAL(groupChangeCompleted()));
    }
    setValue(fValue);
}

void QlirnColorIndexSliderGrp::setValue(int value)
{
    fValue = value;
    if (fSlider) {
        const QSignalBlocker blocker(fSlider);
        fSlider->setValue(value);
    }
    updateCanvas();
}

void QlirnColorIndexSliderGrp::setMinValue(int value)
{
    fMinValue = value;
    if (value > fMaxValue)
        fMaxValue = value < std::numeric_limits<int>::max() ? value + 1 : value;
    updateRange();
}

void QlirnColorIndexSliderGrp::setMaxValue(int value)
{
    fMaxValue = value;
    if (value < fMinValue)
        fMinValue = value > std::numeric_limits<int>::min() ? value - 1 : value;
    updateRange();
}

void QlirnColorIndexSliderGrp::setInvisibleIndex(int index)
{
    fInvisibleIndex = index;
    updateCanvas();
}

QlirnSlider* QlirnColorIndexSliderGrp::lirnSlider() const
{
    return fSlider;
}

void QlirnColorIndexSliderGrp::useSliderValueToSetColorValue(int)
{
    if (!fSlider || !fSwatch || fSlider->value() == fValue)
        return;
    fValue = fSlider->value();
    updateCanvas();
}

void QlirnColorIndexSliderGrp::handleActionTriggered(int action)
{
    if (action == QAbstractSlider::SliderMove)
        QlirnQtHelper::executeCommandScript(this, "dragCommand");
}

void QlirnColorIndexSliderGrp::updateRange()
{
    if (!fSlider)
        return;
    fSlider->setRange(fMinValue, fMaxValue);
    // A value beyond the former range is one the slider did not have, so that it may have nothing to tell.
    useSliderValueToSetColorValue(fSlider->value());
}

void QlirnColorIndexSliderGrp::updateCanvas()
{
    if (!fSwatch)
        return;
    const bool isInvisible = fValue == fInvisibleIndex;
    const TportColor color = T3dPort::colorTable(isInvisible ? 0 : static_cast<unsigned short>(fValue));
    fSwatch->setEnabled(isInvisible);
    const QColor shown =
        QColor::fromRgbF(clampedChannel(color.r), clampedChannel(color.g), clampedChannel(color.b), 1.0);
    // For the disabled swatch as well.
    QPalette palette(shown);
    palette.setColor(QPalette::Window, shown);
    fSwatch->setPalette(palette);
    fSwatch->setAutoFillBackground(true);
}
