// Three programs with vertex array objects: a row of bars from arrays of uniforms, a star turned by matrices
// of each size, and a picture that is changed piece by piece while it is shown.
#include "matrix.h"
#include "shaders.h"
#include "support.h"
#include <GLES2/gl2ext.h>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{
constexpr GLuint kPosition = 0;
constexpr int kBars = 6;
constexpr int kPicture = 16;
constexpr float kPi = 3.14159265F;

char const* const kBarsVertex = R"(
attribute vec3 position;
uniform float u_heights[6];
uniform vec2 u_places[6];
uniform ivec2 u_shape;
varying float v_bar;
void main() {
    int bar = int(position.z);
    v_bar = position.z;
    vec2 size = vec2(1.0 / float(u_shape.x), u_heights[bar] / float(u_shape.y));
    gl_Position = vec4(u_places[bar] + position.xy * size, 0.0, 1.0);
})";

char const* const kBarsFragment = R"(
precision mediump float;
uniform vec4 u_colors[3];
varying float v_bar;
void main() {
    float left = mod(floor(v_bar + 0.5), 3.0);
    gl_FragColor = left < 0.5 ? u_colors[0] : left < 1.5 ? u_colors[1] : u_colors[2];
})";

char const* const kStarVertex = R"(
attribute vec2 position;
uniform mat2 u_squeeze;
uniform mat3 u_turn;
uniform mat4 u_place;
void main() { gl_Position = u_place * vec4((u_turn * vec3(u_squeeze * position, 1.0)).xy, 0.0, 1.0); })";

char const* const kStarFragment = R"(
precision mediump float;
uniform vec3 u_color;
uniform bool u_bright;
void main() { gl_FragColor = vec4(u_bright ? u_color : u_color * 0.5, 1.0); })";

char const* const kPictureVertex = R"(
attribute vec2 position;
uniform vec4 u_place;
varying vec2 v_texCoord;
void main() {
    v_texCoord = position * 0.5 + 0.5;
    gl_Position = vec4(position * u_place.xy + u_place.zw, 0.0, 1.0);
})";

char const* const kPictureFragment = R"(
precision mediump float;
uniform sampler2D u_picture;
varying vec2 v_texCoord;
void main() { gl_FragColor = texture2D(u_picture, v_texCoord); })";

template <typename Function>
Function Find(char const* name)
{
    auto const found = reinterpret_cast<Function>(eglGetProcAddress(name));
    if (!found)
        throw std::runtime_error(std::string("the driver has no ") + name);
    return found;
}

class Programs : public examples::Scene
{
public:
    void Setup(int width, int height) override
    {
        m_bindArray = Find<PFNGLBINDVERTEXARRAYOESPROC>("glBindVertexArrayOES");
        Find<PFNGLGENVERTEXARRAYSOESPROC>("glGenVertexArraysOES")(3, m_arrays);
        m_bars = MakeProgram(kBarsVertex, kBarsFragment);
        m_star = MakeProgram(kStarVertex, kStarFragment);
        m_shown = MakeProgram(kPictureVertex, kPictureFragment);
        FillArray(m_arrays[0], 3, BarVertices());
        FillArray(m_arrays[1], 2, StarVertices());
        FillArray(m_arrays[2], 2, {-1, -1, 1, -1, -1, 1, 1, 1});
        MakePicture();
        glViewport(0, 0, width, height);
        glClearColor(0.09F, 0.11F, 0.14F, 1.0F);
    }

    void DrawFrame(int frame) override
    {
        glClear(GL_COLOR_BUFFER_BIT);
        float const time = static_cast<float>(frame) * 0.11F;
        DrawBars(time);
        DrawStar(time, frame % 4 < 2);
        ChangePicture(frame);
        DrawPicture();
        m_bindArray(0);
    }

private:
    static GLuint MakeProgram(char const* vertex, char const* fragment)
    {
        GLuint const program = examples::BuildProgram(vertex, fragment);
        glBindAttribLocation(program, kPosition, "position");
        glLinkProgram(program);
        return program;
    }

    static GLint Uniform(GLuint program, char const* name) { return glGetUniformLocation(program, name); }

