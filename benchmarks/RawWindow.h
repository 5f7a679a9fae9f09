#pragma once

#include "QtExtensions/QlirnX11.h"

/**
 * What a program has to write to draw with OpenGL in a window when there is no port: a window of the wanted visual
 * inside a parent, and a GLX context that shares lists and textures with another.
 */
class RawWindow
{
public:
    /** Makes, maps and binds. @p shareWith may be null. */
    RawWindow(Display* display, Window parent, unsigned width, unsigned height, bool doubleBuffered,
              const RawWindow* shareWith);
    /** Releases the context if it is bound, and destroys both. */
    ~RawWindow();

    RawWindow(const RawWindow&) = delete;
    RawWindow& operator=(const RawWindow&) = delete;

    /** Binds it to find out. */
    bool isBindable() const
    {
        makeCurrent();
        return fContext && glXGetCurrentContext() == fContext;
    }
    GLXContext context() const { return fContext; }
    void makeCurrent() const { glXMakeCurrent(fDisplay, fWindow, fContext); }

private:
    Display* fDisplay;
    XVisualInfo* fVisual;
    Colormap fColormap = QlirnX11::kNone;
    Window fWindow = QlirnX11::kNone;
    GLXContext fContext = nullptr;
};
