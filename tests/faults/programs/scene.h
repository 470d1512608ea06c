// A small scene on a pbuffer, whose frames can be told apart in a recording: the texture of frame N is filled
// with N, in 16 rows of 64 bytes.
#pragma once
#include "../../e2e/programs/linked_egl.h"
#include <GLES2/gl2.h>

class Scene
{
public:
    Scene() : m_display(OpenDisplay(m_egl)), m_pbuffer(MakePbuffer(m_egl, m_display, 2))
    {
        MakeCurrent(m_egl, m_pbuffer);
        glGenTextures(1, &m_texture);
        glGenBuffers(1, &m_buffer);
        glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
        glBindTexture(GL_TEXTURE_2D, m_texture);
    }

    void DrawFrame()
    {
        GLuint texels[16 * 16];
        for (GLuint& texel : texels)
            texel = m_frame;
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 16, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
        glClearColor(0.0F, 1.0F, 0.0F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT);
        CHECK(m_egl.SwapBuffers(m_display, m_pbuffer.surface));
        ++m_frame;
    }

    LinkedEgl const& Egl() const { return m_egl; }
    Pbuffer const& Surface() const { return m_pbuffer; }

private:
    LinkedEgl m_egl;
    EGLDisplay m_display;
    Pbuffer m_pbuffer;
    GLuint m_texture = 0;
    GLuint m_buffer = 0;
    GLuint m_frame = 0;
};
