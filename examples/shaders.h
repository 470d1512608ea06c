// Programs of OpenGL ES 2, for the examples that have any.
#pragma once
#include <GLES2/gl2.h>

namespace examples
{
// Compiles and links; a mistake in a shader ends the program with the driver's log.
GLuint BuildProgram(char const* vertexSource, char const* fragmentSource);
}  // namespace examples
