#include "Graphics/textures/TglTexObjUpdater.h"

TglTexObjUpdater::TglTexObjUpdater() = default;
TglTexObjUpdater::~TglTexObjUpdater() = default;
