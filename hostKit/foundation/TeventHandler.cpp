#include "foundation/TeventHandler.h"

bool TeventHandler::fsUseScrollWheel = true;

TeventHandler::~TeventHandler() = default;
