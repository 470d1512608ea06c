// A lit, textured cube that spins above a mirroring floor: vertex and index buffers, a mipmapped texture,
// blending, and uniforms of most types.
#include "matrix.h"
#include "shaders.h"
#include "support.h"
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

using examples::Matrix;
using examples::Multiply;

namespace
{
constexpr float kFloor = -1.35F;
constexpr float kSize = 0.82F;
constexpr GLuint kPosition = 0;
constexpr GLuint kNormal = 1;
constexpr GLuint kTexCoord = 2;
constexpr GLuint kColor = 3;

char const* const kBackdropVertex = R"(
attribute vec2 position;
varying vec2 v_position;
void main() {
    v_position = position;
    gl_Position = vec4(position, 1.0, 1.0);
})";

char const* const kBackdropFragment = R"(
precision mediump float;
varying vec2 v_position;
uniform vec3 u_top;
uniform vec3 u_bottom;
void main() {
    vec3 color = mix(u_bottom, u_top, smoothstep(-0.7, 0.9, v_position.y));
    gl_FragColor = vec4(color * (1.0 - 0.28 * dot(v_position, v_position)), 1.0);
})";

char const* const kCubeVertex = R"(
attribute vec3 position;
attribute vec3 normal;
attribute vec2 texCoord;
attribute vec3 color;
uniform mat4 u_viewProjection;
uniform mat4 u_model;
uniform mat3 u_rotation;
varying vec3 v_position;
varying vec3 v_normal;
varying vec2 v_texCoord;
varying vec3 v_color;
void main() {
    vec4 world = u_model * vec4(position, 1.0);
    v_position = world.xyz;
    v_normal = u_rotation * normal;
    v_texCoord = texCoord;
    v_color = color;
    gl_Position = u_viewProjection * world;
})";

char const* const kCubeFragment = R"(
precision highp float;
varying vec3 v_position;
varying vec3 v_normal;
varying vec2 v_texCoord;
varying vec3 v_color;
uniform sampler2D u_tiles;
uniform vec3 u_eye;
uniform vec3 u_lights[2];
uniform vec4 u_lightColors[2];
uniform float u_shininess;
uniform int u_lightCount;
void main() {
    vec4 tile = texture2D(u_tiles, v_texCoord);
    vec3 normal = normalize(v_normal);
    vec3 toEye = normalize(u_eye - v_position);
    vec3 base = v_color * tile.rgb;
    vec3 sum = base * 0.30;
    for (int i = 0; i < 2; ++i) {
        if (i >= u_lightCount)
            break;
        vec3 toLight = normalize(u_lights[i] - v_position);
        float diffuse = max(dot(normal, toLight), 0.0);
        float highlight = pow(max(dot(normal, normalize(toLight + toEye)), 0.0), u_shininess);
        sum += (base * diffuse + tile.a * highlight * 0.8) * u_lightColors[i].rgb * u_lightColors[i].a;
    }
    float rim = pow(1.0 - max(dot(normal, toEye), 0.0), 3.0);
    gl_FragColor = vec4(sum + rim * vec3(0.10, 0.14, 0.22), 1.0);
})";

char const* const kFloorVertex = R"(
attribute vec2 position;
uniform mat4 u_viewProjection;
uniform float u_height;
varying vec2 v_position;
void main() {
    v_position = position;
    gl_Position = u_viewProjection * vec4(position.x, u_height, position.y, 1.0);
})";

// Half transparent, so that the mirrored cube below it shows through: more so near the cube. Its own shade is
// a soft shadow, and it fades into the backdrop far out.
char const* const kFloorFragment = R"(
precision mediump float;
varying vec2 v_position;
uniform vec4 u_color;
uniform vec2 u_shadow;
void main() {
    float away = length(v_position);
    float shadow = 1.0 - u_shadow.y * (1.0 - smoothstep(0.2, u_shadow.x, away));
    float fade = 1.0 - smoothstep(3.0, 7.5, away);
    gl_FragColor = vec4(u_color.rgb * shadow, mix(0.97, u_color.a, exp(-0.25 * away)) * fade);
})";

