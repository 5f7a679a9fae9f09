#include "ui/QlirnSlider.h"

#include <QMouseEvent>

QlirnSlider::QlirnSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent)
{
    // Qt emits sliderMoved, then actionTriggered, and sets the value last.
    connect(this, &QSlider::sliderMoved, this, &QSlider::setValue);
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
