// A picture that is drawn into a texture, and a swarm of point sprites that carry it: arrays in the program's
// own memory, a buffer that is mapped for each frame, and a framebuffer object, all of OpenGL ES 1.
#include "support.h"
#include <EGL/egl.h>
#include <GLES/gl.h>
#include <GLES/glext.h>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
constexpr float kPi = 3.14159265F;
constexpr GLsizei kTargetSize = 64;
constexpr int kSprites = 40;

// From the library, if it exports extensions, as many do; EGL knows the others. Asked by EGL, a name that
// OpenGL ES 2 has too says nothing of the API that it is for.
template <typename Function>
Function Find(char const* name)
{
    auto found = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
    if (!found)
        found = reinterpret_cast<Function>(eglGetProcAddress(name));
    if (!found)
        throw std::runtime_error(std::string("the driver has no ") + name);
    return found;
}

// What the scene needs beyond the core.
struct Extensions
{
    PFNGLGENFRAMEBUFFERSOESPROC genFramebuffers = nullptr;
    PFNGLBINDFRAMEBUFFEROESPROC bindFramebuffer = nullptr;
    PFNGLFRAMEBUFFERTEXTURE2DOESPROC framebufferTexture2D = nullptr;
    PFNGLGENRENDERBUFFERSOESPROC genRenderbuffers = nullptr;
    PFNGLBINDRENDERBUFFEROESPROC bindRenderbuffer = nullptr;
    PFNGLRENDERBUFFERSTORAGEOESPROC renderbufferStorage = nullptr;
    PFNGLFRAMEBUFFERRENDERBUFFEROESPROC framebufferRenderbuffer = nullptr;
    PFNGLCHECKFRAMEBUFFERSTATUSOESPROC checkFramebufferStatus = nullptr;
    PFNGLMAPBUFFEROESPROC mapBuffer = nullptr;
    PFNGLUNMAPBUFFEROESPROC unmapBuffer = nullptr;

    void FindAll()
    {
        genFramebuffers = Find<PFNGLGENFRAMEBUFFERSOESPROC>("glGenFramebuffersOES");
        bindFramebuffer = Find<PFNGLBINDFRAMEBUFFEROESPROC>("glBindFramebufferOES");
        framebufferTexture2D = Find<PFNGLFRAMEBUFFERTEXTURE2DOESPROC>("glFramebufferTexture2DOES");
        genRenderbuffers = Find<PFNGLGENRENDERBUFFERSOESPROC>("glGenRenderbuffersOES");
        bindRenderbuffer = Find<PFNGLBINDRENDERBUFFEROESPROC>("glBindRenderbufferOES");
        renderbufferStorage = Find<PFNGLRENDERBUFFERSTORAGEOESPROC>("glRenderbufferStorageOES");
        framebufferRenderbuffer = Find<PFNGLFRAMEBUFFERRENDERBUFFEROESPROC>("glFramebufferRenderbufferOES");
        checkFramebufferStatus = Find<PFNGLCHECKFRAMEBUFFERSTATUSOESPROC>("glCheckFramebufferStatusOES");
        mapBuffer = Find<PFNGLMAPBUFFEROESPROC>("glMapBufferOES");
        unmapBuffer = Find<PFNGLUNMAPBUFFEROESPROC>("glUnmapBufferOES");
    }
};

// A corner of the star: position and colour next to each other, read with a stride.
struct Corner
{
    GLfixed x;
    GLfixed y;
    std::uint8_t color[4];
};

GLfixed Fixed(float value) { return static_cast<GLfixed>(std::lround(value * 65536)); }

class Sprites : public examples::Scene
{
public:
    int ApiVersion() const override { return 1; }

    void Setup(int width, int height) override
    {
        m_width = width;
        m_height = height;
        m_gl.FindAll();
        MakeTarget();
        glGenBuffers(1, &m_positions);
        glBindBuffer(GL_ARRAY_BUFFER, m_positions);
        glBufferData(GL_ARRAY_BUFFER, kSprites * 3 * sizeof(GLfloat), nullptr, GL_DYNAMIC_DRAW);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glAlphaFunc(GL_GREATER, 0.1F);
        glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    }

