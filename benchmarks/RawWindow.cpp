#include "RawWindow.h"

#include <iterator>

RawWindow::RawWindow(Display* display, Window parent, unsigned width, unsigned height, bool doubleBuffered,
                     const RawWindow* shareWith)
    : fDisplay(display)
{
    // The list that a port asks for, with the optional entry last.
    int attributes[] = {
        GLX_RGBA, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_BUFFER_SIZE, 24, GLX_DEPTH_SIZE, 24, 0, 0};
    if (doubleBuffered)
        attributes[std::size(attributes) - 2] = GLX_DOUBLEBUFFER;
    fVisual = glXChooseVisual(display, DefaultScreen(display), attributes);
    if (!fVisual)
        return;
    fColormap = XCreateColormap(display, parent, fVisual->visual, AllocNone);
    XSetWindowAttributes settings{};
    settings.colormap = fColormap;
    settings.event_mask = ExposureMask;
    fWindow = XCreateWindow(display, parent, 0, 0, width, height, 0, fVisual->depth, InputOutput, fVisual->visual,
                            CWColormap | CWBorderPixel | CWEventMask, &settings);
    XMapWindow(display, fWindow);
    fContext = glXCreateContext(display, fVisual, shareWith ? shareWith->fContext : nullptr, QlirnX11::kTrue);
    makeCurrent();
}

RawWindow::~RawWindow()
{
    if (fContext) {
        if (glXGetCurrentContext() == fContext)
            glXMakeCurrent(fDisplay, QlirnX11::kNone, nullptr);
        glXDestroyContext(fDisplay, fContext);
    }
    if (fWindow)
        XDestroyWindow(fDisplay, fWindow);
    if (fColormap)
        XFreeColormap(fDisplay, fColormap);
    if (fVisual)
        XFree(fVisual);
}
