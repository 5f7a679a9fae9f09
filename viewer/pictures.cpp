#include "pictures.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglBuffer.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
#include "foundation/Tevent.h"
#include "foundation/TpixelMap.h"

#include <QBuffer>
#include <QFile>
#include <QPixmap>

QImage drawnPicture(T3dPort& port, const QSize& size)
{
    // The first paint takes the widget's size, whatever was asked for.
    if (port.portFlags().test(T3dPort::kPortFirstPaintPending))
        port.renderToPixmap(1, 1);
    // Drawn into a frame-buffer object, a picture may be larger than the window and the screen.
    Q3dPort* side = port.q3dPort();
    QlirnGLRenderTarget* target = side ? side->createOffscreenTarget(size, nullptr) : nullptr;
    if (!target)
        return QImage();
    QImage image(size, QImage::Format_RGB32);
    TglBuffer::Target place;
    place.fWidth = static_cast<std::uint16_t>(size.width());
    place.fHeight = static_cast<std::uint16_t>(size.height());
    place.fFramebufferObject = target->framebufferObject();
    TglBuffer buffer;
    buffer.setTarget(&place);
    port.beginBuffer(&buffer);
    const bool noSwap = port.isNoSwap();
    port.setNoSwap(true);
    port.doUpdate(Tevent(Tevent::kUpdate));
    port.setNoSwap(noSwap);
    TpixelMap pixels;
    pixels.setRgba(false);
    const bool isRead =
        !image.isNull() && pixels.wrap(image.bits(), size.width(), size.height()) && port.pixelMapGLRead(pixels, 0, 0);
    port.endBuffer(&buffer);
    side->deleteOffscreenTarget();
    return isRead ? image.mirrored() : QImage();
}

QString writePicture(const QImage& picture, const QString& path)
{
    if (picture.isNull())
        return QStringLiteral("cannot draw a picture off screen.");
    // By way of memory: the PNG library has remarks of its own about a file that can't be written.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size() || !file.flush())
        return QStringLiteral("cannot write %1: %2.").arg(path, file.errorString());
    return QString();
}
