#pragma once

#include <QObject>

class QWidget;

/** Watches the events of all windows and tells of those that concern a view inside. */
class QlirnWindowEventFilterObject : public QObject
{
    Q_OBJECT

public:
    /**
     * The filter of the process, never null. It watches the application object there is at the time of the call
     * (QObject::installEventFilter); before there is one, or after it was replaced, call again.
     */
    static QlirnWindowEventFilterObject* globalEventFilter();

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /** A top-level window was moved (QEvent::Move). */
    void windowMoved(QWidget* window);

private:
    QlirnWindowEventFilterObject() = default;
};
