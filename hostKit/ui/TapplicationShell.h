#pragma once

struct _XDisplay;

/** The X side of the application's top level: where its display, default visual and default colours come from. */
class TapplicationShell
{
public:
    /** The application's shell; null before there is an application, and for one that is not on X. For any thread. */
    static const TapplicationShell* current();

    _XDisplay* display() const { return fDisplay; }
    /** Number of the display's screen that the application is on. */
    int screen() const { return fScreen; }

private:
    _XDisplay* fDisplay = nullptr;
    int fScreen = 0;
};
