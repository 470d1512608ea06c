#include "profiler/data_path.h"
#include <cstdarg>
#include <cstdio>

SToPrintf::~SToPrintf() {}

CDataPath::~CDataPath() {}

CDataPathHerd::~CDataPathHerd() {}

void ToPrintf(SToPrintf* sink, char const* format, ...)
{
    if (!sink)
        return;
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    sink->Print(text);
}

int CDataPath::DataSend(unsigned int word)
{
    static_assert(sizeof word == 4, "a word on the wire has four bytes");
    return DataSendBytes(reinterpret_cast<char const*>(&word), sizeof word);
}
