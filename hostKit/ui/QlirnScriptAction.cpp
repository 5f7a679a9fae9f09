#include "ui/QlirnScriptAction.h"

#include "ui/QlirnQtHelper.h"

QlirnScriptAction::QlirnScriptAction(QObject* control, const char* name) : QObject(control)
{
    setObjectName(QString::fromUtf8(name));
}

void QlirnScriptAction::run()
{
    QlirnQtHelper::executeCommandScript(parent(), objectName().toUtf8().constData());
}
