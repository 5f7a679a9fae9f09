#pragma once

#include <utility>
#include <vector>

using Environment = std::vector<std::pair<const char*, const char*>>;

/** True in the process that rerun() has started. */
bool isRerun();

/**
 * Runs the test under way once more, from the start of the program, with the environment variables @p changes. Fails
 * where that does, with what it wrote. A @p missing X extension is asked of an X server of its own that lacks it.
 */
void rerun(const Environment& changes, const char* missing = nullptr);
