#include "foundation/LirnGetEnv.h"

#include <cstdlib>

const char* LirnGetEnv(const char* name)
{
    return name ? std::getenv(name) : nullptr;
}
