# 32-bit ARM under Linux: Debian's cross compiler against the sysroot that ../armhf-sysroot.sh makes, and qemu-user
# for what the build itself must run, such as a test that is asked for its cases.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(NEBTRACE_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../../build/armhf-sysroot" CACHE PATH "The target's headers and libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES NEBTRACE_SYSROOT)
get_filename_component(CMAKE_SYSROOT "${NEBTRACE_SYSROOT}" ABSOLUTE)

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm;-L;${CMAKE_SYSROOT})

# One compiler builds all of it, so that what GCC 7 changed in passing arguments is of no interest.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

# Programs are the machine's own; libraries, headers and packages are the target's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
