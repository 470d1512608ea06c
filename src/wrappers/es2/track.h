// What the GLES2 wrappers write into the live shadow as calls pass, by family. Each function is called when
// its wrapper's gate is open, and says nothing of gates itself.
#pragma once
#include "wrappers/track_contents.h"

namespace Es2
{
namespace Track
{
// Textures. The record is that of the name bound to the target, the face and the level.
using TrackContents::SImage;
using TrackContents::SSubImage;
void TexImage2D(SImage const& image);
void TexSubImage2D(SSubImage const& update);
void TexParameteri(GLenum target, GLenum pname, GLint value);
void TexParameterf(GLenum target, GLenum pname, GLfloat value);
void TexParameterfv(GLenum target, GLenum pname, GLfloat const* values);
void TexParameteriv(GLenum target, GLenum pname, GLint const* values);
void GenerateMipmap(GLenum target);

// Buffers.
void BindBuffer(GLenum target, GLuint buffer);
void BufferData(GLenum target, GLsizeiptr size, void const* data, GLenum usage);
void BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data);
void UnmapBuffer(GLuint name, void const* data, GLsizeiptr size);

// Framebuffers and renderbuffers.
void GenFramebuffers(GLsizei n, GLuint const* names);
void BindFramebuffer(GLuint name);
void BeforeDeleteFramebuffers(GLsizei n, GLuint const* names);
void DeleteFramebuffers(GLsizei n, GLuint const* names);
void FramebufferTexture2D(GLenum attachment, GLenum target, GLuint texture, GLint level);
void FramebufferRenderbuffer(GLenum attachment, GLuint renderbuffer);
void GenRenderbuffers(GLsizei n, GLuint const* names);
void BindRenderbuffer(GLuint name);
void DeleteRenderbuffers(GLsizei n, GLuint const* names);

// Shaders and programs.
void CreateShader(GLuint name, GLenum type);
void ShaderSource(GLuint shader, GLsizei count, GLchar const* const* strings);
void DeleteShader(GLuint shader);
void CreateProgram(GLuint name);
void AttachShader(GLuint program, GLuint shader);
void DetachShader(GLuint program, GLuint shader);
void BindAttribLocation(GLuint program, GLuint index, GLchar const* name);
void LinkProgram(GLuint program);
void UseProgram(GLuint program);
void DeleteProgram(GLuint program);
void UniformLocation(GLuint program, GLchar const* name, GLint location);

// Uniforms of the program in use: `count` elements of `components` each.
void Uniforms(GLint location, GLuint components, GLfloat const* values, GLsizei count);
void Uniforms(GLint location, GLuint components, GLint const* values, GLsizei count);
void UniformMatrices(GLint location, GLuint components, GLfloat const* values, GLsizei count);

// Vertex attributes and vertex array objects.
void VertexAttrib(GLuint index, GLuint components, GLfloat const* values);
// A generic constant no longer stands for the attribute.
void VertexAttribIsArray(GLuint index);
void VertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                         void const* pointer);
void EnableVertexAttribArray(GLuint index, bool enabled);
void GenVertexArrays(GLsizei n, GLuint const* names);
void BindVertexArray(GLuint name);
void DeleteVertexArrays(GLsizei n, GLuint const* names);
}  // namespace Track
}  // namespace Es2
