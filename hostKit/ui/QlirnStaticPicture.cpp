#include "ui/QlirnStaticPicture.h"

#include "foundation/TerrorHandler.h"

#include <QPixmap>

QlirnStaticPicture::QlirnStaticPicture(QWidget* parent) : QLabel(parent) {}

void QlirnStaticPicture::setPicture(const Tstring& picture)
{
    fPicture = picture;
    QPixmap pixmap;
    if (!picture.isEmpty() && !pixmap.load(QString::fromUtf8(picture.asChar())))
        TerrorHandler::report(TerrorHandler::kWarning, Tstring::tFormat("Unable to load image: ^1s", picture));
    setPixmap(pixmap);
}
