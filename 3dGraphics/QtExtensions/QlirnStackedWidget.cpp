#include "QtExtensions/QlirnStackedWidget.h"

#include "QtExtensions/Q3dPort.h"

#include <QLayout>

QlirnStackedWidget::QlirnStackedWidget(QWidget* parent, Q3dPort* port) : QStackedWidget(parent), fPort(port)
{
    if (QLayout* inner = layout())
        inner->setObjectName(QStringLiteral("lirnLayoutInternalWidget"));
}

QlirnStackedWidget::~QlirnStackedWidget()
{
    if (fPort)
        fPort->stackedWidgetDestroyed();
}
