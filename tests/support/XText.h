#pragma once

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnX11.h"

#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

/** What the X server makes of a text: the reference for text in OpenGL. */
class XText
{
public:
    using Pixels = std::set<std::pair<int, int>>; ///< x, and y upwards

    explicit XText(const char* fontName)
        : fDisplay(static_cast<Display*>(T3dPort::getDisplay())), fFont(XLoadQueryFont(fDisplay, fontName))
    {
    }
    ~XText() { XFreeFont(fDisplay, fFont); }
    XText(const XText&) = delete;
    XText& operator=(const XText&) = delete;

    const XFontStruct& font() const { return *fFont; }
    int width(const std::string& text) const { return XTextWidth(fFont, text.data(), int(text.size())); }

    /** The pixels of @p text, the row below its base line at 0, which is where glXUseXFont puts it. */
    Pixels pixels(const std::string& text) const
    {
        const int margin = fFont->ascent + fFont->descent;
        const int w = width(text) + 2 * margin;
        const int h = 2 * margin;
        const Pixmap map = XCreatePixmap(fDisplay, DefaultRootWindow(fDisplay), unsigned(w), unsigned(h), 1);
        const GC gc = XCreateGC(fDisplay, map, 0, nullptr);
        XSetFont(fDisplay, gc, fFont->fid);
        XSetForeground(fDisplay, gc, 0);
        XFillRectangle(fDisplay, map, gc, 0, 0, unsigned(w), unsigned(h));
        XSetForeground(fDisplay, gc, 1);
        XDrawString(fDisplay, map, gc, margin, margin, text.data(), int(text.size()));
        XImage* image = XGetImage(fDisplay, map, 0, 0, unsigned(w), unsigned(h), 1, XYPixmap);
        Pixels set;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (XGetPixel(image, x, y))
                    set.emplace(x - margin, margin - y);
        XDestroyImage(image);
        XFreeGC(fDisplay, gc);
        XFreePixmap(fDisplay, map);
        return set;
    }

private:
    Display* fDisplay;
    XFontStruct* fFont;
};

/** @p pixels moved, as far as they stay inside @p clip. */
inline XText::Pixels moved(const XText::Pixels& pixels, int dx, int dy, const TportRect& clip)
{
    XText::Pixels set;
    for (const auto& [x, y] : pixels)
        if (x + dx >= clip.left && x + dx < clip.right && y + dy >= clip.bottom && y + dy < clip.top)
            set.emplace(x + dx, y + dy);
    return set;
}

/** The pixels of the current context's lower left corner that have @p rgb, as 0xRRGGBB. */
inline XText::Pixels drawnPixels(int width, int height, unsigned rgb)
{
    std::vector<GLubyte> bytes(std::size_t(4 * width * height));
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    XText::Pixels set;
    for (int i = 0; i < width * height; ++i)
        if ((unsigned(bytes[4 * i]) << 16 | unsigned(bytes[4 * i + 1]) << 8 | bytes[4 * i + 2]) == rgb)
            set.emplace(i % width, i / width);
    return set;
}
