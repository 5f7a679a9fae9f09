#pragma once

/**
 * The value of an environment variable (getenv); it lasts until the environment changes.
 * @return null when the variable is not there, and for a null name. One that is there may be empty.
 */
const char* LirnGetEnv(const char* name);
