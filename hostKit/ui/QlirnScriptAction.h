#pragma once

#include <QObject>

/** Runs the script that its parent has under this object's name, see QlirnQtHelper::setCommandScript. */
class QlirnScriptAction : public QObject
{
    Q_OBJECT

public:
    QlirnScriptAction(QObject* control, const char* name);

public Q_SLOTS:
    void run();
};