struct Vertex
{
    float position[3];
    float normal[3];
    float texCoord[2];
    std::uint8_t color[4];
};

struct Face
{
    float normal[3];
    float right[3];
    float up[3];
    std::uint8_t color[3];
};

constexpr Face kFaces[] = {
    {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {255, 122, 89}},    // coral
    {{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}, {64, 201, 190}},  // teal
    {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}, {255, 196, 77}},   // amber
    {{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {124, 131, 255}},  // indigo
    {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}, {240, 240, 246}},  // white
    {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}, {214, 98, 172}},   // rose
};

std::vector<Vertex> CubeVertices()
{
    std::vector<Vertex> vertices;
    for (Face const& face : kFaces)
        for (int corner = 0; corner < 4; ++corner)
        {
            float const u = static_cast<float>(corner & 1);
            float const v = static_cast<float>(corner >> 1);
            Vertex vertex{{}, {}, {u, v}, {face.color[0], face.color[1], face.color[2], 255}};
            for (int axis = 0; axis < 3; ++axis)
            {
                vertex.normal[axis] = face.normal[axis];
                vertex.position[axis] =
                    face.normal[axis] + (2 * u - 1) * face.right[axis] + (2 * v - 1) * face.up[axis];
            }
            vertices.push_back(vertex);
        }
    return vertices;
}

std::vector<std::uint16_t> CubeIndices()
{
    std::vector<std::uint16_t> indices;
    for (unsigned face = 0; face < std::size(kFaces); ++face)
        for (unsigned const corner : {0U, 1U, 2U, 2U, 1U, 3U})
            indices.push_back(static_cast<std::uint16_t>(face * 4 + corner));
    return indices;
}

// How far inside a tile with rounded corners a point is, from 0 in the seam to 1 on the face. The point is
// given in tiles, from the middle of one.
float TileHeight(float x, float y)
{
    constexpr float kCorner = 0.16F;
    constexpr float kHalf = 0.44F;
    float const dx = std::max(std::fabs(x) - (kHalf - kCorner), 0.0F);
    float const dy = std::max(std::fabs(y) - (kHalf - kCorner), 0.0F);
    float const inside = kCorner - std::sqrt(dx * dx + dy * dy);
    return std::clamp(inside / 0.05F, 0.0F, 1.0F);
}

// Bevelled tiles: colour is how bright the face's own colour shows, alpha how glossy the place is.
std::vector<std::uint8_t> TileTexture(int size, int tiles)
{
    std::vector<std::uint8_t> texels;
    for (int row = 0; row < size; ++row)
        for (int column = 0; column < size; ++column)
        {
            float const x =
                (static_cast<float>(column) + 0.5F) * static_cast<float>(tiles) / static_cast<float>(size);
            float const y =
                (static_cast<float>(row) + 0.5F) * static_cast<float>(tiles) / static_cast<float>(size);
            int const tile = static_cast<int>(x) * 7 + static_cast<int>(y) * 5;
            float const height = TileHeight(x - std::floor(x) - 0.5F, y - std::floor(y) - 0.5F);
            float const shade = 0.10F + height * (0.74F + 0.04F * static_cast<float>(tile % 5));
            auto const value = static_cast<std::uint8_t>(255.0F * std::min(shade, 1.0F));
            auto const gloss = static_cast<std::uint8_t>(40.0F + 215.0F * height);
            texels.insert(texels.end(), {value, value, value, gloss});
        }
    return texels;
}

template <class Element>
GLuint MakeBuffer(GLenum target, std::vector<Element> const& elements)
{
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(elements.size() * sizeof(Element)), elements.data(),
                 GL_STATIC_DRAW);
    return buffer;
}

