#include "image/TimageFile.h"

#include "foundation/TpixelMap.h"

#include <QImage>
#include <QString>

bool TimageFile::create(const Tstring& name, int width, int height)
{
    close();
    if (width <= 0 || height <= 0)
        return false;
    fName = name;
    fWidth = width;
    fHeight = height;
    return true;
}

bool TimageFile::write(const TpixelMap& map)
{
    if (fName.isEmpty() || !map.pixels() || map.width() != fWidth || map.height() != fHeight)
        return false;
    const QImage::Format format = map.channels() == 3 ? (map.isRgba() ? QImage::Format_RGB888 : QImage::Format_BGR888)
                                  : map.isRgba()      ? (fAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888)
                                                      : (fAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QImage bottomUp(map.pixels(), fWidth, fHeight, static_cast<int>(map.rowBytes()), format);
    // In the formats without alpha the fourth byte must not matter, but RGBX files would keep it.
    const QImage topDown = bottomUp.mirrored().convertToFormat(fAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return topDown.save(QString::fromUtf8(fName.asChar()));
}

void TimageFile::close()
{
    fName = Tstring();
    fWidth = 0;
    fHeight = 0;
}
