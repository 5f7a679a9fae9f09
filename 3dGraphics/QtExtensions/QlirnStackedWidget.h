#pragma once

#include "Graphics/Export.h"

#include <QStackedWidget>

class Q3dPort;

/** The outer widget of a port: the page of the GL widget, placed in the host's layout. */
class LIRN_3DGRAPHICS_EXPORT QlirnStackedWidget : public QStackedWidget
{
    Q_OBJECT

public:
    QlirnStackedWidget(QWidget* parent, Q3dPort* port);
    /** Tells its Q3dPort that this widget, and with it the GL widget inside, is going. */
    ~QlirnStackedWidget() override;

    /** Cuts the tie to a Q3dPort that goes first. */
    void forgetPort() { fPort = nullptr; }

private:
    Q3dPort* fPort;
};
