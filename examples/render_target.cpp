// Two interlocked, turning blocks drawn into a texture with a depth renderbuffer, and the texture on a screen
// that sways in front of a darker copy of itself.
#include "matrix.h"
#include "shaders.h"
#include "support.h"
#include <stdexcept>

using examples::Matrix;
using examples::Multiply;

namespace
{
constexpr GLuint kPosition = 0;
constexpr GLuint kSecond = 1;  // colour of a block, texture coordinate of a screen
constexpr GLsizei kTargetSize = 128;

char const* const kBlockVertex = R"(
attribute vec3 position;
attribute vec3 second;
uniform mat4 u_transform;
varying vec3 v_color;
void main() {
    v_color = second;
    gl_Position = u_transform * vec4(position, 1.0);
})";

char const* const kBlockFragment = R"(
precision mediump float;
varying vec3 v_color;
void main() { gl_FragColor = vec4(v_color, 1.0); })";

char const* const kScreenVertex = R"(
attribute vec2 position;
attribute vec2 second;
uniform mat4 u_transform;
varying vec2 v_texCoord;
void main() {
    v_texCoord = second;
    gl_Position = u_transform * vec4(position, 0.0, 1.0);
})";

char const* const kScreenFragment = R"(
precision mediump float;
uniform sampler2D u_picture;
uniform vec4 u_tint;
varying vec2 v_texCoord;
void main() { gl_FragColor = texture2D(u_picture, v_texCoord) * u_tint; })";

// A block's eight corners with their colours.
constexpr GLfloat kCorners[] = {-1, -1, -1, 0.9F, 0.3F, 0.2F, 1, -1, -1, 0.9F, 0.6F, 0.2F,
                                -1, 1,  -1, 0.8F, 0.8F, 0.3F, 1, 1,  -1, 0.3F, 0.8F, 0.4F,
                                -1, -1, 1,  0.2F, 0.7F, 0.8F, 1, -1, 1,  0.2F, 0.4F, 0.9F,
                                -1, 1,  1,  0.6F, 0.3F, 0.9F, 1, 1,  1,  0.9F, 0.9F, 0.9F};
constexpr GLubyte kFaces[] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                              2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
constexpr GLfloat kScreen[] = {-1, -1, 0, 0, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 1, 1};

GLuint MakeBuffer(GLenum target, GLsizeiptr size, void const* data)
{
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, size, data, GL_STATIC_DRAW);
    return buffer;
}

void Point(GLuint index, GLint size, GLsizei stride, std::size_t offset)
{
    glVertexAttribPointer(index, size, GL_FLOAT, GL_FALSE, stride * GLsizei{sizeof(GLfloat)},
                          reinterpret_cast<void const*>(offset * sizeof(GLfloat)));
    glEnableVertexAttribArray(index);
}

GLuint MakeProgram(char const* vertex, char const* fragment)
{
    GLuint const program = examples::BuildProgram(vertex, fragment);
    glBindAttribLocation(program, kPosition, "position");
    glBindAttribLocation(program, kSecond, "second");
    glLinkProgram(program);
    return program;
}

void SetMatrix(GLuint program, Matrix const& matrix)
{
    glUniformMatrix4fv(glGetUniformLocation(program, "u_transform"), 1, GL_FALSE, matrix.data());
}

class RenderTarget : public examples::Scene
{
public:
    void Setup(int width, int height) override
    {
        m_width = width;
        m_height = height;
        m_blockProgram = MakeProgram(kBlockVertex, kBlockFragment);
        m_screenProgram = MakeProgram(kScreenVertex, kScreenFragment);
        m_corners = MakeBuffer(GL_ARRAY_BUFFER, sizeof kCorners, kCorners);
        m_screen = MakeBuffer(GL_ARRAY_BUFFER, sizeof kScreen, kScreen);
        m_faces = MakeBuffer(GL_ELEMENT_ARRAY_BUFFER, sizeof kFaces, kFaces);
        MakeTarget();
        glEnable(GL_CULL_FACE);
    }

    void DrawFrame(int frame) override
    {
        float const turn = 0.4F + static_cast<float>(frame) * 0.05F;
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        DrawBlocks(turn);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        DrawScreens(0.25F * std::sin(turn));
    }

private:
    void MakeTarget()
    {
        glGenTextures(1, &m_picture);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kTargetSize, kTargetSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glGenRenderbuffers(1, &m_depth);
        glBindRenderbuffer(GL_RENDERBUFFER, m_depth);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, kTargetSize, kTargetSize);
        glGenFramebuffers(1, &m_framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_picture, 0);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, m_depth);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
            throw std::runtime_error("the driver draws into no RGBA texture with 16 bits of depth");
    }

    void DrawBlocks(float turn) const
    {
        glViewport(0, 0, kTargetSize, kTargetSize);
        glClearColor(0.10F, 0.12F, 0.20F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glUseProgram(m_blockProgram);
        glBindBuffer(GL_ARRAY_BUFFER, m_corners);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_faces);
        Point(kPosition, 3, 6, 0);
        Point(kSecond, 3, 6, 3);
        Matrix const view =
            Multiply(examples::Perspective(0.8F, 1.0F, 1.0F, 20.0F), examples::Translation(0, 0, -6));
        Matrix const spin = Multiply(examples::RotationX(turn * 0.7F), examples::RotationY(turn));
        for (Matrix const& shape : {examples::Scaling(1.6F, 0.5F, 0.6F), examples::Scaling(0.5F, 1.5F, 0.8F)})
        {
            SetMatrix(m_blockProgram, Multiply(view, Multiply(spin, shape)));
            examples::DrawElements(GL_TRIANGLES, GLsizei{sizeof kFaces}, GL_UNSIGNED_BYTE, nullptr);
        }
    }

    void DrawScreens(float sway) const
    {
        glViewport(0, 0, m_width, m_height);
        glClearColor(0.02F, 0.03F, 0.05F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_DEPTH_TEST);
        glUseProgram(m_screenProgram);
        glBindBuffer(GL_ARRAY_BUFFER, m_screen);
        Point(kPosition, 2, 4, 0);
        Point(kSecond, 2, 4, 2);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        glUniform1i(glGetUniformLocation(m_screenProgram, "u_picture"), 0);
        DrawScreen(Multiply(examples::Translation(-sway, 0.1F, 0), examples::Scaling(0.9F, 0.8F, 1)), 0.35F);
        DrawScreen(Multiply(examples::Translation(sway, -0.05F, 0), examples::Scaling(0.7F, 0.75F, 1)), 1.0F);
    }

    void DrawScreen(Matrix const& place, float brightness) const
    {
        SetMatrix(m_screenProgram, place);
        glUniform4f(glGetUniformLocation(m_screenProgram, "u_tint"), brightness, brightness, brightness,
                    1.0F);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }

    int m_width = 0;
    int m_height = 0;
    GLuint m_blockProgram = 0;
    GLuint m_screenProgram = 0;
    GLuint m_corners = 0;
    GLuint m_screen = 0;
    GLuint m_faces = 0;
    GLuint m_picture = 0;
    GLuint m_depth = 0;
    GLuint m_framebuffer = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    RenderTarget scene;
    return examples::Run(argc, argv, "Blocks drawn into a texture with a depth renderbuffer", scene);
}