    void DrawFrame(int frame) override
    {
        float const turn = static_cast<float>(frame) * 0.08F;
        m_gl.bindFramebuffer(GL_FRAMEBUFFER_OES, m_framebuffer);
        DrawStar(turn);
        m_gl.bindFramebuffer(GL_FRAMEBUFFER_OES, 0);
        glViewport(0, 0, m_width, m_height);
        glClearColor(0.05F, 0.07F, 0.12F, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glActiveTexture(GL_TEXTURE0);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        DrawCorner();
        PlaceSprites(turn);
        DrawSprites(turn);
        glDisable(GL_TEXTURE_2D);
    }

private:
    void MakeTarget()
    {
        glGenTextures(1, &m_picture);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kTargetSize, kTargetSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
        for (GLenum const filter : {GLenum{GL_TEXTURE_MIN_FILTER}, GLenum{GL_TEXTURE_MAG_FILTER}})
            glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
        for (GLenum const wrap : {GLenum{GL_TEXTURE_WRAP_S}, GLenum{GL_TEXTURE_WRAP_T}})
            glTexParameterf(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
        m_gl.genRenderbuffers(1, &m_depth);
        m_gl.bindRenderbuffer(GL_RENDERBUFFER_OES, m_depth);
        m_gl.renderbufferStorage(GL_RENDERBUFFER_OES, GL_DEPTH_COMPONENT16_OES, kTargetSize, kTargetSize);
        m_gl.genFramebuffers(1, &m_framebuffer);
        m_gl.bindFramebuffer(GL_FRAMEBUFFER_OES, m_framebuffer);
        m_gl.framebufferTexture2D(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_TEXTURE_2D, m_picture, 0);
        m_gl.framebufferRenderbuffer(GL_FRAMEBUFFER_OES, GL_DEPTH_ATTACHMENT_OES, GL_RENDERBUFFER_OES,
                                     m_depth);
        if (m_gl.checkFramebufferStatus(GL_FRAMEBUFFER_OES) != GL_FRAMEBUFFER_COMPLETE_OES)
            throw std::runtime_error("the driver draws into no RGBA texture with 16 bits of depth");
        m_gl.bindFramebuffer(GL_FRAMEBUFFER_OES, 0);
    }

    // A star with a transparent surrounding: strided fixed-point corners with byte indices, and behind it a
    // tight disc without indices. Depth keeps the disc behind, though it is drawn last.
    static void DrawStar(float turn)
    {
        glViewport(0, 0, kTargetSize, kTargetSize);
        glClearColor(0, 0, 0, 0);
        glClearDepthf(1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        std::vector<Corner> corners = {{0, 0, {255, 255, 240, 255}}};
        std::vector<std::uint8_t> indices = {0};
        for (std::uint8_t i = 0; i < 10; ++i)
        {
            float const angle = turn + kPi * static_cast<float>(i) / 5;
            float const radius = i % 2 == 0 ? 0.9F : 0.4F;
            corners.push_back({Fixed(radius * std::cos(angle)),
                               Fixed(radius * std::sin(angle)),
                               {250, static_cast<std::uint8_t>(i % 2 == 0 ? 120 : 220), 60, 255}});
            indices.push_back(static_cast<std::uint8_t>(i + 1));
        }
        indices.push_back(1);
        glVertexPointer(2, GL_FIXED, sizeof(Corner), &corners[0].x);
        glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Corner), corners[0].color);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        examples::DrawElements(GL_TRIANGLE_FAN, static_cast<int>(indices.size()), GL_UNSIGNED_BYTE,
                               indices.data());
        glDisableClientState(GL_COLOR_ARRAY);
        DrawDisc();
        glDisableClientState(GL_VERTEX_ARRAY);
        glDisable(GL_DEPTH_TEST);
    }

    static void DrawDisc()
    {
        std::vector<GLfloat> positions;
        for (int i = 0; i < 24; ++i)
        {
            float const angle = 2 * kPi * static_cast<float>(i) / 24;
            positions.insert(positions.end(), {0.7F * std::cos(angle), 0.7F * std::sin(angle), 0.5F});
        }
        glVertexPointer(3, GL_FLOAT, 0, positions.data());
        glColor4ub(70, 110, 190, 160);
        examples::DrawArrays(GL_TRIANGLE_FAN, 0, 24);
        glColor4x(0x10000, 0x10000, 0x10000, 0x10000);
    }

    // The lower half of the picture, in a corner of the screen: shorts and fixed-point numbers.
    static void DrawCorner()
    {
        GLshort const corners[] = {0, 0, 3, 0, 0, 1, 3, 1};
        GLfixed const half = Fixed(0.5F);
        GLfixed const one = Fixed(1);
        GLfixed const picture[] = {0, 0, one, 0, 0, half, one, half};
        glPushMatrix();
        glTranslatef(-0.95F, -0.95F, 0);
        glScalef(0.15F, 0.25F, 1);
        glVertexPointer(2, GL_SHORT, 0, corners);
        glTexCoordPointer(2, GL_FIXED, 0, picture);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        glDisableClientState(GL_VERTEX_ARRAY);
        glPopMatrix();
    }

    // The golden angle spreads the sprites evenly.
    void PlaceSprites(float turn) const
    {
        glBindBuffer(GL_ARRAY_BUFFER, m_positions);
        auto* const position = static_cast<GLfloat*>(m_gl.mapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY_OES));
        if (!position)
            throw std::runtime_error("the driver maps no buffer");
        for (int i = 0; i < kSprites; ++i)
        {
            float const angle = 2.39996F * static_cast<float>(i) + turn;
            float const radius = 0.92F * std::sqrt(static_cast<float>(i + 1) / kSprites);
            position[3 * i] = radius * std::cos(angle);
            position[3 * i + 1] = radius * std::sin(angle);
            position[3 * i + 2] = 0;
        }
        m_gl.unmapBuffer(GL_ARRAY_BUFFER);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }

