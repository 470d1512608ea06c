// What the GLES1 wrappers write into the live shadow as calls pass, by family. Each function is called when
// its wrapper's gate is open, and says nothing of gates itself.
#pragma once
#include "state/es1_context_state.h"
#include "wrappers/track_contents.h"

namespace Es1
{
namespace Track
{
// Textures: the record is that of the name bound to GL_TEXTURE_2D, and the level. No other target is
// followed.
using TrackContents::SImage;
using TrackContents::SSubImage;
// `pixels` are the application's, at the unpack alignment.
void TexImage2D(SImage const& image);
void TexSubImage2D(SSubImage const& update);
void TexParameter(GLenum target, GLenum pname, GLint value);
void TexParameterf(GLenum target, GLenum pname, GLfloat value);
void TexParameterv(GLenum target, GLenum pname, GLint const* values);
void TexParameterfv(GLenum target, GLenum pname, GLfloat const* values);
// The one vector form that takes a crop rectangle.
void TexParameteriv(GLenum target, GLenum pname, GLint const* values);
void GenerateMipmap(GLenum target);

// Buffers.
void BufferData(GLenum target, GLsizeiptr size, void const* data, GLenum usage);
void BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data);

// Framebuffers and renderbuffers. What is attached and bound is read from the host.
void GenFramebuffers(GLsizei n, GLuint const* names);
void BindFramebuffer(GLuint name);
void DeleteFramebuffers(GLsizei n, GLuint const* names);
void GenRenderbuffers(GLsizei n, GLuint const* names);
void BindRenderbuffer(GLuint name);
void DeleteRenderbuffers(GLsizei n, GLuint const* names);

// Client arrays of the current array object, and array objects.
void ArrayPointer(CEs1ContextState::EClientArray array, GLint size, GLenum type, GLsizei stride,
                  void const* pointer);
// The texture coordinates of the active client unit.
void TexCoordPointer(GLint size, GLenum type, GLsizei stride, void const* pointer);
void GenVertexArrays(GLsizei n, GLuint const* names);
void BindVertexArray(GLuint name);
void DeleteVertexArrays(GLsizei n, GLuint const* names);
}  // namespace Track
}  // namespace Es1
