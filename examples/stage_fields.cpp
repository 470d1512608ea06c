// What both scenes of stages are made of. Only functions that OpenGL ES 1 and 2 have alike are called here.
#include "stage_fields.h"
#include <CLI/CLI.hpp>
#include <array>

namespace examples
{
namespace
{
constexpr int kColumns = 4;
constexpr int kRows = 3;
constexpr GLsizei kPattern = 8;

constexpr GLfloat kQuad[] = {-1, -1, 1, -1, -1, 1, 1, 1};
// One triangle wound against the clock, and one with it.
constexpr GLfloat kLeftFront[] = {-0.9F, -0.8F, -0.1F, -0.8F, -0.5F, 0.8F};
constexpr GLfloat kRightBack[] = {0.9F, -0.8F, 0.1F, -0.8F, 0.5F, 0.8F};
constexpr GLfloat kCorners[] = {-0.8F, -0.8F, 0.8F, -0.8F, 0.8F, 0.8F, -0.8F, 0.8F, 0, 0};

// Dark and light squares; as RGBA pixels.
std::vector<std::uint8_t> Checks(GLsizei size)
{
    std::vector<std::uint8_t> pixels;
    for (GLsizei y = 0; y < size; ++y)
        for (GLsizei x = 0; x < size; ++x)
        {
            bool const light = (x / 2 + y / 2) % 2 != 0;
            for (int const value : {light ? 250 : 20, light ? 240 : 60, light ? 120 : 110, 255})
                pixels.push_back(static_cast<std::uint8_t>(value));
        }
    return pixels;
}

}  // namespace

void StageFields::AddOptions(CLI::App& app)
{
    app.add_flag("--tally", m_tally.print, "Print what each frame adds to a profiler's counters");
}

void StageFields::Setup(int width, int height)
{
    m_width = width;
    m_height = height;
    glGenBuffers(1, &m_quad);
    m_checks = MakeTexture(GL_TEXTURE_2D, GL_LINEAR);
    UploadChecks(GL_TEXTURE_2D);
    m_changing = MakeTexture(GL_TEXTURE_2D, GL_NEAREST);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void StageFields::DrawFrame(int /*frame*/)
{
    m_tally.Begin();
    UploadQuad();
    Prepare();
    ClearTo(kNight, GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    Blending();
    DepthTest();
    StencilTest();
    ScissorTest();
    Culling(0, true);
    Culling(1, false);
    Textures();
    ChangedTexture();
    Primitives();
    OwnFields();
    glFlush();
    glFinish();
    m_tally.End();
}

void StageFields::UploadChecks(GLenum target) { Upload(target, kPattern, Checks(kPattern).data()); }

GLuint StageFields::MakeTexture(GLenum target, GLint filter)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(target, texture);
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, filter);
    glTexParameteri(target, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return texture;
}

void StageFields::Upload(GLenum target, GLsizei size, void const* pixels)
{
    glTexImage2D(target, 0, GL_RGBA, size, size, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

void StageFields::UploadQuad()
{
    glBindBuffer(GL_ARRAY_BUFFER, m_quad);
    glBufferData(GL_ARRAY_BUFFER, sizeof kQuad, kQuad, GL_DYNAMIC_DRAW);
    m_tally.Add("Buffer object uploads (bytes)", sizeof kQuad);
    glBufferSubData(GL_ARRAY_BUFFER, 0, 2 * sizeof(GLfloat), kQuad);
    m_tally.Add("Buffer object modifications (bytes)", 2 * sizeof(GLfloat));
}

void StageFields::ClearTo(Colour const& colour, GLbitfield buffers)
{
    glClearColor(colour.red, colour.green, colour.blue, colour.alpha);
    glClear(buffers);
}

void StageFields::View(GLint x, GLint y, GLsizei width, GLsizei height)
{
    glViewport(x, y, width, height);
    m_tally.Add("Viewport calls", 1);
}

// Fields are counted from the top left one.
void StageFields::Field(int column, int row)
{
    int const width = m_width / kColumns;
    int const height = m_height / kRows;
    View(column * width, (kRows - 1 - row) * height, width, height);
}

void StageFields::Draw(GLenum mode, GLsizei count)
{
    glDrawArrays(mode, 0, count);
    m_tally.Draw(mode, count);
}

void StageFields::Quad(float scale, float x, float y, float depth)
{
    glBindBuffer(GL_ARRAY_BUFFER, m_quad);
    Vertices(nullptr);
    Place(scale, x, y, depth);
    Draw(GL_TRIANGLE_STRIP, 4);
}

// Of vertices that lie in the program's memory.
void StageFields::Shape(GLfloat const* vertices, GLenum mode, GLsizei count, float scale, float x, float y)
{
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    Vertices(vertices);
    Place(scale, x, y, 0);
    Draw(mode, count);
}

// A veil over an opaque square.
void StageFields::Blending()
{
    Field(0, 0);
    UseColour(kOrange);
    Quad(0.5F, -0.3F, -0.3F);
    glEnable(GL_BLEND);
    UseColour(kVeil);
    Quad(0.5F, 0.3F, 0.3F);
    glDisable(GL_BLEND);
}

// The larger square comes second, and lies behind.
void StageFields::DepthTest()
{
    Field(1, 0);
    glEnable(GL_DEPTH_TEST);
    UseColour(kOrange);
    Quad(0.4F, 0, 0, -0.5F);
    UseColour(kViolet);
    Quad(0.8F, 0, 0, 0.5F);
    glDisable(GL_DEPTH_TEST);
}

// A square that is kept to the triangle which was marked before.
void StageFields::StencilTest()
{
    Field(2, 0);
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_ALWAYS, 1, 0xFF);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    UseColour(kGreen);
    Shape(kLeftFront, GL_TRIANGLES, 3, 1, 0.5F, 0);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glStencilFunc(GL_EQUAL, 1, 0xFF);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    Quad(0.8F);
    glDisable(GL_STENCIL_TEST);
}

// A square that is cut to the middle half of its field.
void StageFields::ScissorTest()
{
    Field(3, 0);
    int const width = m_width / kColumns;
    int const height = m_height / kRows;
    glEnable(GL_SCISSOR_TEST);
    glScissor(3 * width + width / 4, 2 * height + height / 4, width / 2, height / 2);
    m_tally.Add("Scissor calls", 1);
    UseColour(kViolet);
    Quad(0.8F);
    glDisable(GL_SCISSOR_TEST);
}

// A triangle of each winding; back faces culled, or not.
void StageFields::Culling(int column, bool culls)
{
    Field(column, 1);
    if (culls)
        glEnable(GL_CULL_FACE);
    UseColour(kGreen);
    Shape(kLeftFront, GL_TRIANGLES, 3);
    UseColour(kOrange);
    Shape(kRightBack, GL_TRIANGLES, 3);
    if (culls)
        glDisable(GL_CULL_FACE);
}

// Few texels, enlarged: their borders are smooth by linear filtering.
void StageFields::Textures()
{
    Field(2, 1);
    glBindTexture(GL_TEXTURE_2D, m_checks);
    UseTexture();
    Quad(0.8F);
}

// A grey texture whose upper half is made green by a sub-image.
void StageFields::ChangedTexture()
{
    Field(0, 2);
    glBindTexture(GL_TEXTURE_2D, m_changing);
    std::vector<std::uint8_t> grey;
    for (int i = 0; i < 4 * 4; ++i)
        grey.insert(grey.end(), {0x80, 0x80, 0x80, 0xFF});
    Upload(GL_TEXTURE_2D, 4, grey.data());
    m_tally.Add("Texture uploads", 1);
    m_tally.Add("Texture uploads (bytes)", 4 * 4 * 4);
    std::vector<std::uint8_t> green;
    for (int i = 0; i < 4 * 2; ++i)
        green.insert(green.end(), {0x30, 0xC0, 0x40, 0xFF});
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 2, 4, 2, GL_RGBA, GL_UNSIGNED_BYTE, green.data());
    m_tally.Add("Texture modifications", 1);
    // Bytes of sub-images are counted as those of uploads.
    m_tally.Add("Texture uploads (bytes)", 4 * 2 * 4);
    UseTexture();
    Quad(0.8F);
}

// One of each other kind of primitive.
void StageFields::Primitives()
{
    Field(3, 2);
    UseColour(kGreen);
    Shape(kCorners, GL_POINTS, 5, 0.4F, -0.5F, 0.5F);
    Shape(kCorners, GL_LINES, 4, 0.4F, 0.5F, 0.5F);
    Shape(kCorners, GL_LINE_LOOP, 4, 0.4F, -0.5F, -0.5F);
    Shape(kCorners, GL_LINE_STRIP, 3, 0.4F, 0.5F, -0.5F);
    Shape(kCorners, GL_TRIANGLE_FAN, 4, 0.15F, 0.5F, 0);
    constexpr std::array<GLubyte, 6> kIndices = {0, 1, 2, 2, 3, 0};
    Place(0.15F, -0.5F, 0, 0);
    glDrawElements(GL_TRIANGLES, GLsizei{kIndices.size()}, GL_UNSIGNED_BYTE, kIndices.data());
    m_tally.DrawIndexed(GL_TRIANGLES, GLsizei{kIndices.size()});
}
}  // namespace examples