    void FillArray(GLuint array, GLint size, std::vector<float> const& vertices) const
    {
        GLuint buffer = 0;
        m_bindArray(array);
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)),
                     vertices.data(), GL_STATIC_DRAW);
        glVertexAttribPointer(kPosition, size, GL_FLOAT, GL_FALSE, 0, nullptr);
        glEnableVertexAttribArray(kPosition);
    }

    static std::vector<float> BarVertices()
    {
        std::vector<float> vertices;
        for (int bar = 0; bar < kBars; ++bar)
            for (auto const& [x, y] : {std::pair{0.0F, 0.0F},
                                       {0.8F, 0.0F},
                                       {0.0F, 1.0F},
                                       {0.0F, 1.0F},
                                       {0.8F, 0.0F},
                                       {0.8F, 1.0F}})
                vertices.insert(vertices.end(), {x, y, static_cast<float>(bar)});
        return vertices;
    }

    static std::vector<float> StarVertices()
    {
        std::vector<float> vertices = {0, 0};
        for (int point = 0; point <= 10; ++point)
        {
            float const angle = kPi * static_cast<float>(point) / 5;
            float const radius = point % 2 == 0 ? 1.0F : 0.45F;
            vertices.insert(vertices.end(), {radius * std::sin(angle), radius * std::cos(angle)});
        }
        return vertices;
    }

    void MakePicture()
    {
        std::vector<std::uint8_t> const texels(kPicture * kPicture * 3, 40);
        glGenTextures(1, &m_picture);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, kPicture, kPicture, 0, GL_RGB, GL_UNSIGNED_BYTE,
                     texels.data());
    }

    void DrawBars(float time) const
    {
        float heights[kBars];
        float places[2 * kBars];
        for (int bar = 0; bar < kBars; ++bar)
        {
            heights[bar] = 1.2F + std::sin(time + static_cast<float>(bar));
            places[2 * bar] = -0.95F + static_cast<float>(bar) / 4;
            places[2 * bar + 1] = -0.9F;
        }
        float const colors[] = {0.9F, 0.5F, 0.3F, 1, 0.3F, 0.7F, 0.9F, 1, 0.8F, 0.8F, 0.4F, 1};
        m_bindArray(m_arrays[0]);
        glUseProgram(m_bars);
        glUniform1fv(Uniform(m_bars, "u_heights"), kBars, heights);
        glUniform2fv(Uniform(m_bars, "u_places"), kBars, places);
        GLint const shape[] = {5, 3};
        glUniform2iv(Uniform(m_bars, "u_shape"), 1, shape);
        glUniform4fv(Uniform(m_bars, "u_colors"), 3, colors);
        examples::DrawArrays(GL_TRIANGLES, 0, 6 * kBars);
    }

    void DrawStar(float time, bool bright) const
    {
        float const c = std::cos(time);
        float const s = std::sin(time);
        float const squeeze[] = {0.4F, 0, 0.1F, 0.5F};
        float const turn[] = {c, s, 0, -s, c, 0, 0, 0, 1};
        m_bindArray(m_arrays[1]);
        glUseProgram(m_star);
        glUniformMatrix2fv(Uniform(m_star, "u_squeeze"), 1, GL_FALSE, squeeze);
        glUniformMatrix3fv(Uniform(m_star, "u_turn"), 1, GL_FALSE, turn);
        glUniformMatrix4fv(Uniform(m_star, "u_place"), 1, GL_FALSE,
                           examples::Translation(-0.35F, 0.4F, 0).data());
        glUniform3f(Uniform(m_star, "u_color"), 0.95F, 0.85F, 0.3F);
        glUniform1i(Uniform(m_star, "u_bright"), bright ? 1 : 0);
        examples::DrawArrays(GL_TRIANGLE_FAN, 0, 12);
    }

    // A piece of five by three texels: its rows of fifteen bytes are not a multiple of the usual alignment.
    void ChangePicture(int frame) const
    {
        constexpr int kWidth = 5;
        constexpr int kHeight = 3;
        std::vector<std::uint8_t> texels;
        for (int texel = 0; texel < kWidth * kHeight; ++texel)
            for (int const value : {60 + 12 * texel, 230 - 10 * texel, 90 + (frame * 37) % 160})
                texels.push_back(static_cast<std::uint8_t>(value));
        glBindTexture(GL_TEXTURE_2D, m_picture);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glTexSubImage2D(GL_TEXTURE_2D, 0, (frame * 5) % (kPicture - kWidth),
                        (frame * 3) % (kPicture - kHeight), kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE,
                        texels.data());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    }

    void DrawPicture() const
    {
        m_bindArray(m_arrays[2]);
        glUseProgram(m_shown);
        glUniform1i(Uniform(m_shown, "u_picture"), 0);
        glUniform4f(Uniform(m_shown, "u_place"), 0.35F, 0.45F, 0.55F, 0.35F);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }

    PFNGLBINDVERTEXARRAYOESPROC m_bindArray = nullptr;
    GLuint m_arrays[3] = {};
    GLuint m_bars = 0;
    GLuint m_star = 0;
    GLuint m_shown = 0;
    GLuint m_picture = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    Programs scene;
    return examples::Run(argc, argv, "Three programs with vertex array objects and a changing picture",
                         scene);
}
