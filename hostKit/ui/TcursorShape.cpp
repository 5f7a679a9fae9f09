#include "ui/TcursorShape.h"

#include <QCursor>

QCursor TcursorShape::getCursor(Tshape shape)
{
    switch (shape) {
    case kDefault:
        return Qt::ArrowCursor;
    case kWait:
        return Qt::WaitCursor;
    case kBusy:
        return Qt::BusyCursor;
    case kCross:
        return Qt::CrossCursor;
    case kHand:
        return Qt::PointingHandCursor;
    case kText:
        return Qt::IBeamCursor;
    case kSizeHorizontal:
        return Qt::SizeHorCursor;
    case kSizeVertical:
        return Qt::SizeVerCursor;
    case kSizeAll:
        return Qt::SizeAllCursor;
    case kForbidden:
        return Qt::ForbiddenCursor;
    case kBlank:
        return Qt::BlankCursor;
    }
    return Qt::ArrowCursor;
}
