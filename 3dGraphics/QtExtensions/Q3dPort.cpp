#include "QtExtensions/Q3dPort.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/QlirnStackedWidget.h"
#include "foundation/LirnGetEnv.h"

#include <QApplication>
#include <QGLWidget>
#include <QSize>
#include <QVariant>
#include <QX11Info>

#include <cstdio>
#include <cstdlib>

QGLWidget* Q3dPort::fsSharedGLWidget = nullptr;
int Q3dPort::fsSharedGLWidgetRefCount = 0;
bool Q3dPort::fsUseGLCoreProfile = false;
int Q3dPort::fsStereoAllowedState = 0;
bool Q3dPort::fsIsXRESingleContext = false;

namespace {

constexpr char kResourceProperty[] = "lirnSharedQGLWidget";

bool gResourceWidgetAttempted = false;

// What a Qt build that understands it takes as the request for a debug context.
constexpr auto kDebugDeviceOption = QGL::FormatOption(0x800);

void printFormat(const char* which, const QGLFormat& format)
{
    std::printf("Q3dPort::createWidget() %s format {\n", which);
    std::printf("\t accum=%d, accumSize=%d\n", format.accum(), format.accumBufferSize());
    std::printf("\t depth=%d, depthSize=%d\n", format.depth(), format.depthBufferSize());
    std::printf("\t doubleBuffer=%d\n", format.doubleBuffer());
    // Blue stands before green against the labels, as this trace has always printed them.
    std::printf("\t redSize=%d\n, greenSize=%d, blueSize=%d\n", format.redBufferSize(), format.blueBufferSize(),
                format.greenBufferSize());
    std::printf("\t stencil=%d, stencilSize=%d\n", format.stencil(), format.stencilBufferSize());
    std::printf("\t sampleBuffers=%d, sampleBufferSize=%d\n", format.samples(), format.samples());
    std::printf("\t stereo=%d\n", format.stereo());
    std::printf("}\n");
}

bool hasNativeContext(const QGLWidget& widget)
{
    return widget.isValid() && QlirnGLContext::nativeContext(widget.context());
}

} // namespace

Q3dPort::Q3dPort()
{
    resourceContext();
}

Q3dPort::~Q3dPort()
{
    deleteOffscreenTarget();

    if (fGLWidget && !fGLWidget->isBeingDestroyed()) {
        delete fGLWidget;
        fGLWidget = nullptr;
        --fsSharedGLWidgetRefCount;
        if (fDebug)
            std::printf("Q3dPort::~Q3dPort() Decrement shared context reference count = %d\n",
                        fsSharedGLWidgetRefCount);
        if (fsSharedGLWidgetRefCount == 0) {
            if (fDebug)
                std::printf("Q3dPort::~Q3dPort() Destroy shared context\n");
            deleteResourceWidget();
        }
    }

    if (fStackedWidget) {
        // One that was released, but left inside, goes with the stacked widget and must not take the port along again.
        for (QlirnGLWidget* left : fStackedWidget->findChildren<QlirnGLWidget*>())
            left->setPortDeleted();
        if (fGLWidget) {
            // The GL widget inside is in its destructor: deleting its parent now would delete it a second time.
            fStackedWidget->forgetPort();
            fStackedWidget->deleteLater();
        } else {
            delete fStackedWidget;
        }
        fStackedWidget = nullptr;
    }
}

void Q3dPort::setDebugMode(bool on)
{
    fDebug = on;
    if (fGLWidget)
        fGLWidget->setDebugMode(on);
}

QlirnStackedWidget* Q3dPort::createStackedWidget(QWidget* parent)
{
    fStackedWidget = new QlirnStackedWidget(parent, this);
    return fStackedWidget;
}

QlirnGLWidget* Q3dPort::createGLWidget(const QGLFormat& format, T3dPort* port, QWidget* parent)
{
    fGLWidget = new QlirnGLWidget(port, format, parent, resourceWidget(), Qt::WindowFlags());
    if (!fGLWidget->isValid())
        return fGLWidget;

    fGLWidget->setDebugMode(fDebug);
    fFormat = format;
    if (fDebug)
        printFormat("wanted", fFormat);
    fFormat = fGLWidget->glContext()->format();
    if (fDebug)
        printFormat("got", fFormat);
    if (fsSharedGLWidget) {
        ++fsSharedGLWidgetRefCount;
        if (fDebug)
            std::printf("Q3dPort::createWidget() Increment shared context reference count = %d\n",
                        fsSharedGLWidgetRefCount);
    }
    if (fStackedWidget)
        fStackedWidget->addWidget(fGLWidget);
    return fGLWidget;
}

QWidget* Q3dPort::widget() const
{
    return fStackedWidget ? fStackedWidget->currentWidget() : nullptr;
}

