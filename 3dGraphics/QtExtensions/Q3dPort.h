#pragma once

#include "Graphics/Export.h"

#include <QGLFormat>

class QGLContext;
class QGLWidget;
class QlirnGLRenderTarget;
class QlirnGLWidget;
class QlirnStackedWidget;
class QSize;
class QWidget;
class T3dPort;

/**
 * The Qt side of one port: the stacked widget in the host's layout, the GL widget in it, the GL format obtained and an
 * optional off-screen target. Class-wide it keeps the resource widget, a hidden GL widget with whose context every port
 * shares display lists and textures.
 *
 * For the GUI thread only.
 */
class LIRN_3DGRAPHICS_EXPORT Q3dPort
{
public:
    /** What the stacked widget shows. */
    enum TActiveTarget { kGLWidget = 0 };

    /** Sees to it that the resource widget exists before any port widget. */
    Q3dPort();
    ~Q3dPort();

    Q3dPort(const Q3dPort&) = delete;
    Q3dPort& operator=(const Q3dPort&) = delete;

    /** Switches the format and reference-count traces on standard output, here and in the GL widget. */
    void setDebugMode(bool on);

    QlirnStackedWidget* createStackedWidget(QWidget* parent);
    /**
     * Makes the GL widget of @p port with @p format, or as near to it as the display allows, and stacks it. An invalid
     * widget is returned too, but neither stacked nor counted among those that share the resource context.
     */
    QlirnGLWidget* createGLWidget(const QGLFormat& format, T3dPort* port, QWidget* parent);

    QlirnGLWidget* glWidget() const { return fGLWidget; }
    /** The format that the GL widget obtained. */
    const QGLFormat& format() const { return fFormat; }
    QlirnGLRenderTarget* offscreenTarget() const { return fOffscreenTarget; }
    /** The stacked widget's current page, null without a stacked widget. */
    QWidget* widget() const;
    QWidget* activeWidget() const { return nullptr; }
    void setActiveWidget(TActiveTarget target);
    /** Takes @p w out of the stacked widget, and forgets it when it is the GL widget. */
    void releaseWidget(QWidget* w);

    /**
     * An off-screen target of @p size: a pixel buffer of @p format, or a frame-buffer object when that is null. Null
     * when neither can be made. The GL widget is current afterwards.
     */
    QlirnGLRenderTarget* createOffscreenTarget(const QSize& size, const QGLFormat* format);
    void deleteOffscreenTarget();

    /** The hidden widget that ports share with, made by the first call; null where there is no GLX to be had. */
    static QGLWidget* resourceWidget();
    /** The resource widget's context, null without the widget. */
    static QGLContext* resourceContext();
    /**
     * Sees to it that some context of the share group is current, for work on what all contexts share: whichever is
     * current, else the resource context. False when there is none.
     */
    static bool ensureContext();
    /** Tries once per process to make the resource widget. */
    static void initResourceWidget();
    /** The stereo state: 3 when LIRN_XRE_STEREO_PROTOTYPE was set at the first call, else 0. */
    static int stereoAllowed();
    /** Asks for core-profile viewports, which never see the fixed-function pipeline. Set before the first port. */
    static void setUseGLCoreProfile(bool use) { fsUseGLCoreProfile = use; }
    static bool enableGLCoreProfile() { return fsUseGLCoreProfile; }
    /** Deletes the resource widget and every GL widget. Ports keep living, without a widget. */
    static void releaseResources();

    static QGLWidget* fsSharedGLWidget;
    static int fsSharedGLWidgetRefCount; ///< GL widgets that share with the resource widget
    static bool fsUseGLCoreProfile;
    static int fsStereoAllowedState; ///< 3 and 4 ask for stereo
    static bool fsIsXRESingleContext;

private:
    friend class QlirnStackedWidget;

    void stackedWidgetDestroyed();
    static void makeResourceCurrent();
    static void deleteResourceWidget();
    void makeGLWidgetCurrent();

    QlirnGLWidget* fGLWidget = nullptr; ///< deleted here
    QGLFormat fFormat;
    QlirnGLRenderTarget* fOffscreenTarget = nullptr; ///< owned
    QlirnStackedWidget* fStackedWidget = nullptr;    ///< deleted here
    bool fDebug = false;
};
