#include "ui/Qlirn3dWidget.h"

Qlirn3dWidget::Qlirn3dWidget(QGLContext* context, QWidget* parent, Qt::WindowFlags flags)
    : QGLWidget(context, parent, nullptr, flags)
{
    setAutoBufferSwap(false);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}
