// Reaches the API at run time: reach_loaded global|local|procaddress EGL-LIBRARY GLES-LIBRARY.
#include "reach.h"
#include <dlfcn.h>
#include <string>

static void* Load(char const* name, int flags)
{
    void* const library = dlopen(name, RTLD_NOW | flags);
    if (!library)
        std::fprintf(stderr, "%s\n", dlerror());
    CHECK(library);
    return library;
}

int main(int argc, char** argv)
{
    CHECK(argc == 4);
    std::string const way = argv[1];
    int const flags = way == "local" ? RTLD_LOCAL : RTLD_GLOBAL;
    void* const eglLibrary = Load(argv[2], flags);
    void* const glLibrary = way == "procaddress" ? nullptr : Load(argv[3], flags);

    auto const getProcAddress =
        reinterpret_cast<decltype(&eglGetProcAddress)>(dlsym(eglLibrary, "eglGetProcAddress"));
    CHECK(getProcAddress);
    auto const find = [&](auto& function, char const* name) {
        using Function = std::remove_reference_t<decltype(function)>;
        if (way == "procaddress")
            function = reinterpret_cast<Function>(getProcAddress(name));
        else
            function = reinterpret_cast<Function>(dlsym(name[0] == 'e' ? eglLibrary : glLibrary, name));
        CHECK(function);
    };
    Egl egl{};
    Gl gl{};
    FindAll(egl, gl, find);
    DrawFrame(egl, gl);
}
