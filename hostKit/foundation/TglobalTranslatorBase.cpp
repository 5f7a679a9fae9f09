#include "foundation/TglobalTranslatorBase.h"

bool TglobalTranslatorBase::fsNewingFile = false;
bool TglobalTranslatorBase::fsFlushingScene = false;
