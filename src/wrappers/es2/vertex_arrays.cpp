// GLES2 wrappers: vertex attributes and vertex array objects.
#include "wrappers/calls.h"
#include "wrappers/es2/track.h"
#include "wrappers/sizing.h"

namespace Es2
{

namespace
{

// A generic constant, its components as arguments.
template <typename Call, typename... T>
void TraceVertexAttrib(Call const& call, GLuint index, T... components)
{
    CFrame frame(call, index, components...);
    frame.CallHost();
    GLfloat const values[] = {components...};
    if (frame.MayTrack())
        Track::VertexAttrib(index, sizeof...(components), values);
    frame.Record(index, components...);
}

template <typename Call>
void TraceVertexAttribArray(Call const& call, GLuint index, const GLfloat* v, GLuint components)
{
    CFrame frame(call, index, v);
    frame.CallHost();
    if (frame.MayTrack())
        Track::VertexAttrib(index, components, v);
    frame.Record(index, FixedArray(v, components));
}

}  // namespace

void _glDisableVertexAttribArray(GLuint index)
{
    CFrame frame(Calls::glDisableVertexAttribArray, index);
    frame.CallHost();
    if (frame.Succeeded())
        Track::EnableVertexAttribArray(index, false);
    frame.Record(index);
}

void _glEnableVertexAttribArray(GLuint index)
{
    CFrame frame(Calls::glEnableVertexAttribArray, index);
    frame.CallHost();
    if (frame.Succeeded())
        Track::EnableVertexAttribArray(index, true);
    frame.Record(index);
}

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

void _glVertexAttrib1f(GLuint index, GLfloat x) { TraceVertexAttrib(Calls::glVertexAttrib1f, index, x); }

void _glVertexAttrib1fv(GLuint index, const GLfloat* v)
{
    TraceVertexAttribArray(Calls::glVertexAttrib1fv, index, v, 1);
}

void _glVertexAttrib2f(GLuint index, GLfloat x, GLfloat y)
{
    TraceVertexAttrib(Calls::glVertexAttrib2f, index, x, y);
}

void _glVertexAttrib2fv(GLuint index, const GLfloat* v)
{
    TraceVertexAttribArray(Calls::glVertexAttrib2fv, index, v, 2);
}

void _glVertexAttrib3f(GLuint index, GLfloat x, GLfloat y, GLfloat z)
{
    TraceVertexAttrib(Calls::glVertexAttrib3f, index, x, y, z);
}

void _glVertexAttrib3fv(GLuint index, const GLfloat* v)
{
    TraceVertexAttribArray(Calls::glVertexAttrib3fv, index, v, 3);
}

void _glVertexAttrib4f(GLuint index, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    TraceVertexAttrib(Calls::glVertexAttrib4f, index, x, y, z, w);
}

void _glVertexAttrib4fv(GLuint index, const GLfloat* v)
{
    TraceVertexAttribArray(Calls::glVertexAttrib4fv, index, v, 4);
}

void _glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                            const void* pointer)
{
    CFrame frame(Calls::glVertexAttribPointer, index, size, type, normalized, stride, pointer);
    frame.CallHost();
    if (frame.MayTrack())
        Track::VertexAttribIsArray(index);
    if (frame.SucceededWithData())
        Track::VertexAttribPointer(index, size, type, normalized, stride, pointer);
    frame.Record(index, size, type, normalized, stride, pointer);
}

void _glVertexAttribDivisorANGLE(GLuint index, GLuint divisor)
{
    Trace(Calls::glVertexAttribDivisorANGLE, index, divisor);
}

}  // namespace Es2
