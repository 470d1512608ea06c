// A turning flower drawn from memory of the program's own: strided and tight arrays, with byte and short
// indices and without, and with indices in a buffer object.
#include "array_log.h"
#include "matrix.h"
#include "shaders.h"
#include "support.h"
#include <CLI/CLI.hpp>
#include <cstdint>
#include <vector>

namespace
{
constexpr GLuint kPosition = 0;
constexpr GLuint kColor = 1;
constexpr int kPetals = 9;
constexpr int kSeeds = 24;
constexpr float kPi = 3.14159265F;

char const* const kVertexShader = R"(
attribute vec2 position;
attribute vec4 color;
uniform vec2 u_scale;
varying vec4 v_color;
void main() {
    v_color = color;
    gl_Position = vec4(position * u_scale, 0.0, 1.0);
})";

char const* const kFragmentShader = R"(
precision mediump float;
varying vec4 v_color;
void main() { gl_FragColor = v_color; })";

// Position and colour next to each other: read with a stride.
struct Vertex
{
    float x;
    float y;
    std::uint8_t color[4];
};

Vertex At(float angle, float radius, std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    return {radius * std::cos(angle), radius * std::sin(angle), {red, green, blue, 255}};
}

class Flower : public examples::Scene
{
public:
    void AddOptions(CLI::App& app) override
    {
        app.add_option("--dump-arrays", m_logPath, "Write what each draw reads from memory to this file");
    }

    void Setup(int width, int height) override
    {
        if (!m_logPath.empty() && !m_log.Open(m_logPath))
            throw std::runtime_error("cannot write " + m_logPath);
        glGenBuffers(1, &m_leafIndices);
        GLuint const program = examples::BuildProgram(kVertexShader, kFragmentShader);
        glBindAttribLocation(program, kPosition, "position");
        glBindAttribLocation(program, kColor, "color");
        glLinkProgram(program);
        glUseProgram(program);
        auto const shorter = static_cast<float>(width < height ? width : height);
        glUniform2f(glGetUniformLocation(program, "u_scale"), shorter / static_cast<float>(width),
                    shorter / static_cast<float>(height));
        glViewport(0, 0, width, height);
        glClearColor(0.06F, 0.09F, 0.12F, 1.0F);
    }

    void DrawFrame(int frame) override
    {
        float const turn = static_cast<float>(frame) * 0.02F;
        glClear(GL_COLOR_BUFFER_BIT);
        DrawStem();
        DrawLeaves();
        DrawPetals(turn);
        DrawHeart(turn);
        DrawSeeds(-turn);
    }

private:
    // Tight positions, one colour for all of them, no indices.
    void DrawStem()
    {
        float const positions[] = {-0.035F, -1.0F, 0.035F, -1.0F, -0.02F, -0.1F, 0.02F, -0.1F};
        glVertexAttribPointer(kPosition, 2, GL_FLOAT, GL_FALSE, 0, positions);
        glEnableVertexAttribArray(kPosition);
        glDisableVertexAttribArray(kColor);
        glVertexAttrib4f(kColor, 0.27F, 0.55F, 0.24F, 1.0F);
        m_log.Draw("glDrawArrays");
        m_log.Array(kPosition, positions, 8, 8, 4);
        m_log.End();
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }

