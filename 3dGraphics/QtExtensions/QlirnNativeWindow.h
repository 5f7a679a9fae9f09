#pragma once

#include <QSize>
#include <QWidget>

#include <memory>

#include <cstdint>

#include "QtExtensions/QlirnX11.h"

/**
 * The X window that a GL widget draws in.
 *
 * Qt 5 gives no way to replace a widget's native window by one made with a GLX visual of our choice, so the window is a
 * child that covers the widget's. It selects exposures only and lets the pointer through, so that the widget's window
 * gets the events, where Qt reads them. The widget tells it about sizes and about a changed native window.
 */
class QlirnNativeWindow
{
public:
    /** A window with @p visual and a colormap for it, over @p widget; nothing at all without a visual. */
    QlirnNativeWindow(QWidget* widget, const XVisualInfo* visual);
    ~QlirnNativeWindow();

    QlirnNativeWindow(const QlirnNativeWindow&) = delete;
    QlirnNativeWindow& operator=(const QlirnNativeWindow&) = delete;

    /** 0 without a visual, and while the widget has no native window. */
    Window id() const { return fWindow; }

    /** To be called before the widget is painted: what was uncovered before needs no painting of its own then. */
    void beginPaint();
    /** Repaints the widget for an exposure of request number @p sequence, unless it was painted since. */
    void exposed(std::uint32_t sequence);

    /** To be called when a context was bound to the window, and when a frame was drawn and shown. */
    void bound() { fBoundSinceFrame = true; }
    void frameShown() { fBoundSinceFrame = false; }

    /** Takes the widget's size; when this returns, the server has done so too. */
    void followSize();
    /** Moves into the widget's present native window, after Qt has given it another. */
    void followParent();

    /** The widget's size in device pixels, which are the pixels of its port. */
    static QSize deviceSize(const QWidget* widget);

private:
    class ParentWatch;

    void create();
    void destroy();
    /** Lets go of the window: nothing is bound to it any more, and its exposures are not heard. */
    void retire();
    void replace();
    QSize windowSize() const;
    bool isAlive() const;

    QWidget* fWidget;
    Display* fDisplay;
    ::Visual* fVisual;
    int fDepth;
    Colormap fColormap = QlirnX11::kNone;
    Window fWindow = QlirnX11::kNone;
    Window fParent = QlirnX11::kNone;
    QSize fSize;
    bool fBoundSinceFrame = true; ///< a context was bound to the window after the last frame
    std::unique_ptr<ParentWatch> fParentWatch;
    std::uint32_t fPaintSequence = 0; ///< number of the first X request of the last paint
};
