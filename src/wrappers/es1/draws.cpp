// GLES1 wrappers: draw calls.
#include "wrappers/draws.h"
#include "state/vertex_attribs_handler.h"
#include "wrappers/calls.h"
#include "wrappers/es1/client_arrays.h"

namespace Es1
{

namespace
{

// The client arrays of VAHandler, which knows neither array objects nor contexts.
struct SArrays
{
    static constexpr char const* kNoPointer =
        "Es1Trace::_glDrawElements error trying to save VertexAttrib: No data pointer";

    static GLint Most() { return static_cast<GLint>(VAHandler.GetMaxVertexAttribs()); }
    static SElementBuffers const& Elements() { return ElementBuffers; }

    template <typename Visit>
    static void ForEach(Visit visit)
    {
        CVertexAttribsHandler::SAttrib const* const arrays = VAHandler.GetVertAttribs(0);
        for (uint32_t slot = 0; arrays && slot < VAHandler.attribCount; ++slot)
        {
            CVertexAttribsHandler::SAttrib const& array = arrays[slot];
            if (array.enabled && array.arrayBuffer == 0)
                visit({slot, array.size, array.type, array.stride, array.pointer});
        }
    }

    static bool IsReadByHost(SClientArray const& array) { return HostReadsClientArray(array); }
};

}  // namespace

void _glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    CFrame frame(Calls::glDrawArrays, mode, first, count);
    frame.CallHost();
    RecordDrawArrays<SArrays>(frame, mode, first, count);
}

void _glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    CFrame frame(Calls::glDrawElements, mode, count, type, indices);
    frame.CallHost();
    RecordDrawElements<SArrays>(frame, mode, {count, type, indices});
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
