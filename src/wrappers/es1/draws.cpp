// GLES1 wrappers: draw calls.
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/index_data.h"

namespace Es1
{

void _glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    Trace(Calls::glDrawArrays, mode, first, count);
}

void _glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    CFrame frame(Calls::glDrawElements, mode, count, type, indices);
    frame.CallHost();
    bool const inBuffer =
        frame.IsRecording() && frame.RecordsData() && HostInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING) != 0;
    frame.Record(mode, count, type, IndexData(indices, count, type, inBuffer));
}

void _glMultiDrawElementsEXT(GLenum mode, const GLsizei* count, GLenum type, const void* const* indices,
                             GLsizei primcount)
{
    Trace(Calls::glMultiDrawElementsEXT, mode, count, type, indices, primcount);
}

// On purpose: the first word behind count is taken for the number of firsts.
void _glMultiDrawArraysEXT(GLenum mode, const GLint* first, const GLsizei* count, GLsizei primcount)
{
    Trace(Calls::glMultiDrawArraysEXT, mode, InArrayBehind(first, count), InArray(count, 1u), primcount);
}

void _glDrawTexsOES(GLshort x, GLshort y, GLshort z, GLshort width, GLshort height)
{
    Trace(Calls::glDrawTexsOES, x, y, z, width, height);
}

void _glDrawTexiOES(GLint x, GLint y, GLint z, GLint width, GLint height)
{
    Trace(Calls::glDrawTexiOES, x, y, z, width, height);
}

void _glDrawTexxOES(GLfixed x, GLfixed y, GLfixed z, GLfixed width, GLfixed height)
{
    Trace(Calls::glDrawTexxOES, x, y, z, width, height);
}

void _glDrawTexsvOES(const GLshort* coords) { Trace(Calls::glDrawTexsvOES, FixedArray(coords, 5)); }

void _glDrawTexivOES(const GLint* coords) { Trace(Calls::glDrawTexivOES, FixedArray(coords, 5)); }

void _glDrawTexxvOES(const GLfixed* coords) { Trace(Calls::glDrawTexxvOES, FixedArray(coords, 5)); }

void _glDrawTexfOES(GLfloat x, GLfloat y, GLfloat z, GLfloat width, GLfloat height)
{
    Trace(Calls::glDrawTexfOES, x, y, z, width, height);
}

void _glDrawTexfvOES(const GLfloat* coords) { Trace(Calls::glDrawTexfvOES, FixedArray(coords, 5)); }

}  // namespace Es1
