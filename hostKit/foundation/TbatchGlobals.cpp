#include "foundation/TbatchGlobals.h"

bool TbatchGlobals::fUseNonAffineXformCalculations = false;
bool TbatchGlobals::fMultithreaded = false;
