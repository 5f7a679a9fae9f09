#include "QtExtensions/Qlirn3dDeviceWidget.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnForwardingGLContext.h"

#include <QVariant>

Qlirn3dDeviceWidget::Qlirn3dDeviceWidget(T3dPort* port, QWidget* parent, Qt::WindowFlags flags)
    : Qlirn3dWidget(new QlirnForwardingGLContext, parent, flags), fPort(port), fDebug(port && port->isDebuggingPorts())
{
    setPortProperty(port);
}

Qlirn3dDeviceWidget::~Qlirn3dDeviceWidget() = default;

QlirnForwardingGLContext* Qlirn3dDeviceWidget::forwardingContext() const
{
    return static_cast<QlirnForwardingGLContext*>(const_cast<QGLContext*>(context()));
}

void Qlirn3dDeviceWidget::setPortProperty(T3dPort* port)
{
    setProperty("LirnPort", QVariant::fromValue(static_cast<void*>(port)));
}
