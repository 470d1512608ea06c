// GLES2 wrappers: vertex attributes and vertex array objects.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es2
{

void _glDisableVertexAttribArray(GLuint index) { Trace(Calls::glDisableVertexAttribArray, index); }

void _glEnableVertexAttribArray(GLuint index) { Trace(Calls::glEnableVertexAttribArray, index); }

void _glGetVertexAttribfv(GLuint index, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetVertexAttribfv, index, pname, OutArray(params, GlVertexAttribSize(pname)));
}

void _glGetVertexAttribiv(GLuint index, GLenum pname, GLint* params)
{
    Trace(Calls::glGetVertexAttribiv, index, pname, OutArray(params, GlVertexAttribSize(pname)));
}

void _glGetVertexAttribPointerv(GLuint index, GLenum pname, void** pointer)
{
    Trace(Calls::glGetVertexAttribPointerv, index, pname, OutLowByte(pointer));
}

void _glVertexAttrib1f(GLuint index, GLfloat x) { Trace(Calls::glVertexAttrib1f, index, x); }

void _glVertexAttrib1fv(GLuint index, const GLfloat* v)
{
    Trace(Calls::glVertexAttrib1fv, index, FixedArray(v, 1));
}

void _glVertexAttrib2f(GLuint index, GLfloat x, GLfloat y) { Trace(Calls::glVertexAttrib2f, index, x, y); }

void _glVertexAttrib2fv(GLuint index, const GLfloat* v)
{
    Trace(Calls::glVertexAttrib2fv, index, FixedArray(v, 2));
}

void _glVertexAttrib3f(GLuint index, GLfloat x, GLfloat y, GLfloat z)
{
    Trace(Calls::glVertexAttrib3f, index, x, y, z);
}

void _glVertexAttrib3fv(GLuint index, const GLfloat* v)
{
    Trace(Calls::glVertexAttrib3fv, index, FixedArray(v, 3));
}

void _glVertexAttrib4f(GLuint index, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    Trace(Calls::glVertexAttrib4f, index, x, y, z, w);
}

void _glVertexAttrib4fv(GLuint index, const GLfloat* v)
{
    Trace(Calls::glVertexAttrib4fv, index, FixedArray(v, 4));
}

void _glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                            const void* pointer)
{
    Trace(Calls::glVertexAttribPointer, index, size, type, normalized, stride, pointer);
}

void _glBindVertexArrayOES(GLuint array) { Trace(Calls::glBindVertexArrayOES, array); }

void _glDeleteVertexArraysOES(GLsizei n, const GLuint* arrays)
{
    Trace(Calls::glDeleteVertexArraysOES, n, InArray(arrays, n));
}

void _glGenVertexArraysOES(GLsizei n, GLuint* arrays)
{
    Trace(Calls::glGenVertexArraysOES, n, InArray(arrays, n));
}

GLboolean _glIsVertexArrayOES(GLuint array) { return Trace(Calls::glIsVertexArrayOES, array); }

void _glVertexAttribDivisorANGLE(GLuint index, GLuint divisor)
{
    Trace(Calls::glVertexAttribDivisorANGLE, index, divisor);
}

}  // namespace Es2
