#pragma once

#include "foundation/Tstring.h"

#include <vector>

/** A cached state of a port and its value in words. */
struct TstateValue
{
    Tstring fName; ///< "blend source"
    /**
     * OpenGL's own name ("GL_SRC_ALPHA"), "on" or "off", or a number with the digits that tell a float from any other one;
     * several in brackets ("[0 0 640 480]"). Empty where it is not known.
     */
    Tstring fValue;

    friend bool operator==(const TstateValue& a, const TstateValue& b)
    {
        return a.fName == b.fName && a.fValue == b.fValue;
    }
};

/** All states of a port, in an order that is the same for every port. */
using TstateValues = std::vector<TstateValue>;
