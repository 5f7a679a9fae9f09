#pragma once

#include "foundation/Tarray.h"
#include "foundation/Tstring.h"

using TstringArray = Tarray<Tstring>;
