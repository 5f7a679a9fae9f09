#pragma once

#include <QGLWidget>

/**
 * Base of the widgets that show 3D views. It leaves the swapping of buffers to its user (QGLWidget::swapBuffers),
 * hears of pointer moves without a button, and takes the keyboard focus by click and Tab (Qt::StrongFocus).
 */
class Qlirn3dWidget : public QGLWidget
{
    Q_OBJECT

public:
    /** @param context the OpenGL context to draw with; the widget takes it over. */
    explicit Qlirn3dWidget(QGLContext* context, QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
};
