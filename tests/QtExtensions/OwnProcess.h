#pragma once

#include <string>
#include <utility>
#include <vector>

using Environment = std::vector<std::pair<const char*, const char*>>;

/** True in the process that rerun() has started. */
bool isRerun();

/**
 * Runs the test under way once more, from the start of the program, with the environment variables @p changes. Fails
 * where that does, with what it wrote.
 */
void rerun(const Environment& changes);

/** An X server without the extension @p missing, for as long as this lives. */
class LesserDisplay
{
public:
    explicit LesserDisplay(const char* missing);
    LesserDisplay(const LesserDisplay&) = delete;
    LesserDisplay& operator=(const LesserDisplay&) = delete;
    ~LesserDisplay();

    /** The name for DISPLAY; empty when the server did not start. */
    const std::string& name() const { return fName; }

private:
    class QProcess* fServer;
    std::string fName;
};
