// GLES1 wrappers: client arrays.
#include "wrappers/es1/client_arrays.h"
#include "api/es1_enums.h"
#include "state/vertex_attribs_handler.h"
#include "wrappers/calls.h"
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"
#include <algorithm>
#include <iterator>

namespace Es1
{

namespace
{

// What the host is asked about each array, by its slot in VAHandler; the last stands for all texture units.
struct SQuestions
{
    GLenum binding;
    GLenum pointer;
};
constexpr SQuestions kQuestions[] = {
    {Es1Enum::kColorArrayBufferBinding, Es1Enum::kColorArrayPointer},
    {Es1Enum::kNormalArrayBufferBinding, Es1Enum::kNormalArrayPointer},
    {Es1Enum::kVertexArrayBufferBinding, Es1Enum::kVertexArrayPointer},
    {Es1Enum::kPointSizeArrayBufferBinding, Es1Enum::kPointSizeArrayPointer},
    {Es1Enum::kMatrixIndexArrayBufferBinding, Es1Enum::kMatrixIndexArrayPointer},
    {Es1Enum::kWeightArrayBufferBinding, Es1Enum::kWeightArrayPointer},
    {Es1Enum::kTextureCoordArrayBufferBinding, Es1Enum::kTextureCoordArrayPointer},
};
constexpr uint32_t kTextureCoords = std::size(kQuestions) - 1;

// Makes a texture unit active for the host's questions, and puts back the one that was.
class CClientUnit
{
public:
    explicit CClientUnit(uint32_t unit) : m_asked(GL_TEXTURE0 + unit), m_kept(VAHandler.clientActiveTexture)
    {
        auto active = static_cast<GLint>(m_kept);
        Es1Host()->glGetIntegerv(Es1Enum::kClientActiveTexture, &active);
        m_kept = static_cast<GLenum>(active);
        if (m_kept != m_asked)
            Es1Host()->glClientActiveTexture(m_asked);
    }
    ~CClientUnit()
    {
        if (m_kept != m_asked)
            Es1Host()->glClientActiveTexture(m_kept);
    }
    CClientUnit(CClientUnit const&) = delete;
    CClientUnit& operator=(CClientUnit const&) = delete;

private:
    GLenum m_asked;
    GLenum m_kept;
};

bool HostAgrees(SClientArray const& array, SQuestions const& questions)
{
    GLint enabled = GL_TRUE;
    GLint buffer = 0;
    auto* pointer = const_cast<void*>(array.pointer);
    Es1Host()->glGetIntegerv(VAHandler.GetOGLESAttribName(array.index), &enabled);
    Es1Host()->glGetIntegerv(questions.binding, &buffer);
    Es1Host()->glGetPointerv(questions.pointer, &pointer);
    return enabled && buffer == 0 && pointer == array.pointer;
}

// The spare place behind the slots takes the coordinates of a ninth unit, which no draw captures. For a unit
// beyond that one there is nothing to store into.
void FollowPointer(GLenum name, GLint size, GLenum type, GLsizei stride, void const* pointer)
{
    CVertexAttribsHandler::SAttrib* const array =
        VAHandler.GetVertAttribs(VAHandler.GetOGLESAttribNumber(name));
    if (!array)
        return;
    array->size = size;
    array->type = type;
    array->stride = stride;
    array->pointer = pointer;
    array->arrayBuffer = static_cast<GLuint>(HostInteger(GL_ARRAY_BUFFER_BINDING));
}

}  // namespace

bool HostReadsClientArray(SClientArray const& array)
{
    if (array.index < kTextureCoords)
        return HostAgrees(array, kQuestions[array.index]);
    CClientUnit const unit(array.index - kTextureCoords);
    return HostAgrees(array, kQuestions[kTextureCoords]);
}

// On purpose: arrays and their switches are followed in the recorded frames too, where draws need them.

void _glClientActiveTexture(GLenum texture)
{
    CFrame frame(Calls::glClientActiveTexture, texture);
    frame.CallHost();
    if (frame.Succeeded())
        VAHandler.clientActiveTexture = texture;
    frame.Record(texture);
}

void _glColorPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glColorPointer, size, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kColorArray, size, type, stride, pointer);
    if (frame.MayTrack())
        Track::ArrayPointer(CEs1ContextState::kColorArray, size, type, stride, pointer);
    frame.Record(size, type, stride, pointer);
}

void _glDisableClientState(GLenum array)
{
    CFrame frame(Calls::glDisableClientState, array);
    frame.CallHost();
    if (frame.Succeeded())
        VAHandler.DisableVertexAttrib(VAHandler.GetOGLESAttribNumber(array));
    frame.Record(array);
}

void _glEnableClientState(GLenum array)
{
    CFrame frame(Calls::glEnableClientState, array);
    frame.CallHost();
    if (frame.Succeeded())
        VAHandler.EnableVertexAttrib(VAHandler.GetOGLESAttribNumber(array));
    frame.Record(array);
}

void _glGetPointerv(GLenum pname, void** params) { Trace(Calls::glGetPointerv, pname, OutArray(params, 1)); }

void _glNormalPointer(GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glNormalPointer, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kNormalArray, 3, type, stride, pointer);
    if (frame.MayTrack())
        Track::ArrayPointer(CEs1ContextState::kNormalArray, 3, type, stride, pointer);
    frame.Record(type, stride, pointer);
}

void _glTexCoordPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glTexCoordPointer, size, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kTextureCoordArray, size, type, stride, pointer);
    if (frame.MayTrack())
        Track::TexCoordPointer(size, type, stride, pointer);
    frame.Record(size, type, stride, pointer);
}

void _glVertexPointer(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glVertexPointer, size, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kVertexArray, size, type, stride, pointer);
    if (frame.MayTrack())
        Track::ArrayPointer(CEs1ContextState::kVertexArray, size, type, stride, pointer);
    frame.Record(size, type, stride, pointer);
}

void _glPointSizePointerOES(GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glPointSizePointerOES, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kPointSizeArray, 1, type, stride, pointer);
    frame.Record(type, stride, pointer);
}

void _glMatrixIndexPointerOES(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glMatrixIndexPointerOES, size, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kMatrixIndexArray, size, type, stride, pointer);
    frame.Record(size, type, stride, pointer);
}

void _glWeightPointerOES(GLint size, GLenum type, GLsizei stride, const void* pointer)
{
    CFrame frame(Calls::glWeightPointerOES, size, type, stride, pointer);
    frame.CallHost();
    if (frame.SucceededWithData())
        FollowPointer(Es1Enum::kWeightArray, size, type, stride, pointer);
    frame.Record(size, type, stride, pointer);
}

}  // namespace Es1
