#pragma once

#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>

/** The middle of the handle when a horizontal slider has the value, on the screen. */
inline QPoint sliderHandle(const QSlider& slider, int value)
{
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.orientation = Qt::Horizontal;
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = option.sliderValue = value;
    return slider.mapToGlobal(
        slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider).center());
}
