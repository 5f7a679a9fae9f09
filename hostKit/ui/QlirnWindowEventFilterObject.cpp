#include "ui/QlirnWindowEventFilterObject.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

QlirnWindowEventFilterObject* QlirnWindowEventFilterObject::globalEventFilter()
{
    // Never deleted: it outlives every application object.
    static auto* const filter = new QlirnWindowEventFilterObject;
    static QPointer<QCoreApplication> watchedApplication;

    QCoreApplication* application = QCoreApplication::instance();
    if (application && application != watchedApplication) {
        application->installEventFilter(filter);
        watchedApplication = application;
    }
    return filter;
}

bool QlirnWindowEventFilterObject::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Move && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        if (widget->isWindow()) {
            emit windowMoved(widget);
        }
    }
    return false;
}
