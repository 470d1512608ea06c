// GLES1 wrappers: client arrays.
#include "wrappers/calls.h"

namespace Es1
{

void _glClientActiveTexture(GLenum texture) { Trace(Calls::glClientActiveTexture, texture); }

void _glColorPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glColorPointer, size, type, stride, pointer);
}

void _glDisableClientState(GLenum array) { Trace(Calls::glDisableClientState, array); }

void _glEnableClientState(GLenum array) { Trace(Calls::glEnableClientState, array); }

void _glGetPointerv(GLenum pname, void** params) { Trace(Calls::glGetPointerv, pname, OutArray(params, 1)); }

void _glNormalPointer(GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glNormalPointer, type, stride, pointer);
}

void _glTexCoordPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glTexCoordPointer, size, type, stride, pointer);
}

void _glVertexPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glVertexPointer, size, type, stride, pointer);
}

void _glPointSizePointerOES(GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glPointSizePointerOES, type, stride, pointer);
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

void _glMatrixIndexPointerOES(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glMatrixIndexPointerOES, size, type, stride, pointer);
}

void _glWeightPointerOES(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    Trace(Calls::glWeightPointerOES, size, type, stride, pointer);
}

}  // namespace Es1