void Q3dPort::setActiveWidget(TActiveTarget target)
{
    if (target == kGLWidget && fStackedWidget && fGLWidget)
        fStackedWidget->setCurrentWidget(fGLWidget);
}

void Q3dPort::releaseWidget(QWidget* w)
{
    if (w == fGLWidget)
        fGLWidget = nullptr;
    if (fStackedWidget && w)
        fStackedWidget->removeWidget(w);
}

void Q3dPort::stackedWidgetDestroyed()
{
    fGLWidget = nullptr;
    fStackedWidget = nullptr;
}

QlirnGLRenderTarget* Q3dPort::createOffscreenTarget(const QSize& size, const QGLFormat* format)
{
    if (!fOffscreenTarget)
        fOffscreenTarget = new QlirnGLRenderTarget(fDebug);
    makeResourceCurrent();
    fOffscreenTarget->create(size, format, fsSharedGLWidget);
    if (!fOffscreenTarget->isValid()) {
        delete fOffscreenTarget;
        fOffscreenTarget = nullptr;
    }
    makeGLWidgetCurrent();
    return fOffscreenTarget;
}

void Q3dPort::deleteOffscreenTarget()
{
    makeResourceCurrent();
    delete fOffscreenTarget;
    fOffscreenTarget = nullptr;
    makeGLWidgetCurrent();
}

void Q3dPort::makeResourceCurrent()
{
    if (!resourceContext())
        return;
    resourceContext()->makeCurrent();
    T3dPort::nativeBindingMoved();
}

void Q3dPort::makeGLWidgetCurrent()
{
    if (fGLWidget)
        fGLWidget->makeCurrent();
}

QGLWidget* Q3dPort::resourceWidget()
{
    initResourceWidget();
    return fsSharedGLWidget;
}

QGLContext* Q3dPort::resourceContext()
{
    initResourceWidget();
    return fsSharedGLWidget ? const_cast<QGLContext*>(fsSharedGLWidget->context()) : nullptr;
}

bool Q3dPort::ensureContext()
{
    if (glXGetCurrentContext())
        return true;
    if (!fsSharedGLWidget)
        return false;
    makeResourceCurrent();
    return glXGetCurrentContext() != nullptr;
}

void Q3dPort::initResourceWidget()
{
    if (gResourceWidgetAttempted)
        return;
    stereoAllowed();
    if (fsSharedGLWidget)
        return;
    gResourceWidgetAttempted = true;

    QGLFormat format;
    format.setRgba(true);
    format.setAlphaBufferSize(8);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    format.setAccum(false);
    format.setDoubleBuffer(true);
    format.setDepth(true);
    if (enableGLCoreProfile()) {
        format.setVersion(3, 3);
        format.setProfile(QGLFormat::CompatibilityProfile);
        QlirnGLContext::setBestGLVersion(format);
    }
    static const bool debugDevice = LirnGetEnv("LIRN_FORCE_GL_DEBUG_DEVICE") != nullptr;
    if (debugDevice)
        format.setOption(kDebugDeviceOption);
    format.setStereo(fsStereoAllowedState == 3 || fsStereoAllowedState == 4);

    // On another platform than X11 Qt may well offer a context, but none that GLX knows.
    if (qApp && QX11Info::isPlatformX11()) {
        fsSharedGLWidget = new QGLWidget(format, nullptr, nullptr, Qt::WindowFlags());
        if (!hasNativeContext(*fsSharedGLWidget)) {
            delete fsSharedGLWidget;
            fsSharedGLWidget = nullptr;
        }
    }
    if (qApp)
        qApp->setProperty(kResourceProperty, QVariant::fromValue<QWidget*>(fsSharedGLWidget));
    if (!fsSharedGLWidget)
        return;

    // Native windows cannot outlive the application object.
    qAddPostRoutine(releaseResources);
    fsSharedGLWidget->setVisible(false);
    fsSharedGLWidget->winId();
    makeResourceCurrent();
    QlirnGLContext::initializeGLextensions();
    const char* singleContext = LirnGetEnv("LIRN_XRE_SINGLE_CONTEXT");
    fsIsXRESingleContext = !singleContext || std::strtol(singleContext, nullptr, 10) != 0;
}

int Q3dPort::stereoAllowed()
{
    static const int initial = fsStereoAllowedState = LirnGetEnv("LIRN_XRE_STEREO_PROTOTYPE") ? 3 : 0;
    static_cast<void>(initial);
    return fsStereoAllowedState;
}

void Q3dPort::releaseResources()
{
    deleteResourceWidget();
    QlirnGLWidget::clearWidgetList();
}

void Q3dPort::deleteResourceWidget()
{
    delete fsSharedGLWidget;
    fsSharedGLWidget = nullptr;
    if (qApp)
        qApp->setProperty(kResourceProperty, QVariant::fromValue<QWidget*>(nullptr));
    T3dPort::nativeBindingMoved();
}
