#include <QGLContext>
#include <QOpenGLContext>
#include <QVariant>
#include <QWidget>
#include <QX11Info>
#include <QtPlatformHeaders/QGLXNativeContext>

#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLContextLinux.h"

#include "Graphics/3dPort/T3dPort.h"

namespace {

struct Version
{
    int fMajor = 3;
    int fMinor = 3;
};

bool operator<(const Version& a, const Version& b)
{
    return a.fMajor != b.fMajor ? a.fMajor < b.fMajor : a.fMinor < b.fMinor;
}

/** Keeps the thread's GLX binding over code that binds something else. */
class BindingKeeper
{
public:
    BindingKeeper()
        : fDisplay(glXGetCurrentDisplay()), fDrawable(glXGetCurrentDrawable()), fContext(glXGetCurrentContext())
    {
    }

    ~BindingKeeper()
    {
        if (fContext && glXGetCurrentContext() != fContext)
            glXMakeCurrent(fDisplay, fDrawable, fContext);
        T3dPort::nativeBindingMoved();
    }

    BindingKeeper(const BindingKeeper&) = delete;
    BindingKeeper& operator=(const BindingKeeper&) = delete;

private:
    Display* fDisplay;
    GLXDrawable fDrawable;
    GLXContext fContext;
};

void probeVersion(Display* display, XVisualInfo* visual, Version& best)
{
    constexpr unsigned kSize = 64;
    const Window root = RootWindow(display, visual->screen);
    XSetWindowAttributes attributes{};
    attributes.colormap = XCreateColormap(display, root, visual->visual, AllocNone);
    if (!attributes.colormap)
        return;
    const Window window = XCreateWindow(display, root, 0, 0, kSize, kSize, 0, visual->depth, InputOutput,
                                        visual->visual, CWColormap, &attributes);
    if (window) {
        if (GLXContext context = glXCreateContext(display, visual, nullptr, QlirnX11::kTrue)) {
            if (glXMakeCurrent(display, window, context)) {
                Version got{0, 0};
                glGetIntegerv(GL_MAJOR_VERSION, &got.fMajor);
                glGetIntegerv(GL_MINOR_VERSION, &got.fMinor);
                // A driver too old to know the question leaves the answer at 0 and an error behind.
                if (got.fMajor > 0)
                    best = got;
                glXMakeCurrent(display, QlirnX11::kNone, nullptr);
            }
            glXDestroyContext(display, context);
        }
        XDestroyWindow(display, window);
    }
    XFreeColormap(display, attributes.colormap);
}

Version bestVersion(const QGLFormat& format)
{
    Version best;
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return best;
    const BindingKeeper keeper;
    QGLFormat wanted = format;
    if (XVisualInfo* visual = QlirnGLContextLinux::chooseVisual(display, DefaultScreen(display), wanted)) {
        probeVersion(display, visual, best);
        XFree(visual);
    }
    XCloseDisplay(display);
    return best;
}

} // namespace

QlirnGLContext* QlirnGLContext::create(const QWidget* widget, const QGLFormat& format, const QGLWidget* shareWidget)
{
    return new QlirnGLContextLinux(widget, format, shareWidget);
}

QlirnGLContext::QlirnGLContext(const QWidget* widget, const QGLFormat& format)
    : fFormat(format), fWidget(const_cast<QWidget*>(widget)), fDisplay(QX11Info::display())
{
}

QlirnGLContext::~QlirnGLContext() = default;

bool QlirnGLContext::isCurrent() const
{
    return fActiveContext &&
           (T3dPort::knownNativeContext() == fActiveContext || glXGetCurrentContext() == fActiveContext);
}

void QlirnGLContext::setBestGLVersion(QGLFormat& format)
{
    const Version best = bestVersion(format);
    if (best < Version{3, 3})
        return;
    if (format.majorVersion() < best.fMajor)
        format.setVersion(best.fMajor, best.fMinor);
    else if (format.majorVersion() == best.fMajor && format.minorVersion() < best.fMinor)
        format.setVersion(format.majorVersion(), best.fMinor);
}

bool QlirnGLContext::reduceQGLFormatRequirement(QGLFormat& format)
{
    if (format.testOption(QGL::StereoBuffers))
        format.setStereo(false);
    else if (format.testOption(QGL::AccumBuffer))
        format.setAccum(false);
    else if (format.testOption(QGL::StencilBuffer))
        format.setStencil(false);
    else if (format.testOption(QGL::AlphaChannel))
        format.setAlpha(false);
    else if (format.testOption(QGL::DepthBuffer))
        format.setDepth(false);
    else if (format.testOption(QGL::DoubleBuffer))
        format.setDoubleBuffer(false);
    else
        return false;
    return true;
}

GLXContext QlirnGLContext::nativeContext(const QGLContext* context)
{
    const QOpenGLContext* qtContext = context ? context->contextHandle() : nullptr;
    if (!qtContext)
        return nullptr;
    const QVariant handle = qtContext->nativeHandle();
    return handle.canConvert<QGLXNativeContext>() ? handle.value<QGLXNativeContext>().context() : nullptr;
}
