#pragma once

class QCursor;

/** The shapes of the pointer. */
class TcursorShape
{
public:
    enum Tshape {
        kDefault, ///< the arrow
        kWait,
        kBusy,
        kCross,
        kHand,
        kText,
        kSizeHorizontal,
        kSizeVertical,
        kSizeAll,
        kForbidden,
        kBlank
    };

    /** The cursor of a shape; the default one for a value that is none. */
    static QCursor getCursor(Tshape shape);
};
