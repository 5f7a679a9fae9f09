#include <QRect>
#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include "QtExtensions/QlirnShownPixels.h"

#include "foundation/TpixelMap.h"

namespace {

/** The channel of @p pixel under @p mask as a byte. */
std::uint8_t channel(unsigned long pixel, unsigned long mask)
{
    return mask ? static_cast<std::uint8_t>((pixel & mask) * 255 / mask) : std::uint8_t(0);
}

} // namespace

bool QlirnShownPixels::read(unsigned long window, int x, int y, TpixelMap& map)
{
    Display* display = QX11Info::display();
    XWindowAttributes shown{};
    Window child = QlirnX11::kNone;
    int left = 0;
    int top = 0;
    if (!display || !window || !map.pixels() || !XGetWindowAttributes(display, window, &shown) ||
        shown.map_state != IsViewable || !XTranslateCoordinates(display, window, shown.root, 0, 0, &left, &top, &child))
        return false;
    const QRect screen(-left, -top, WidthOfScreen(shown.screen), HeightOfScreen(shown.screen));
    const QRect wanted(x, shown.height - y - map.height(), map.width(), map.height());
    const QRect area = wanted & screen & QRect(0, 0, shown.width, shown.height);
    if (area.isEmpty())
        return false;
    XImage* image = XGetImage(display, window, area.x(), area.y(), unsigned(area.width()), unsigned(area.height()),
                              AllPlanes, ZPixmap);
    if (!image)
        return false;
    const int red = map.isRgba() ? 0 : 2;
    for (int row = 0; row < area.height(); ++row) {
        std::uint8_t* to = map.pixels() + std::size_t(wanted.bottom() - area.top() - row) * map.rowBytes() +
                           std::size_t(area.left() - wanted.left()) * TpixelMap::kChannels;
        for (int column = 0; column < area.width(); ++column, to += TpixelMap::kChannels) {
            const unsigned long pixel = XGetPixel(image, column, row);
            to[red] = channel(pixel, image->red_mask);
            to[1] = channel(pixel, image->green_mask);
            to[2 - red] = channel(pixel, image->blue_mask);
            to[3] = 255;
        }
    }
    XDestroyImage(image);
    return true;
}
