#pragma once

#include <QGLContext>

class QlirnGLContext;

/**
 * Stands where Qt expects the context of a QGLWidget, and hands every request on to our own.
 *
 * QGLWidget's makeCurrent and swapBuffers are not virtual but QGLContext's are, so that Qt's calls, too, end at the GLX
 * context that draws the widget. Qt makes no context of its own behind it.
 */
class QlirnForwardingGLContext : public QGLContext
{
public:
    QlirnForwardingGLContext();

    /** Null until the widget has its context, and again once it is gone. */
    void setTarget(const QlirnGLContext* target) { fTarget = target; }

    void makeCurrent() override;
    void doneCurrent() override;
    void swapBuffers() const override;

protected:
    bool chooseContext(const QGLContext* shareContext) override;

private:
    const QlirnGLContext* fTarget = nullptr;
};
