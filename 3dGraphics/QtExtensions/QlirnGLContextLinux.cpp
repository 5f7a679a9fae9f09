#include <QGLWidget>
#include <QX11Info>

#include "QtExtensions/QlirnGLContextLinux.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <cstring>

namespace {

constexpr int kUnset = -1;

GLXContext resourceNativeContext()
{
    return QlirnGLContext::nativeContext(Q3dPort::resourceContext());
}

} // namespace

QlirnGLContextLinux::QlirnGLContextLinux(const QWidget* widget, const QGLFormat& format, const QGLWidget* shareWidget)
    : QlirnGLContext(widget, format)
{
    if (!fDisplay)
        return;
    QGLFormat wanted = format;
    fVisual = chooseVisual(fDisplay, QX11Info::appScreen(), wanted);
    if (fVisual) {
        const GLXContext share = shareWidget ? nativeContext(shareWidget->context()) : nullptr;
        fActiveContext = glXCreateContext(fDisplay, fVisual, share, QlirnX11::kTrue);
    }
    // Without a context nothing is provided: what is left of the request then claims no buffer.
    fFormat = fActiveContext ? getQGLFormat(fDisplay, fVisual, fActiveContext) : wanted;
    fGLWidget = qobject_cast<QlirnGLWidget*>(fWidget);
    if (fGLWidget)
        fGLWidget->setContext(this, nullptr, true);
    if (fActiveContext) {
        glXMakeCurrent(fDisplay, drawable(), fActiveContext);
        T3dPort::nativeBindingMoved();
    }
    fOriginalContext = fActiveContext;
}

QlirnGLContextLinux::~QlirnGLContextLinux()
{
    if (fOriginalContext) {
        // A context destroyed while current lives on until it is released, on a window that is about to go.
        const GLXContext current = glXGetCurrentContext();
        if (current && (current == fOriginalContext || glXGetCurrentDrawable() == drawable())) {
            glXMakeCurrent(fDisplay, QlirnX11::kNone, nullptr);
            T3dPort::nativeBindingMoved();
        }
        glXDestroyContext(fDisplay, fOriginalContext);
    }
    fActiveContext = nullptr;
    fOriginalContext = nullptr;
    fDisplay = nullptr;
}

GLXContext QlirnGLContextLinux::getActiveContext() const
{
    return fActiveContext;
}

GLXContext QlirnGLContextLinux::getOriginalContext() const
{
    return fOriginalContext ? fOriginalContext : fActiveContext;
}

bool QlirnGLContextLinux::useSharedContext(bool shared)
{
    const GLXContext before = fActiveContext;
    fActiveContext = shared ? resourceNativeContext() : fOriginalContext;
    return fActiveContext != before;
}

bool QlirnGLContextLinux::isSharedContext() const
{
    return fActiveContext == resourceNativeContext();
}

void QlirnGLContextLinux::makeCurrent() const
{
    if (!fActiveContext || fWidget->testAttribute(Qt::WA_WState_Hidden))
        return;
    const GLXDrawable window = drawable();
    if (!window) // between two native windows
        return;
    // Asking GLX costs a system call, a third of a switch. Where another context is known to be bound there is nothing to
    // ask: binding one that somebody has bound unnoticed does no harm.
    const void* known = T3dPort::knownNativeContext();
    const bool isElsewhere = known && known != fActiveContext;
    if (!isElsewhere && glXGetCurrentContext() == fActiveContext && glXGetCurrentDrawable() == window)
        return;
    const bool isBound = glXMakeCurrent(fDisplay, window, fActiveContext);
    T3dPort::nativeBindingMoved(isBound ? fActiveContext : nullptr);
    if (fGLWidget)
        fGLWidget->glWindowBound();
}

void QlirnGLContextLinux::swapBuffers() const
{
    if (fWidget->testAttribute(Qt::WA_WState_Hidden) || !glXGetCurrentContext())
        return;
    if (const GLXDrawable window = drawable())
        glXSwapBuffers(fDisplay, window);
}

