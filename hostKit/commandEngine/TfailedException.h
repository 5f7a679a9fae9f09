#pragma once

#include "commandEngine/Texception.h"

/** The command can't do what its arguments ask for. */
class TfailedException : public Texception
{
public:
    using Texception::Texception;
};