void PointAttribute(GLuint index, GLint size, GLenum type, GLboolean normalized, std::size_t stride,
                    std::size_t offset)
{
    glVertexAttribPointer(index, size, type, normalized, static_cast<GLsizei>(stride),
                          reinterpret_cast<void const*>(offset));
    glEnableVertexAttribArray(index);
}

class SpinningCube : public examples::Scene
{
public:
    void Setup(int width, int height) override
    {
        MakePrograms();
        MakeTexture();
        m_square = MakeBuffer<float>(GL_ARRAY_BUFFER, {-1, -1, 1, -1, -1, 1, 1, 1});
        m_floor = MakeBuffer<float>(GL_ARRAY_BUFFER, {-8, 8, 8, 8, -8, -8, 8, -8});
        m_vertices = MakeBuffer(GL_ARRAY_BUFFER, CubeVertices());
        m_indices = MakeBuffer(GL_ELEMENT_ARRAY_BUFFER, CubeIndices());
        float const aspect = static_cast<float>(width) / static_cast<float>(height);
        Matrix const view = Multiply(examples::RotationX(0.30F), examples::Translation(0, -1.55F, -6.4F));
        m_viewProjection = Multiply(examples::Perspective(0.72F, aspect, 0.5F, 40.0F), view);
        glViewport(0, 0, width, height);
        glEnable(GL_CULL_FACE);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }

    void DrawFrame(int frame) override
    {
        float const angle = 0.6F + static_cast<float>(frame) * 0.035F;
        float const lift = 0.12F * std::sin(angle * 2.0F);
        Matrix const spin =
            Multiply(examples::RotationX(0.50F + 0.15F * std::sin(angle)), examples::RotationY(angle));
        Matrix const size = examples::Scaling(kSize, kSize, kSize);
        Matrix const model = Multiply(examples::Translation(0, lift, 0), Multiply(spin, size));
        Matrix const mirror = Multiply(examples::Translation(0, 2 * kFloor, 0), examples::Scaling(1, -1, 1));

        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        DrawBackdrop();
        // A mirror turns the winding of the faces around.
        glFrontFace(GL_CW);
        DrawCube(Multiply(mirror, model), Multiply(mirror, spin), -1.0F);
        glFrontFace(GL_CCW);
        DrawFloor(lift);
        DrawCube(model, spin, 1.0F);
    }

private:
    void MakePrograms()
    {
        m_backdropProgram = examples::BuildProgram(kBackdropVertex, kBackdropFragment);
        m_floorProgram = examples::BuildProgram(kFloorVertex, kFloorFragment);
        m_cubeProgram = examples::BuildProgram(kCubeVertex, kCubeFragment);
        glBindAttribLocation(m_cubeProgram, kPosition, "position");
        glBindAttribLocation(m_cubeProgram, kNormal, "normal");
        glBindAttribLocation(m_cubeProgram, kTexCoord, "texCoord");
        glBindAttribLocation(m_cubeProgram, kColor, "color");
        glLinkProgram(m_cubeProgram);
    }

    void MakeTexture()
    {
        constexpr int kSize = 256;
        std::vector<std::uint8_t> const texels = TileTexture(kSize, 4);
        glGenTextures(1, &m_texture);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kSize, kSize, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        glGenerateMipmap(GL_TEXTURE_2D);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    }

    // The square that a program with the one attribute "position" draws from.
    static void UseSquare(GLuint program, GLuint square)
    {
        glUseProgram(program);
        for (GLuint const index : {kPosition, kNormal, kTexCoord, kColor})
            glDisableVertexAttribArray(index);
        glBindBuffer(GL_ARRAY_BUFFER, square);
        auto const position = static_cast<GLuint>(glGetAttribLocation(program, "position"));
        PointAttribute(position, 2, GL_FLOAT, GL_FALSE, 0, 0);
    }

