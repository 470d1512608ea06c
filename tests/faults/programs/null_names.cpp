// What the driver that does nothing answers where a program needs something: a display, a config, the bound
// texture, and handles and names. What was destroyed is given out again, as real drivers do; with
// NULL_NEW_NAMES in the environment, never.
#include <EGL/egl.h>
#include <GLES2/gl2.h>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace
{
class Names
{
public:
    uintptr_t Make()
    {
        if (m_free.empty() || std::getenv("NULL_NEW_NAMES"))
            return ++m_last;
        uintptr_t const name = m_free.back();
        m_free.pop_back();
        return name;
    }
    void Destroy(uintptr_t name) { m_free.push_back(name); }

private:
    uintptr_t m_last = 0;
    std::vector<uintptr_t> m_free;
};

Names s_contexts;
Names s_textures;
GLuint s_boundTexture = 0;
}  // namespace

#pragma GCC visibility push(default)

extern "C"
{
    EGLDisplay eglGetDisplay(EGLNativeDisplayType) { return reinterpret_cast<EGLDisplay>(uintptr_t{1}); }

    EGLBoolean eglChooseConfig(EGLDisplay, EGLint const*, EGLConfig* configs, EGLint size, EGLint* count)
    {
        *count = 1;
        if (configs && size > 0)
            configs[0] = reinterpret_cast<EGLConfig>(uintptr_t{1});
        return EGL_TRUE;
    }

    EGLContext eglCreateContext(EGLDisplay, EGLConfig, EGLContext, EGLint const*)
    {
        return reinterpret_cast<EGLContext>(s_contexts.Make());
    }

    EGLBoolean eglDestroyContext(EGLDisplay, EGLContext context)
    {
        s_contexts.Destroy(reinterpret_cast<uintptr_t>(context));
        return EGL_TRUE;
    }

    EGLSurface eglCreatePbufferSurface(EGLDisplay, EGLConfig, EGLint const*)
    {
        return reinterpret_cast<EGLSurface>(uintptr_t{1});
    }

    EGLint eglGetError() { return EGL_SUCCESS; }

    void glGenTextures(GLsizei count, GLuint* names)
    {
        for (GLsizei i = 0; i < count; ++i)
            names[i] = static_cast<GLuint>(s_textures.Make());
    }

    void glDeleteTextures(GLsizei count, GLuint const* names)
    {
        for (GLsizei i = 0; i < count; ++i)
            s_textures.Destroy(names[i]);
    }

    void glBindTexture(GLenum, GLuint texture) { s_boundTexture = texture; }

    void glGetIntegerv(GLenum name, GLint* data)
    {
        // Other queries keep what the caller has put there.
        if (name == GL_TEXTURE_BINDING_2D)
            *data = static_cast<GLint>(s_boundTexture);
        if (name == GL_UNPACK_ALIGNMENT || name == GL_PACK_ALIGNMENT)
            *data = 4;
    }
}
