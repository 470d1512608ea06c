// Loads EGL as programs do that may need it, and makes no call.
#include <dlfcn.h>

int main() { return dlopen("libEGL.so.1", RTLD_NOW) ? 0 : 1; }
