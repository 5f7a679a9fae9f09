#include "ui/QlirnSlider.h"

#include <QMouseEvent>

QlirnSlider::QlirnSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent)
{
    // Qt sets the value only after the signal.
    connect(this, &QSlider::actionTriggered, this, [this] { setValue(sliderPosition()); });
    connect(this, &QSlider::valueChanged, this, [this] { fChanged = true; });
}

void QlirnSlider::newExpressionForConnections(const QString&) {}

void QlirnSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->buttons() == event->button())
        fChanged = false;
    QSlider::mousePressEvent(event);
}

void QlirnSlider::mouseReleaseEvent(QMouseEvent* event)
{
    QSlider::mouseReleaseEvent(event);
    if (event->buttons() == Qt::NoButton)
        completeChange();
}

void QlirnSlider::keyPressEvent(QKeyEvent* event)
{
    const int before = value();
    QSlider::keyPressEvent(event);
    if (!isSliderDown() && value() != before)
        completeChange();
}

void QlirnSlider::wheelEvent(QWheelEvent* event)
{
    const int before = value();
    QSlider::wheelEvent(event);
    if (!isSliderDown() && value() != before)
        completeChange();
}

void QlirnSlider::completeChange()
{
    if (!fChanged)
        return;
    fChanged = false;
    emit sliderChangeCompleted();
}
