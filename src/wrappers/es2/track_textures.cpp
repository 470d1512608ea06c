// Tracking of textures.
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"

namespace
{

GLuint BoundName(GLenum binding) { return static_cast<GLuint>(Es2::HostInteger(binding)); }

TextureDefinition& RecordOf(GLuint name, int face, GLint level)
{
    return LiveEs2State().m_sTexImageTextures[name][face][level];
}

GLuint NameAt(GLenum target)
{
    return BoundName(target == GL_TEXTURE_2D ? GL_TEXTURE_BINDING_2D : GL_TEXTURE_BINDING_CUBE_MAP);
}

int FaceOf(GLenum target)
{
    return target == GL_TEXTURE_2D ? 0 : static_cast<int>(target - GL_TEXTURE_CUBE_MAP_POSITIVE_X);
}

// The name that a parameter goes to. On purpose: what is compared with the target is, in all but one of the
// wrappers, the enumerant of the binding, so that a cube map's parameters go to name 0 there.
GLuint NameForParameter(GLenum target, GLenum cubeMap)
{
    if (target == GL_TEXTURE_2D)
        return BoundName(GL_TEXTURE_BINDING_2D);
    if (target == GL_TEXTURE_3D_OES)
        return BoundName(GL_TEXTURE_BINDING_3D_OES);
    return target == cubeMap ? BoundName(GL_TEXTURE_BINDING_CUBE_MAP) : 0;
}

void SetParameter(GLenum target, GLenum cubeMap, GLenum pname, int value)
{
    int const index = TrackContents::ParamIndex(pname);
    if (index >= 0)
        RecordOf(NameForParameter(target, cubeMap), 0, 0).params[index] = value;
}

}  // namespace

// The record owns a copy, and keeps the parameters that it has already.
void Es2::Track::TexImage2D(SImage const& image)
{
    GLuint const name = NameAt(image.target);
    TextureDefinition const given(static_cast<int>(image.target), name, image.level, image.format,
                                  image.internalformat, image.width, image.height, image.border, image.type,
                                  image.Pixels(), image.compressedSize, image.isCompressed, true,
                                  image.alignment, 0);
    TextureDefinition& record = RecordOf(name, FaceOf(image.target), image.level);
    record.deepCopy = true;
    record = given;
}

void Es2::Track::TexSubImage2D(SSubImage const& update)
{
    GLint const alignment = HostInteger(GL_PACK_ALIGNMENT);
    TrackContents::MergeSubImage(RecordOf(NameAt(update.target), FaceOf(update.target), update.level), update,
                                 alignment);
}

void Es2::Track::TexParameteri(GLenum target, GLenum pname, GLint value)
{
    SetParameter(target, GL_TEXTURE_CUBE_MAP, pname, value);
}

void Es2::Track::TexParameterf(GLenum target, GLenum pname, GLfloat value)
{
    SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, TrackContents::Truncated(value));
}

void Es2::Track::TexParameterfv(GLenum target, GLenum pname, GLfloat const* values)
{
    if (values)
        SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, TrackContents::Truncated(*values));
}

void Es2::Track::TexParameteriv(GLenum target, GLenum pname, GLint const* values)
{
    if (values)
        SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, *values);
}

// Any target but these two marks the record of name 0.
void Es2::Track::GenerateMipmap(GLenum target)
{
    GLuint name = 0;
    if (target == GL_TEXTURE_2D || target == GL_TEXTURE_CUBE_MAP)
        name = NameAt(target);
    RecordOf(name, 0, 0).mipsGenerated = true;
}
