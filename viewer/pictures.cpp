#include "pictures.h"

#include "Graphics/3dPort/T3dPort.h"

#include <QBuffer>
#include <QFile>
#include <QPixmap>

QImage drawnPicture(T3dPort& port, const QSize& size)
{
    // The first paint takes the widget's size, whatever was asked for.
    if (port.portFlags().test(T3dPort::kPortFirstPaintPending))
        port.renderToPixmap(1, 1);
    port.pushPortRect(TportRect(0, 0, static_cast<short>(size.width()), static_cast<short>(size.height())));
    const QImage image = port.renderToPixmap(size.width(), size.height()).toImage();
    port.popPortRect();
    return image;
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
