#include "ui/QlirnStaticPicture.h"

#include "foundation/TerrorHandler.h"

#include <QImageReader>
#include <QPixmap>

namespace {

constexpr qint64 kMostPixels = qint64(1) << 26;

/** False for a picture that announces more pixels than a window could show, before memory is taken for them. */
bool load(QPixmap& pixmap, const QString& file)
{
    QImageReader reader(file);
    const QSize size = reader.size();
    return qint64(size.width()) * size.height() <= kMostPixels && pixmap.convertFromImage(reader.read());
}

} // namespace

QlirnStaticPicture::QlirnStaticPicture(QWidget* parent) : QLabel(parent) {}

void QlirnStaticPicture::setPicture(const Tstring& picture)
{
    fPicture = picture;
    QPixmap pixmap;
    const bool isGood = picture.isEmpty() || load(pixmap, QString::fromUtf8(picture.asChar()));
    setPixmap(pixmap);
    // Last, as whoever is told may delete the control.
    if (!isGood)
        TerrorHandler::report(TerrorHandler::kWarning, Tstring::tFormat("Unable to load image: ^1s", picture));
}
