#pragma once

/** A rectangle of the control layer, in pixels. */
class Trect
{
public:
    void set(short newLeft, short newTop, short newRight, short newBottom)
    {
        left = newLeft;
        top = newTop;
        right = newRight;
        bottom = newBottom;
    }

    short left = 0;
    short top = 0;
    short right = 0;
    short bottom = 0;
};
