#include "support/PortWindow.h"

#include <QX11Info>

#include "QtExtensions/QlirnGLWidget.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

void settle()
{
    // Twice: the answers to what the first round asked the X server for.
    for (int i = 0; i < 2; ++i) {
        XSync(QX11Info::display(), 0);
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
}

QImage shownPixels(const T3dPort& port)
{
    const QlirnGLWidget* widget = port.glWidget();
    if (!widget || !widget->isVisible())
        return QImage();
    glFinish();
    const QSize size = widget->deviceSize();
    XImage* seen = XGetImage(QX11Info::display(), widget->glWindow(), 0, 0, unsigned(size.width()),
                             unsigned(size.height()), AllPlanes, ZPixmap);
    if (!seen)
        return QImage();
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, QRgb(XGetPixel(seen, x, y)) | 0xFF000000u);
    XDestroyImage(seen);
    return image;
}
