// A machine that has run out of memory: calloc gives none. By a wrap at link time, since an emulator does not
// take limits on memory from the program that it runs.
#pragma once

class NoMemory
{
public:
    NoMemory() { s_active = true; }
    ~NoMemory() { s_active = false; }
    NoMemory(NoMemory const&) = delete;
    NoMemory& operator=(NoMemory const&) = delete;

    static bool Active() { return s_active; }

private:
    static inline bool s_active = false;
};
