#include "foundation/TbatchGlobals.h"

bool TbatchGlobals::fUseNonAffineXformCalculations = false;
