// A ball that mirrors a cube map with mipmaps of its own: each level has a tint, so that the level which is
// sampled shows. A second cube map leaves its mipmaps to the driver.
#include "matrix.h"
#include "shaders.h"
#include "support.h"
#include <cstdint>
#include <vector>

using examples::Matrix;
using examples::Multiply;

namespace
{
constexpr GLuint kPosition = 0;
constexpr int kRings = 16;
constexpr int kSegments = 24;
constexpr int kSize = 32;
constexpr float kPi = 3.14159265F;

char const* const kVertexShader = R"(
attribute vec3 position;
uniform mat4 u_view;
uniform mat4 u_place;
uniform mat3 u_turn;
varying vec3 v_normal;
void main() {
    v_normal = u_turn * position;
    gl_Position = u_view * (u_place * vec4(position, 1.0));
})";

char const* const kFragmentShader = R"(
precision mediump float;
uniform samplerCube u_room;
uniform vec3 u_light;
varying vec3 v_normal;
void main() {
    vec3 normal = normalize(v_normal);
    float lit = 0.55 + 0.45 * max(dot(normal, u_light), 0.0);
    gl_FragColor = vec4(textureCube(u_room, reflect(vec3(0.0, 0.0, -1.0), normal)).rgb * lit, 1.0);
})";

constexpr std::uint8_t kFaceColors[6][3] = {{230, 90, 70}, {70, 200, 180}, {245, 245, 235},
                                            {90, 70, 60},  {250, 190, 80}, {110, 120, 240}};

// Squares of a face's colour; smaller levels are darker.
std::vector<std::uint8_t> FaceTexels(int face, int size, int level)
{
    std::vector<std::uint8_t> texels;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
        {
            bool const bright = ((x * 4 / size) + (y * 4 / size)) % 2 == 0;
            for (int channel = 0; channel < 3; ++channel)
            {
                int const value = kFaceColors[face][channel] * (bright ? 10 : 7) / 10;
                texels.push_back(static_cast<std::uint8_t>(value * (8 - level) / 8));
            }
            texels.push_back(255);
        }
    return texels;
}

void UploadFaces(int size, int level)
{
    for (int face = 0; face < 6; ++face)
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(face), level, GL_RGBA, size, size,
                     0, GL_RGBA, GL_UNSIGNED_BYTE, FaceTexels(face, size, level).data());
}

GLuint MakeCubeMap(bool ownLevels)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_CUBE_MAP, texture);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    UploadFaces(kSize, 0);
    for (int level = 1; ownLevels && kSize >> level > 0; ++level)
        UploadFaces(kSize >> level, level);
    if (!ownLevels)
        glGenerateMipmap(GL_TEXTURE_CUBE_MAP);
    return texture;
}

class MirrorBalls : public examples::Scene
{
public:
    void Setup(int width, int height) override
    {
        m_program = examples::BuildProgram(kVertexShader, kFragmentShader);
        glBindAttribLocation(m_program, kPosition, "position");
        glLinkProgram(m_program);
        m_ownLevels = MakeCubeMap(true);
        m_driverLevels = MakeCubeMap(false);
        MakeBall();
        float const aspect = static_cast<float>(width) / static_cast<float>(height);
        m_view = Multiply(examples::Perspective(0.7F, aspect, 1.0F, 20.0F), examples::Translation(0, 0, -5));
        glViewport(0, 0, width, height);
        glClearColor(0.12F, 0.10F, 0.15F, 1.0F);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_CULL_FACE);
    }

    void DrawFrame(int frame) override
    {
        float const turn = static_cast<float>(frame) * 0.06F;
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glUseProgram(m_program);
        glUniform1i(glGetUniformLocation(m_program, "u_room"), 1);
        glUniform3f(glGetUniformLocation(m_program, "u_light"), 0.48F, 0.6F, 0.64F);
        glUniformMatrix4fv(glGetUniformLocation(m_program, "u_view"), 1, GL_FALSE, m_view.data());
        glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
        glVertexAttribPointer(kPosition, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
        glEnableVertexAttribArray(kPosition);
        DrawBall(m_ownLevels, examples::Translation(-0.9F, 0, 0), turn);
        DrawBall(m_driverLevels,
                 Multiply(examples::Translation(1.1F, 0.3F, -1), examples::Scaling(0.8F, 0.8F, 0.8F)), -turn);
        // Far enough away for the small levels.
        DrawBall(m_ownLevels,
                 Multiply(examples::Translation(0.9F, -0.9F, 0), examples::Scaling(0.15F, 0.15F, 0.15F)),
                 turn);
    }

private:
    void MakeBall()
    {
        std::vector<float> vertices;
        std::vector<std::uint16_t> indices;
        for (int ring = 0; ring <= kRings; ++ring)
            for (int segment = 0; segment <= kSegments; ++segment)
            {
                float const down = kPi * static_cast<float>(ring) / kRings;
                float const around = 2 * kPi * static_cast<float>(segment) / kSegments;
                vertices.insert(vertices.end(), {std::sin(down) * std::cos(around), std::cos(down),
                                                 std::sin(down) * std::sin(around)});
            }
        for (int ring = 0; ring < kRings; ++ring)
            for (int segment = 0; segment < kSegments; ++segment)
            {
                int const at = ring * (kSegments + 1) + segment;
                for (int const corner :
                     {at, at + 1, at + kSegments + 1, at + 1, at + kSegments + 2, at + kSegments + 1})
                    indices.push_back(static_cast<std::uint16_t>(corner));
            }
        m_count = static_cast<GLsizei>(indices.size());
        glGenBuffers(1, &m_vertices);
        glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)),
                     vertices.data(), GL_STATIC_DRAW);
        glGenBuffers(1, &m_indices);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(std::uint16_t)),
                     indices.data(), GL_STATIC_DRAW);
    }

    void DrawBall(GLuint room, Matrix const& place, float turn) const
    {
        float const c = std::cos(turn);
        float const s = std::sin(turn);
        float const rotation[] = {c, 0, -s, 0, 1, 0, s, 0, c};
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_CUBE_MAP, room);
        glUniformMatrix4fv(glGetUniformLocation(m_program, "u_place"), 1, GL_FALSE, place.data());
        glUniformMatrix3fv(glGetUniformLocation(m_program, "u_turn"), 1, GL_FALSE, rotation);
        examples::DrawElements(GL_TRIANGLES, m_count, GL_UNSIGNED_SHORT, nullptr);
    }

    Matrix m_view{};
    GLuint m_program = 0;
    GLuint m_ownLevels = 0;
    GLuint m_driverLevels = 0;
    GLuint m_vertices = 0;
    GLuint m_indices = 0;
    GLsizei m_count = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    MirrorBalls scene;
    return examples::Run(argc, argv, "Balls that mirror cube maps with mipmaps", scene);
}
