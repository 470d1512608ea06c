// Prints what people read about the command and the configuration, from what the programs go by. Built with
// the rest and never installed.
#include "manual/config_keys.h"
#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc != 2 || std::strcmp(argv[1], "config-keys") != 0)
    {
        std::fputs("Usage: manual config-keys\n", stderr);
        return 2;
    }
    std::fputs(manual::ConfigKeysDocument().c_str(), stdout);
}
