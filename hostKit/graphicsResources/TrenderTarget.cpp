#include "graphicsResources/TrenderTarget.h"

TrenderTarget::~TrenderTarget() = default;