    static GLint Uniform(GLuint program, char const* name) { return glGetUniformLocation(program, name); }

    void DrawBackdrop() const
    {
        UseSquare(m_backdropProgram, m_square);
        glUniform3f(Uniform(m_backdropProgram, "u_top"), 0.13F, 0.17F, 0.30F);
        glUniform3f(Uniform(m_backdropProgram, "u_bottom"), 0.50F, 0.55F, 0.66F);
        glDisable(GL_DEPTH_TEST);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glEnable(GL_DEPTH_TEST);
    }

    void DrawFloor(float lift) const
    {
        UseSquare(m_floorProgram, m_floor);
        glUniformMatrix4fv(Uniform(m_floorProgram, "u_viewProjection"), 1, GL_FALSE, m_viewProjection.data());
        glUniform1f(Uniform(m_floorProgram, "u_height"), kFloor);
        glUniform4f(Uniform(m_floorProgram, "u_color"), 0.47F, 0.51F, 0.61F, 0.62F);
        glUniform2f(Uniform(m_floorProgram, "u_shadow"), 2.5F + lift, 0.62F - lift);
        glEnable(GL_BLEND);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisable(GL_BLEND);
    }

    void UseCubeBuffers() const
    {
        glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
        PointAttribute(kPosition, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), offsetof(Vertex, position));
        PointAttribute(kNormal, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), offsetof(Vertex, normal));
        PointAttribute(kTexCoord, 2, GL_FLOAT, GL_FALSE, sizeof(Vertex), offsetof(Vertex, texCoord));
        PointAttribute(kColor, 3, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex), offsetof(Vertex, color));
    }

    // `side`: 1 for the cube, -1 for its mirror image, whose lights stand mirrored too.
    void DrawCube(Matrix const& model, Matrix const& rotation, float side) const
    {
        float const turn[] = {rotation[0], rotation[1], rotation[2], rotation[4], rotation[5],
                              rotation[6], rotation[8], rotation[9], rotation[10]};
        float const base = side > 0 ? 0 : 2 * kFloor;
        float const lights[] = {2.4F, base + side * 4.2F, 6.0F, -4.5F, base + side * 1.5F, 2.5F};
        float const lightColors[] = {1.0F, 0.95F, 0.86F, 0.85F, 0.45F, 0.60F, 1.0F, 0.35F};
        glUseProgram(m_cubeProgram);
        UseCubeBuffers();
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        glUniformMatrix4fv(Uniform(m_cubeProgram, "u_viewProjection"), 1, GL_FALSE, m_viewProjection.data());
        glUniformMatrix4fv(Uniform(m_cubeProgram, "u_model"), 1, GL_FALSE, model.data());
        glUniformMatrix3fv(Uniform(m_cubeProgram, "u_rotation"), 1, GL_FALSE, turn);
        glUniform3f(Uniform(m_cubeProgram, "u_eye"), 0, base + side * 3.35F, 5.65F);
        glUniform3fv(Uniform(m_cubeProgram, "u_lights"), 2, lights);
        glUniform4fv(Uniform(m_cubeProgram, "u_lightColors"), 2, lightColors);
        glUniform1f(Uniform(m_cubeProgram, "u_shininess"), 48.0F);
        glUniform1i(Uniform(m_cubeProgram, "u_lightCount"), 2);
        glUniform1i(Uniform(m_cubeProgram, "u_tiles"), 0);
        examples::DrawElements(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, nullptr);
    }

    Matrix m_viewProjection{};
    GLuint m_backdropProgram = 0;
    GLuint m_floorProgram = 0;
    GLuint m_cubeProgram = 0;
    GLuint m_texture = 0;
    GLuint m_square = 0;
    GLuint m_floor = 0;
    GLuint m_vertices = 0;
    GLuint m_indices = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    SpinningCube scene;
    return examples::Run(argc, argv, "A lit, textured, spinning cube", scene);
}
