#include "foundation/TglobalTranslatorBase.h"

unsigned TglobalTranslatorBase::fsConditions = 0;
