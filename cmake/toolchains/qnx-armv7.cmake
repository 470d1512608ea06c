# QNX Neutrino on 32-bit ARM, after the names that the vendor documents for its compiler driver. Untested: it needs
# the vendor's development platform, 7.1 or later for C++17, with QNX_HOST and QNX_TARGET set by its environment
# script.
#
# Only the library and the front ends are for the target; see the preset of this name.
set(CMAKE_SYSTEM_NAME QNX)
set(CMAKE_SYSTEM_PROCESSOR armv7)

# What follows -V: compiler and target architecture, little-endian ARMv7.
set(NEBTRACE_QNX_VARIANT gcc_ntoarmv7le)
set(CMAKE_C_COMPILER qcc)
set(CMAKE_C_COMPILER_TARGET ${NEBTRACE_QNX_VARIANT})
set(CMAKE_CXX_COMPILER q++)
set(CMAKE_CXX_COMPILER_TARGET ${NEBTRACE_QNX_VARIANT})
set(CMAKE_AR $ENV{QNX_HOST}/usr/bin/ntoarmv7-ar CACHE FILEPATH "Archiver")
set(CMAKE_RANLIB $ENV{QNX_HOST}/usr/bin/ntoarmv7-ranlib CACHE FILEPATH "Index of archives")

set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

# Programs are the machine's own; libraries, headers and packages are the target's.
set(CMAKE_FIND_ROOT_PATH $ENV{QNX_TARGET} $ENV{QNX_TARGET}/armle-v7)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
