// For programs that use the machine's drivers, in a build that looks for leaks. What a driver keeps for the
// life of the process is found through the driver's own variables, and told by the name of the library that
// allocated it: the driver has to be there when the process ends.
#include <dlfcn.h>

#define SEEN_BY_LIBRARIES extern "C" __attribute__((visibility("default")))

SEEN_BY_LIBRARIES int dlclose(void*) noexcept { return 0; }

// What the machine's own libraries leave behind, and the link to a performance server, which a forked child
// leaves to its parent.
SEEN_BY_LIBRARIES char const* __lsan_default_suppressions()
{
    return "leak:swrast_dri.so\n"
           "leak:libEGL_mesa.so\n"
           "leak:CProfiler::OpenComms\n";
}

// Scripts compare what a program prints.
SEEN_BY_LIBRARIES char const* __lsan_default_options() { return "print_suppressions=0"; }

// They look at the signal that ends a program, too, and some load a library of theirs ahead of all others.
SEEN_BY_LIBRARIES char const* __asan_default_options()
{
    return "handle_segv=0:handle_abort=0:verify_asan_link_order=0";
}