    // Strided vertices in memory, with indices in a buffer.
    void DrawLeaves()
    {
        std::vector<Vertex> vertices;
        for (float const side : {-1.0F, 1.0F})
        {
            vertices.push_back({0, -0.8F, {60, 130, 60, 255}});
            vertices.push_back({side * 0.16F, -0.74F, {80, 150, 70, 255}});
            vertices.push_back({side * 0.12F, -0.58F, {90, 160, 80, 255}});
            vertices.push_back({side * 0.3F, -0.55F, {140, 200, 110, 255}});
        }
        std::uint16_t const indices[] = {0, 1, 2, 2, 1, 3, 4, 5, 6, 6, 5, 7};
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_leafIndices);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof indices, indices, GL_STATIC_DRAW);
        UseStrided(vertices.data());
        LogStrided("glDrawElements", vertices);
        examples::DrawElements(GL_TRIANGLES, 12, GL_UNSIGNED_SHORT, nullptr);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    }

    // Strided vertices with short indices: each petal a kite of two triangles.
    void DrawPetals(float turn)
    {
        std::vector<Vertex> vertices;
        std::vector<std::uint16_t> indices;
        for (int petal = 0; petal < kPetals; ++petal)
        {
            float const angle = turn + 2 * kPi * static_cast<float>(petal) / kPetals;
            auto const first = static_cast<std::uint16_t>(vertices.size());
            vertices.push_back(At(angle, 0.12F, 150, 40, 70));
            vertices.push_back(At(angle - 0.27F, 0.55F, 240, 120, 120));
            vertices.push_back(At(angle + 0.27F, 0.55F, 250, 150, 110));
            vertices.push_back(At(angle, 0.86F, 255, 214, 190));
            for (int const corner : {0, 1, 2, 2, 1, 3})
                indices.push_back(static_cast<std::uint16_t>(first + corner));
        }
        UseStrided(vertices.data());
        LogStrided("glDrawElements", vertices, indices.data(), indices.size() * sizeof indices[0]);
        examples::DrawElements(GL_TRIANGLES, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_SHORT,
                               indices.data());
    }

    // Two tight arrays, with byte indices that do not begin at 0.
    void DrawHeart(float turn)
    {
        constexpr int kCorners = 16;
        float positions[2 * (kCorners + 2)] = {};
        std::uint8_t colors[4 * (kCorners + 2)] = {};
        std::uint8_t indices[kCorners + 2] = {1};
        for (std::size_t i = 1; i < kCorners + 2; ++i)
        {
            bool const middle = i == 1;
            float const angle = turn + 2 * kPi * static_cast<float>(i) / kCorners;
            positions[2 * i] = middle ? 0 : 0.24F * std::cos(angle);
            positions[2 * i + 1] = middle ? 0 : 0.24F * std::sin(angle);
            colors[4 * i] = middle ? 255 : 190;
            colors[4 * i + 1] = middle ? 220 : 120;
            colors[4 * i + 2] = middle ? 90 : 20;
            colors[4 * i + 3] = 255;
            indices[i - 1] = static_cast<std::uint8_t>(i);
        }
        indices[kCorners + 1] = 2;
        glVertexAttribPointer(kPosition, 2, GL_FLOAT, GL_FALSE, 0, positions);
        glVertexAttribPointer(kColor, 4, GL_UNSIGNED_BYTE, GL_TRUE, 0, colors);
        glEnableVertexAttribArray(kColor);
        m_log.Draw("glDrawElements", indices, sizeof indices);
        m_log.Array(kPosition, positions, 8, 8, kCorners + 2);
        m_log.Array(kColor, colors, 4, 4, kCorners + 2);
        m_log.End();
        examples::DrawElements(GL_TRIANGLE_FAN, kCorners + 2, GL_UNSIGNED_BYTE, indices);
    }

    // Strided vertices without indices.
    void DrawSeeds(float turn)
    {
        std::vector<Vertex> vertices;
        for (int seed = 0; seed < kSeeds; ++seed)
        {
            // The golden angle spreads the seeds evenly.
            float const angle = turn + 2.39996F * static_cast<float>(seed);
            float const radius = 0.19F * std::sqrt(static_cast<float>(seed) / kSeeds);
            float const x = radius * std::cos(angle);
            float const y = radius * std::sin(angle);
            for (int corner = 0; corner < 3; ++corner)
            {
                Vertex vertex = At(angle + 2 * kPi * static_cast<float>(corner) / 3, 0.018F, 90, 50, 20);
                vertex.x += x;
                vertex.y += y;
                vertices.push_back(vertex);
            }
        }
        UseStrided(vertices.data());
        LogStrided("glDrawArrays", vertices);
        examples::DrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices.size()));
    }

    static void UseStrided(Vertex const* vertices)
    {
        glVertexAttribPointer(kPosition, 2, GL_FLOAT, GL_FALSE, sizeof(Vertex), &vertices->x);
        glVertexAttribPointer(kColor, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex), vertices->color);
        glEnableVertexAttribArray(kPosition);
        glEnableVertexAttribArray(kColor);
    }

    void LogStrided(char const* call, std::vector<Vertex> const& vertices, void const* indices = nullptr,
                    std::size_t size = 0)
    {
        m_log.Draw(call, indices, size);
        m_log.Array(kPosition, &vertices[0].x, 8, sizeof(Vertex), vertices.size());
        m_log.Array(kColor, vertices[0].color, 4, sizeof(Vertex), vertices.size());
        m_log.End();
    }

    examples::ArrayLog m_log;
    std::string m_logPath;
    GLuint m_leafIndices = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    Flower scene;
    return examples::Run(argc, argv, "A turning flower from client-side arrays", scene);
}
