// A still picture of fields, each of which shows one stage of the graphics pipeline at work: what happens
// when a profiler switches a stage off can be seen field by field. The fields that OpenGL ES 1 and 2 have in
// common.
#pragma once
#include "support.h"
#include "tally.h"
#include <GLES2/gl2.h>
#include <cstdint>
#include <vector>

namespace examples
{
struct Colour
{
    float red, green, blue, alpha;
};
// Of bytes, so that every driver stores the same ones.
constexpr Colour Bytes(int red, int green, int blue, int alpha = 255)
{
    return {static_cast<float>(red) / 255, static_cast<float>(green) / 255, static_cast<float>(blue) / 255,
            static_cast<float>(alpha) / 255};
}
constexpr Colour kNight = Bytes(26, 31, 41);
constexpr Colour kPlum = Bytes(102, 26, 128);
constexpr Colour kOrange = Bytes(230, 128, 26);
constexpr Colour kGreen = Bytes(51, 179, 77);
constexpr Colour kViolet = Bytes(153, 77, 204);
constexpr Colour kVeil = Bytes(51, 102, 255, 128);

class StageFields : public Scene
{
public:
    int Samples() const override { return 0; }
    int StencilBits() const override { return 8; }
    void AddOptions(CLI::App& app) override;
    void Setup(int width, int height) override;
    void DrawFrame(int frame) override;

protected:
    // What the API has a way of its own for. Colours and textures fill the shapes drawn from there on,
    // `place` scales and moves them, and `vertices` are pairs of numbers, in the program or at the start of
    // the buffer.
    virtual void UseColour(Colour const& colour) = 0;
    virtual void UseTexture() = 0;
    virtual void Place(float scale, float x, float y, float depth) = 0;
    virtual void Vertices(GLfloat const* vertices) = 0;
    // Ahead of the fields, and behind the common ones: those that the API has beyond them.
    virtual void Prepare() {}
    virtual void OwnFields() {}

    static GLuint MakeTexture(GLenum target, GLint filter);
    static void Upload(GLenum target, GLsizei size, void const* pixels);
    static void UploadChecks(GLenum target);
    GLuint ChecksTexture() const { return m_checks; }

    static void ClearTo(Colour const& colour, GLbitfield buffers);
    void View(GLint x, GLint y, GLsizei width, GLsizei height);
    // Fields are counted from the top left one.
    void Field(int column, int row);
    // From the buffer, and of vertices that lie in the program's memory.
    void Quad(float scale, float x = 0, float y = 0, float depth = 0);
    void Shape(GLfloat const* vertices, GLenum mode, GLsizei count, float scale = 1, float x = 0,
               float y = 0);

    Tally m_tally;

private:
    void UploadQuad();
    void Draw(GLenum mode, GLsizei count);
    void Blending();
    void DepthTest();
    void StencilTest();
    void ScissorTest();
    void Culling(int column, bool culls);
    void Textures();
    void ChangedTexture();
    void Primitives();

    int m_width = 0;
    int m_height = 0;
    GLuint m_quad = 0;
    GLuint m_checks = 0;
    GLuint m_changing = 0;
};
}  // namespace examples
