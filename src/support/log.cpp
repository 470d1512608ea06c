#include "support/log.h"
#include "support/string.h"
#include <cstdarg>
#include <cstdio>

void LogMessage(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::printf("NEBTRACE(M) %s\n", NEBTStringFromFormattedArguments(format, arguments).c_str());
    va_end(arguments);
}

void LogWarning(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::printf("NEBTRACE(W) WARNING: %s\n", NEBTStringFromFormattedArguments(format, arguments).c_str());
    va_end(arguments);
}

void LogError(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::printf("NEBTRACE(W) ERROR: %s\n", NEBTStringFromFormattedArguments(format, arguments).c_str());
    va_end(arguments);
}

void LogRaw(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::printf("%s", NEBTStringFromFormattedArguments(format, arguments).c_str());
    va_end(arguments);
}
