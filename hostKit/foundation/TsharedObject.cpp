#include "foundation/TsharedObject.h"

TsharedObject::~TsharedObject() = default;
