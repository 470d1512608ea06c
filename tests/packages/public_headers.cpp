// Somebody's program that calls the library by its public headers. test_packages.py compiles it by what an
// installation has.
#include <cstdio>
#include <profiler/npl.h>
#include <wrappers/egl.h>
#include <wrappers/es1.h>
#include <wrappers/es2.h>

int main()
{
    SSPSCommsData* const link = nplInitialise("program", 7);
    Egl::ClearError();
    Es1::ClearError();
    Es2::ClearError();
    std::printf("%s %#x %#x %#x\n", link ? "linked" : "not linked", Egl::getError(), Es1::getError(),
                Es2::getError());
    nplShutdown(link);
}
