#pragma once

#include "Graphics/Export.h"
#include "ui/Qlirn3dWidget.h"

class QlirnForwardingGLContext;
class T3dPort;

/** A 3D widget that belongs to a port. Its dynamic property "LirnPort" holds the port as a void pointer. */
class LIRN_3DGRAPHICS_EXPORT Qlirn3dDeviceWidget : public Qlirn3dWidget
{
    Q_OBJECT

public:
    Qlirn3dDeviceWidget(T3dPort* port, QWidget* parent, Qt::WindowFlags flags);
    ~Qlirn3dDeviceWidget() override;

    T3dPort* port() const { return fPort; }
    void setDebugMode(bool on) { fDebug = on; }
    bool isBeingDestroyed() const { return fDestroying; }
    /** Says that the port is being destroyed already, so that this widget must not destroy it. */
    void setPortDeleted() { fPortDeleted = true; }

protected:
    QlirnForwardingGLContext* forwardingContext() const;
    void setPortProperty(T3dPort* port);

    T3dPort* fPort; ///< not owned while the port lives
    bool fDebug;
    bool fDestroying = false;
    bool fPortDeleted = false;
};
