// What each call that succeeded adds to the counters. Each family ignores the calls that are not its own.
#include "profiler/call_arguments.h"
#include "profiler/profiler.h"
#include "profiler/profiler_mutex.h"
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"

namespace
{

void Count(CProfiler& profiler, CProfiler::ECounters counter, unsigned int amount = 1)
{
    profiler.IncrementCounter(counter, amount);
}

// The application's value, in the 32 bits of a counter.
template <typename T>
unsigned int Amount(void const* const* args, int index)
{
    return static_cast<unsigned int>(CallArgument<T>(args, index));
}

// Of one kind, and of all kinds together.
void CountShapes(CProfiler& profiler, CProfiler::ECounters kind, CProfiler::ECounters all,
                 unsigned int amount)
{
    Count(profiler, kind, amount);
    Count(profiler, all, amount);
}

// On purpose: a strip or fan that is too short counts a negative number, as which it takes from the sums.
void CountPrimitives(CProfiler& profiler, GLenum mode, GLsizei count)
{
    if (count == 0)
        return;
    auto const vertices = static_cast<unsigned int>(count);
    switch (mode)
    {
    case GL_POINTS:
        return Count(profiler, CProfiler::ePoints, vertices);
    case GL_LINES:
        return CountShapes(profiler, CProfiler::eLineList, CProfiler::eLines,
                           static_cast<unsigned int>(count / 2));
    case GL_LINE_LOOP:
        return CountShapes(profiler, CProfiler::eLineLoop, CProfiler::eLines, vertices);
    case GL_LINE_STRIP:
        return CountShapes(profiler, CProfiler::eLineStrip, CProfiler::eLines, vertices - 1);
    case GL_TRIANGLES:
        return CountShapes(profiler, CProfiler::eTriangleList, CProfiler::eTriangles,
                           static_cast<unsigned int>(count / 3));
    case GL_TRIANGLE_STRIP:
        return CountShapes(profiler, CProfiler::eTriangleStrip, CProfiler::eTriangles, vertices - 2);
    case GL_TRIANGLE_FAN:
        return CountShapes(profiler, CProfiler::eTriangleFan, CProfiler::eTriangles, vertices - 2);
    default:
        return;
    }
}

// On purpose: draws of several instances, the multi draws and glDrawTex count nowhere.
void CountDraw(CProfiler& profiler, int id, void const* const* args)
{
    switch (id)
    {
    case Es1::Calls::glDrawArrays.id:
    case Es2::Calls::glDrawArrays.id:
        Count(profiler, CProfiler::eNonIndexedDraws);
        return CountPrimitives(profiler, CallArgument<GLenum>(args, 1), CallArgument<GLsizei>(args, 3));
    case Es1::Calls::glDrawElements.id:
    case Es2::Calls::glDrawElements.id:
        Count(profiler, CProfiler::eIndexedDraws);
        return CountPrimitives(profiler, CallArgument<GLenum>(args, 1), CallArgument<GLsizei>(args, 2));
    default:
        return;
    }
}

// The images' arguments stand side by side in all of their calls: the dimensions from `dimensions` on, the
// format and the type from `format` on.
unsigned int Image2DBytes(void const* const* args, int dimensions, int format, GLint alignment, GLint border)
{
    return GlImage2DSize(CallArgument<GLenum>(args, format), CallArgument<GLenum>(args, format + 1),
                         CallArgument<GLsizei>(args, dimensions), CallArgument<GLsizei>(args, dimensions + 1),
                         alignment, border);
}

unsigned int Image3DBytes(void const* const* args, int dimensions, int format, GLint border)
{
    return GlImage3DSize(CallArgument<GLenum>(args, format), CallArgument<GLenum>(args, format + 1),
                         CallArgument<GLsizei>(args, dimensions), CallArgument<GLsizei>(args, dimensions + 1),
                         CallArgument<GLsizei>(args, dimensions + 2), Es2::HostInteger(GL_UNPACK_ALIGNMENT),
                         border);
}

void CountUpload(CProfiler& profiler, unsigned int bytes)
{
    Count(profiler, CProfiler::eTextureUploads);
    Count(profiler, CProfiler::eTextureUploadBytes, bytes);
}

// Without data, too: the host makes the image all the same.
void CountImage(CProfiler& profiler, int id, void const* const* args)
{
    switch (id)
    {
    case Es1::Calls::glTexImage2D.id:
        return CountUpload(profiler, Image2DBytes(args, 4, 7, Es1::HostInteger(GL_UNPACK_ALIGNMENT),
                                                  CallArgument<GLint>(args, 6)));
    case Es2::Calls::glTexImage2D.id:
        return CountUpload(profiler, Image2DBytes(args, 4, 7, Es2::HostInteger(GL_UNPACK_ALIGNMENT),
                                                  CallArgument<GLint>(args, 6)));
    case Es2::Calls::glTexImage3DOES.id:
        return CountUpload(profiler, Image3DBytes(args, 4, 8, CallArgument<GLint>(args, 7)));
    case Es1::Calls::glCompressedTexImage2D.id:
    case Es2::Calls::glCompressedTexImage2D.id:
        return CountUpload(profiler, Amount<GLsizei>(args, 7));
    case Es2::Calls::glCompressedTexImage3DOES.id:
        return CountUpload(profiler, Amount<GLsizei>(args, 8));
    default:
        return;
    }
}

// On purpose: the bytes of sub-images count as uploaded, those of compressed ones alone as modified.
void CountModification(CProfiler& profiler, unsigned int bytes, CProfiler::ECounters byteCounter)
{
    Count(profiler, CProfiler::eTextureModifications);
    Count(profiler, byteCounter, bytes);
}

// On purpose: GLES1's compressed sub-images count nowhere.
void CountSubImage(CProfiler& profiler, int id, void const* const* args)
{
    switch (id)
    {
    case Es1::Calls::glTexSubImage2D.id:
        return CountModification(profiler, Image2DBytes(args, 5, 7, Es1::HostInteger(GL_UNPACK_ALIGNMENT), 0),
                                 CProfiler::eTextureUploadBytes);
    case Es2::Calls::glTexSubImage2D.id:
        return CountModification(profiler, Image2DBytes(args, 5, 7, Es2::HostInteger(GL_UNPACK_ALIGNMENT), 0),
                                 CProfiler::eTextureUploadBytes);
    case Es2::Calls::glTexSubImage3DOES.id:
        return CountModification(profiler, Image3DBytes(args, 6, 9, 0), CProfiler::eTextureUploadBytes);
    case Es2::Calls::glCompressedTexSubImage2D.id:
        return CountModification(profiler, Amount<GLsizei>(args, 8), CProfiler::eTextureModificationBytes);
    case Es2::Calls::glCompressedTexSubImage3DOES.id:
        return CountModification(profiler, Amount<GLsizei>(args, 10), CProfiler::eTextureModificationBytes);
    default:
        return;
    }
}

void CountBufferBytes(CProfiler& profiler, CProfiler::ECounters counter, void const* const* args, int size)
{
    if (CallArgument<void const*>(args, size + 1))
        Count(profiler, counter, Amount<GLsizeiptr>(args, size));
}

void CountBuffer(CProfiler& profiler, int id, void const* const* args)
{
    switch (id)
    {
    case Es1::Calls::glBufferData.id:
    case Es2::Calls::glBufferData.id:
        return CountBufferBytes(profiler, CProfiler::eBufferUploadBytes, args, 2);
    case Es1::Calls::glBufferSubData.id:
    case Es2::Calls::glBufferSubData.id:
        return CountBufferBytes(profiler, CProfiler::eBufferModificationBytes, args, 3);
    default:
        return;
    }
}

void CountCompile(CProfiler& profiler, GLuint shader)
{
    if (shader == 0)
        return;
    GLint type = 0;
    Es2Host()->glGetShaderiv(shader, GL_SHADER_TYPE, &type);
    if (type == GL_VERTEX_SHADER)
        Count(profiler, CProfiler::eVertexShaderCompiles);
    else if (type == GL_FRAGMENT_SHADER)
        Count(profiler, CProfiler::eFragmentShaderCompiles);
}

// Once for each call, whatever its count.
void CountUniform(CProfiler& profiler, int id)
{
    switch (id)
    {
    case Es2::Calls::glUniform1f.id:
    case Es2::Calls::glUniform1fv.id:
    case Es2::Calls::glUniform1i.id:
    case Es2::Calls::glUniform1iv.id:
    case Es2::Calls::glUniform2f.id:
    case Es2::Calls::glUniform2fv.id:
    case Es2::Calls::glUniform2i.id:
    case Es2::Calls::glUniform2iv.id:
    case Es2::Calls::glUniform3f.id:
    case Es2::Calls::glUniform3fv.id:
    case Es2::Calls::glUniform3i.id:
    case Es2::Calls::glUniform3iv.id:
    case Es2::Calls::glUniform4f.id:
    case Es2::Calls::glUniform4fv.id:
    case Es2::Calls::glUniform4i.id:
    case Es2::Calls::glUniform4iv.id:
    case Es2::Calls::glUniformMatrix2fv.id:
    case Es2::Calls::glUniformMatrix3fv.id:
    case Es2::Calls::glUniformMatrix4fv.id:
        return Count(profiler, CProfiler::eUniformUploads);
    default:
        return;
    }
}

void CountOther(CProfiler& profiler, int id, void const* const* args)
{
    switch (id)
    {
    case Es1::Calls::glScissor.id:
    case Es2::Calls::glScissor.id:
        return Count(profiler, CProfiler::eScissorCalls);
    case Es1::Calls::glViewport.id:
    case Es2::Calls::glViewport.id:
        return Count(profiler, CProfiler::eViewportCalls);
    case Es1::Calls::glReadPixels.id:
    case Es2::Calls::glReadPixels.id:
        // On purpose: calls and bytes in one counter. The one of the bytes stays 0.
        return Count(profiler, CProfiler::eFrameBufferAccesses, 1 + Image2DBytes(args, 3, 5, 1, 0));
    case Es2::Calls::glCompileShader.id:
        return CountCompile(profiler, CallArgument<GLuint>(args, 1));
    case Es2::Calls::glLinkProgram.id:
        return Count(profiler, CProfiler::eProgramLinks);
    case Egl::Calls::eglMakeCurrent.id:
        return Count(profiler, CProfiler::eContextBinds);
    default:
        return;
    }
}

}  // namespace

void CProfiler::DidCall(int id, void const* const* args)
{
    CLastingLock const lock(ProfilerMutex());
    if (HasEnded())
        return;
    CountDraw(*this, id, args);
    CountImage(*this, id, args);
    CountSubImage(*this, id, args);
    CountBuffer(*this, id, args);
    CountUniform(*this, id);
    CountOther(*this, id, args);
}
