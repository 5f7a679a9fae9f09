#pragma once

#include "Graphics/Export.h"
#include "ui/QlirnWidgetGrp.h"

#include <QPointer>

class QLabel;
class QlirnSlider;

/** Picks an entry of the colour table by its index: a label, a swatch of the entry's colour, and a slider. */
class LIRN_3DGRAPHICS_EXPORT QlirnColorIndexSliderGrp : public QlirnWidgetGrp
{
    Q_OBJECT

public:
    /**
     * A group of the range 0 to 10, the value 0 and no invisible index. Takes swatch and slider over; without a swatch
     * no colour is shown and the slider's value is not followed.
     */
    QlirnColorIndexSliderGrp(QWidget* parent, bool withLabel, QLabel* swatch, QlirnSlider* slider, bool withExtraLabel);

    int value() const { return fValue; }
    int minValue() const { return fMinValue; }
    int maxValue() const { return fMaxValue; }
    int invisibleIndex() const { return fInvisibleIndex; }

    /** Takes any value as it is; the slider shows the nearest it has. No signal follows. */
    void setValue(int value);
    /** A minimum above the maximum puts the maximum one higher. Brings the value into the range. */
    void setMinValue(int value);
    /** A maximum below the minimum puts the minimum one lower. Brings the value into the range. */
    void setMaxValue(int value);
    /** The index that stands for no colour: its swatch shows entry 0 and is enabled, all others are disabled. */
    void setInvisibleIndex(int index);

    /** Shows the entry's colour as the colour table has it now; to be called when the table has changed. */
    void updateCanvas();

    QlirnSlider* lirnSlider() const;

public Q_SLOTS:
    /** Takes over the slider's value, if it is another. */
    void useSliderValueToSetColorValue(int);
    /** Runs the script "dragCommand" when the slider is moved (QAbstractSlider::SliderMove). */
    void handleActionTriggered(int action);

private:
    void updateRange();

    QPointer<QlirnSlider> fSlider;
    QPointer<QLabel> fSwatch;
    int fValue = 0;
    int fMinValue = 0;
    int fMaxValue = 10;
    int fInvisibleIndex = -1;
};
