#include "Graphics/glResources/TglLineStipple.h"

const TglLineStipple TglLineStipple::kSolid(0xFFFF);
const TglLineStipple TglLineStipple::kDotted(0x5555);
const TglLineStipple TglLineStipple::kLongDotted(0x7777);
const TglLineStipple TglLineStipple::kShortDotted(0x1111);
const TglLineStipple TglLineStipple::kDashed(0x3333);
const TglLineStipple TglLineStipple::kLongDashed(0x3F3F);
const TglLineStipple TglLineStipple::kShortDashed(0x0303);
