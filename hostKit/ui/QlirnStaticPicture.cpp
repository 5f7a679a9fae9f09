#include "ui/QlirnStaticPicture.h"

#include "foundation/TerrorHandler.h"

#include <QPixmap>

QlirnStaticPicture::QlirnStaticPicture(QWidget* parent) : QLabel(parent) {}

void QlirnStaticPicture::setPicture(const Tstring& picture)
{
    fPicture = picture;
    QPixmap pixmap;
    const bool isGood = picture.isEmpty() || pixmap.load(QString::fromUtf8(picture.asChar()));
    setPixmap(pixmap);
    // Last, as whoever is told may delete the control.
    if (!isGood)
        TerrorHandler::report(TerrorHandler::kWarning, Tstring::tFormat("Unable to load image: ^1s", picture));
}
