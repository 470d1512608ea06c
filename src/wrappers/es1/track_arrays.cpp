// Tracking of client arrays and array objects.
#include "state/vertex_attribs_handler.h"
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"

static void Keep(int array, GLint size, GLenum type, GLsizei stride, void const* pointer)
{
    auto const buffer = static_cast<GLuint>(Es1::HostInteger(GL_ARRAY_BUFFER_BINDING));
    LiveEs1State().BoundVertexArray().arrays[array] = {buffer, size, type, stride, pointer};
}

void Es1::Track::ArrayPointer(CEs1ContextState::EClientArray array, GLint size, GLenum type, GLsizei stride,
                              void const* pointer)
{
    Keep(array, size, type, stride, pointer);
}

// A unit that the shadow has no room for is not followed.
void Es1::Track::TexCoordPointer(GLint size, GLenum type, GLsizei stride, void const* pointer)
{
    GLenum const unit = VAHandler.clientActiveTexture - GL_TEXTURE0;
    if (unit < static_cast<GLenum>(CEs1ContextState::kTextureUnits))
        Keep(CEs1ContextState::kTexCoordArray0 + static_cast<int>(unit), size, type, stride, pointer);
}

void Es1::Track::GenVertexArrays(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(
        n, names, [](GLuint name) { LiveEs1State().mVertexArrayObjects[static_cast<int>(name)]; });
}

void Es1::Track::BindVertexArray(GLuint name)
{
    LiveEs1State().mBoundVAO = static_cast<int>(name);
    LiveEs1State().BoundVertexArray();
}

// The current one's place is taken by the default array object, as it is on the host.
void Es1::Track::DeleteVertexArrays(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names, [](GLuint name) {
        CEs1ContextState& state = LiveEs1State();
        if (name == 0)
            return;
        state.mVertexArrayObjects.removeElement(static_cast<int>(name));
        if (state.mBoundVAO == static_cast<int>(name))
            state.mBoundVAO = 0;
    });
}
