#pragma once

#include "foundation/Tstring.h"

/** A host's own bitmap path: one folder. */
class TxpmUtil
{
public:
    static Tstring getFullPathName(const Tstring& name);
};
