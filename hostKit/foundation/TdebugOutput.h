#pragma once

#include "foundation/Tstring.h"

#include <cstdio>

/** A stream for traces. */
class TdebugOutput
{
public:
    /** Standard error. */
    static TdebugOutput& sCerr();
    /** Standard output, with the buffer of the C library. */
    static TdebugOutput& sCout();

    explicit TdebugOutput(std::FILE* file) : fFile(file) {}

    TdebugOutput& operator<<(const char* text);
    TdebugOutput& operator<<(const Tstring& text);
    TdebugOutput& operator<<(double number);
    TdebugOutput& operator<<(int number);
    /** As std::printf. */
    TdebugOutput& printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void flush();

private:
    std::FILE* fFile;
};
