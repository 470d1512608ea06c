// GLES2 wrappers: debug messages, labels and markers.
#include "wrappers/calls.h"
#include <cstring>

namespace Es2
{

// A label's bytes: the call's length, or up to the terminator where that is negative.
static unsigned int LabelSize(GLchar const* label, GLsizei length)
{
    if (!label)
        return 0;
    return length >= 0 ? static_cast<unsigned int>(length) : static_cast<unsigned int>(std::strlen(label));
}

void _glDebugMessageControl(GLenum source, GLenum type, GLenum severity, GLsizei count, const GLuint* ids,
                            GLboolean enabled)
{
    Trace(Calls::glDebugMessageControl, source, type, severity, count, InArray(ids, count), enabled);
}

void _glDebugMessageInsert(GLenum source, GLenum type, GLuint id, GLenum severity, GLsizei length,
                           const GLchar* buf)
{
    Trace(Calls::glDebugMessageInsert, source, type, id, severity, length, Text(buf));
}

void _glDebugMessageCallback(GLDEBUGPROCKHR callback, const void* userParam)
{
    Trace(Calls::glDebugMessageCallback, callback, userParam);
}

GLuint _glGetDebugMessageLog(GLuint count, GLsizei bufSize, GLenum* sources, GLenum* types, GLuint* ids,
                             GLenum* severities, GLsizei* lengths, GLchar* messageLog)
{
    CFrame frame(Calls::glGetDebugMessageLog, count, bufSize, sources, types, ids, severities, lengths,
                 messageLog);
    frame.CallHost();
    GLuint const messages = frame.Result();
    frame.Record(count, bufSize, OutArray(sources, messages), OutArray(types, messages),
                 OutArray(ids, messages), OutArray(severities, messages), OutArray(lengths, messages),
                 OutText(messageLog, bufSize));
    return messages;
}

void _glPushDebugGroup(GLenum source, GLuint id, GLsizei length, const GLchar* message)
{
    Trace(Calls::glPushDebugGroup, source, id, length, Text(message));
}

void _glPopDebugGroup() { Trace(Calls::glPopDebugGroup); }

void _glObjectLabel(GLenum identifier, GLuint name, GLsizei length, const GLchar* label)
{
    Trace(Calls::glObjectLabel, identifier, name, length, Text(label));
}

void _glGetObjectLabel(GLenum identifier, GLuint name, GLsizei bufSize, GLsizei* length, GLchar* label)
{
    Trace(Calls::glGetObjectLabel, identifier, name, bufSize, OutArray(length, 1), OutText(label, bufSize));
}

void _glObjectPtrLabel(const void* ptr, GLsizei length, const GLchar* label)
{
    Trace(Calls::glObjectPtrLabel, ptr, length, Bytes(label, LabelSize(label, length)));
}

void _glGetObjectPtrLabel(const void* ptr, GLsizei bufSize, GLsizei* length, GLchar* label)
{
    Trace(Calls::glGetObjectPtrLabel, ptr, bufSize, OutArray(length, 1), OutText(label, bufSize));
}

void _glGetPointerv(GLenum pname, void** params) { Trace(Calls::glGetPointerv, pname, params); }

void _glLabelObjectEXT(GLenum type, GLuint object, GLsizei length, const GLchar* label)
{
    Trace(Calls::glLabelObjectEXT, type, object, length, Text(label));
}

void _glGetObjectLabelEXT(GLenum type, GLuint object, GLsizei bufSize, GLsizei* length, GLchar* label)
{
    Trace(Calls::glGetObjectLabelEXT, type, object, bufSize, OutArray(length, 1), OutText(label, bufSize));
}

void _glInsertEventMarkerEXT(GLsizei length, const GLchar* marker)
{
    Trace(Calls::glInsertEventMarkerEXT, length, Text(marker));
}

void _glPushGroupMarkerEXT(GLsizei length, const GLchar* marker)
{
    Trace(Calls::glPushGroupMarkerEXT, length, Text(marker));
}

void _glPopGroupMarkerEXT() { Trace(Calls::glPopGroupMarkerEXT); }

}  // namespace Es2
