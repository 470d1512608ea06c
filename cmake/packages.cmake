# The Debian packages: cpack --config CPackConfig.cmake, see ./dev package. Each component is one, by its own name.
set(NEBTRACE_MAINTAINER "NEBTrace maintainers <nebtrace@localhost>" CACHE STRING "Who answers for the Debian packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${NEBTRACE_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL libnebtrace1 libnebtrace-dev)
if(NEBTRACE_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL nebtrace)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(CMAKE_LIBRARY_ARCHITECTURE STREQUAL "arm-linux-gnueabihf")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)  # else it is that of the machine which builds
endif()

# What the machine's packages have to be is asked where Debian's tools for it are. The front ends use the library of
# their own package.
find_program(NEBTRACE_SHLIBDEPS dpkg-shlibdeps)
if(NEBTRACE_SHLIBDEPS AND NOT CMAKE_CROSSCOMPILING)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/src)
endif()

function(nebtrace_package name section description)
  string(TOUPPER ${name} component)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_COMPONENT_${component}_DESCRIPTION ${description} PARENT_SCOPE)
endfunction()

nebtrace_package(
  libnebtrace1 libs
  "recorder of EGL and OpenGL ES calls - library
A shared library that stands between an application and EGL, OpenGL ES 1 and
OpenGL ES 2, hands every call on to the machine's drivers, and writes it with
its arguments, result and error into a trace file. With it come front ends
that take the place of the machine's libraries for one application, from a
folder of their own.")
set(CPACK_DEBIAN_LIBNEBTRACE1_PACKAGE_RECOMMENDS "libegl1, libgles2")
set(CPACK_DEBIAN_LIBNEBTRACE1_PACKAGE_SUGGESTS libgles1)

nebtrace_package(
  nebtrace graphics
  "recorder of EGL and OpenGL ES calls - command
The command starts an unmodified application under the recorder, prints a
trace call by call, replays it, records over the network, and shows what
applications do in each frame.")
set(CPACK_DEBIAN_NEBTRACE_PACKAGE_DEPENDS "libnebtrace1 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_NEBTRACE_PACKAGE_RECOMMENDS "libegl1, libgles2")
set(CPACK_DEBIAN_NEBTRACE_PACKAGE_SUGGESTS "libgles1, libx11-6")

nebtrace_package(
  libnebtrace-dev libdevel
  "recorder of EGL and OpenGL ES calls - development files
The headers of the recorder's wrappers and of its link to a performance
server, for front ends and applications that call the library themselves.")
set(CPACK_DEBIAN_LIBNEBTRACE-DEV_PACKAGE_DEPENDS
    "libnebtrace1 (= ${PROJECT_VERSION}), libegl-dev, libgles-dev")

include(CPack)
