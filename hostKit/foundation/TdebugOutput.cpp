#include "foundation/TdebugOutput.h"

#include <cstdarg>

TdebugOutput& TdebugOutput::sCerr()
{
    static TdebugOutput output(stderr);
    return output;
}

TdebugOutput& TdebugOutput::sCout()
{
    static TdebugOutput output(stdout);
    return output;
}

TdebugOutput& TdebugOutput::operator<<(const char* text)
{
    std::fputs(text ? text : "", fFile);
    return *this;
}

TdebugOutput& TdebugOutput::operator<<(const Tstring& text)
{
    std::fwrite(text.asChar(), 1, text.length(), fFile);
    return *this;
}

TdebugOutput& TdebugOutput::operator<<(double number)
{
    return printf("%g", number);
}

TdebugOutput& TdebugOutput::operator<<(int number)
{
    return printf("%d", number);
}

TdebugOutput& TdebugOutput::printf(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(fFile, format, arguments);
    va_end(arguments);
    return *this;
}

void TdebugOutput::flush()
{
    std::fflush(fFile);
}