void QlirnGLContextLinux::QGLFormatToAttribs(const QGLFormat& format, int* attribs)
{
    int n = 0;
    const auto put = [&](int value) { attribs[n++] = value; };
    const auto putPair = [&](int attribute, int value) {
        put(attribute);
        put(value);
    };

    if (format.testOption(QGL::DoubleBuffer))
        put(GLX_DOUBLEBUFFER);
    if (format.testOption(QGL::Rgba)) {
        const bool alpha = format.testOption(QGL::AlphaChannel);
        const int red = withDefault(format.redBufferSize(), 8);
        const int green = withDefault(format.greenBufferSize(), 8);
        const int blue = withDefault(format.blueBufferSize(), 8);
        int total = red + green + blue;
        put(GLX_RGBA);
        putPair(GLX_RED_SIZE, red);
        putPair(GLX_GREEN_SIZE, green);
        putPair(GLX_BLUE_SIZE, blue);
        if (alpha) {
            const int alphaSize = withDefault(format.alphaBufferSize(), 8);
            putPair(GLX_ALPHA_SIZE, alphaSize);
            total += alphaSize;
        }
        putPair(GLX_BUFFER_SIZE, total);
        if (format.testOption(QGL::AccumBuffer)) {
            const int accum = withDefault(format.accumBufferSize(), 1);
            putPair(GLX_ACCUM_RED_SIZE, accum);
            putPair(GLX_ACCUM_GREEN_SIZE, accum);
            putPair(GLX_ACCUM_BLUE_SIZE, accum);
            if (alpha)
                putPair(GLX_ACCUM_ALPHA_SIZE, accum);
        }
    }
    if (format.testOption(QGL::StereoBuffers))
        put(GLX_STEREO);
    if (format.testOption(QGL::StencilBuffer))
        putPair(GLX_STENCIL_SIZE, withDefault(format.stencilBufferSize(), 8));
    if (format.testOption(QGL::DepthBuffer))
        putPair(GLX_DEPTH_SIZE, withDefault(format.depthBufferSize(), 32));
    if (format.testOption(QGL::SampleBuffers)) {
        putPair(GLX_SAMPLE_BUFFERS_ARB, 1);
        putPair(GLX_SAMPLES_ARB, withDefault(format.samples(), 4));
    }
    put(0);
    static_assert(1 + 1 + 8 + 2 + 8 + 1 + 2 + 2 + 4 + 1 <= kMaxAttribs, "the longest list must fit");
}

int QlirnGLContextLinux::withDefault(int value, int fallback)
{
    return value != kUnset ? value : fallback;
}

XVisualInfo* QlirnGLContextLinux::chooseVisual(Display* display, int screen, QGLFormat& format)
{
    for (;;) {
        int attribs[kMaxAttribs];
        QGLFormatToAttribs(format, attribs);
        if (XVisualInfo* visual = glXChooseVisual(display, screen, attribs))
            return visual;
        if (!reduceQGLFormatRequirement(format))
            return nullptr;
    }
}

QGLFormat QlirnGLContextLinux::getQGLFormat(Display* display, XVisualInfo* visual, GLXContext context)
{
    QGLFormat format;
    format.setDirectRendering(glXIsDirect(display, context));

    int value = 0;
    const auto read = [&](int attribute) { return glXGetConfig(display, visual, attribute, &value) == 0; };

    if (read(GLX_LEVEL))
        format.setPlane(value);
    if (read(GLX_DOUBLEBUFFER))
        format.setDoubleBuffer(value);
    if (read(GLX_DEPTH_SIZE)) {
        format.setDepth(value);
        if (format.depth())
            format.setDepthBufferSize(value);
    }
    if (read(GLX_RGBA))
        format.setRgba(value);
    if (read(GLX_RED_SIZE))
        format.setRedBufferSize(value);
    if (read(GLX_GREEN_SIZE))
        format.setGreenBufferSize(value);
    if (read(GLX_BLUE_SIZE))
        format.setBlueBufferSize(value);
    if (read(GLX_ALPHA_SIZE)) {
        format.setAlpha(value);
        if (format.alpha())
            format.setAlphaBufferSize(value);
    }
    if (read(GLX_ACCUM_RED_SIZE)) {
        format.setAccum(value);
        if (format.accum())
            format.setAccumBufferSize(value);
    }
    if (read(GLX_STENCIL_SIZE)) {
        format.setStencil(value);
        if (format.stencil())
            format.setStencilBufferSize(value);
    }
    if (read(GLX_STEREO))
        format.setStereo(value);
    if (read(GLX_SAMPLE_BUFFERS_ARB)) {
        format.setSampleBuffers(value);
        if (format.sampleBuffers() && read(GLX_SAMPLES_ARB))
            format.setSamples(value);
    }

    const char* extensions = glXGetClientString(display, GLX_EXTENSIONS);
    if (extensions && std::strstr(extensions, "GLX_SGI_video_sync")) {
        if (format.swapInterval() == kUnset)
            format.setSwapInterval(0);
    } else {
        format.setSwapInterval(kUnset);
    }
    return format;
}

GLXDrawable QlirnGLContextLinux::drawable() const
{
    return fGLWidget ? fGLWidget->glWindow() : fWidget->internalWinId();
}