    // Sizes and colours from memory, positions from the buffer.
    void DrawSprites(float turn) const
    {
        GLfloat sizes[kSprites];
        std::uint8_t colors[kSprites][4];
        float const largest = static_cast<float>(m_height) / 6;
        for (int i = 0; i < kSprites; ++i)
        {
            auto const wave = 0.5F + 0.5F * std::sin(turn * 2 + static_cast<float>(i));
            sizes[i] = largest * (0.4F + 0.6F * wave);
            colors[i][0] = 255;
            colors[i][1] = static_cast<std::uint8_t>(150 + 105 * wave);
            colors[i][2] = static_cast<std::uint8_t>(255 - 100 * wave);
            colors[i][3] = 230;
        }
        glEnable(GL_POINT_SPRITE_OES);
        glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, GL_TRUE);
        glEnable(GL_BLEND);
        glEnable(GL_ALPHA_TEST);
        glPointSizePointerOES(GL_FLOAT, 0, sizes);
        glColorPointer(4, GL_UNSIGNED_BYTE, 0, colors);
        for (GLenum const array :
             {GLenum{GL_VERTEX_ARRAY}, GLenum{GL_COLOR_ARRAY}, GLenum{GL_POINT_SIZE_ARRAY_OES}})
            glEnableClientState(array);
        examples::DrawArrays(GL_POINTS, 0, kSprites);
        for (GLenum const array :
             {GLenum{GL_VERTEX_ARRAY}, GLenum{GL_COLOR_ARRAY}, GLenum{GL_POINT_SIZE_ARRAY_OES}})
            glDisableClientState(array);
        glDisable(GL_ALPHA_TEST);
        glDisable(GL_BLEND);
        glDisable(GL_POINT_SPRITE_OES);
    }

    Extensions m_gl;
    int m_width = 0;
    int m_height = 0;
    GLuint m_picture = 0;
    GLuint m_depth = 0;
    GLuint m_framebuffer = 0;
    GLuint m_positions = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    Sprites scene;
    return examples::Run(argc, argv, "Point sprites that carry a drawn picture, with OpenGL ES 1", scene);
}
