#include "foundation/Taction.h"

Taction::~Taction() = default;

bool TfunctionAction::run(const Tevent& event)
{
    return fFunction && fFunction(event);
}
