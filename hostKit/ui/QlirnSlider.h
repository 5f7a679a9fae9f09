#pragma once

#include "ui/QlirnIconnectableControl.h"

#include <QSlider>

/**
 * A horizontal slider of integers that tells when the user is done with a change. Its value is up to date already when
 * actionTriggered is emitted.
 */
class QlirnSlider : public QSlider, public QlirnIconnectableControl
{
    Q_OBJECT

public:
    explicit QlirnSlider(QWidget* parent = nullptr);

    /** Does nothing: the slider shows no expression. */
    void newExpressionForConnections(const QString& expression) override;

Q_SIGNALS:
    /** The user has changed the value: at the end of a drag, after a key, a turn of the wheel or a press beside the
     * handle. */
    void sliderChangeCompleted();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void completeChange();

    bool fChanged = false;
};
