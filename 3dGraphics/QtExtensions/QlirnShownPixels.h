#pragma once

class TpixelMap;

/** What the X server shows of a window. */
class QlirnShownPixels
{
public:
    /**
     * Reads the pixels of X window @p window from (@p x, @p y), counted from its lower left corner, into @p map. Those that
     * are outside the window or the screen are left as they are; where another window is in front, that one's are read.
     * False when nothing is to be seen. (XGetImage)
     */
    static bool read(unsigned long window, int x, int y, TpixelMap& map);
};
