// The stages of OpenGL ES 2: the common fields, and cube maps, discarded fragments and a rendered texture.
#include "shaders.h"
#include "stage_fields.h"
#include <stdexcept>

using examples::Colour;

namespace
{
constexpr GLuint kPosition = 0;
constexpr GLsizei kTarget = 16;

char const* const kPlaceVertex = R"(
attribute vec2 position;
uniform vec4 u_place;
uniform float u_depth;
varying vec2 v_texCoord;
void main() {
    v_texCoord = position * 0.5 + 0.5;
    gl_PointSize = 4.0;
    gl_Position = vec4(position * u_place.xy + u_place.zw, u_depth, 1.0);
})";

char const* const kColourFragment = R"(
precision mediump float;
uniform vec4 u_colour;
void main() { gl_FragColor = u_colour; })";

char const* const kTextureFragment = R"(
precision mediump float;
uniform sampler2D u_picture;
varying vec2 v_texCoord;
void main() { gl_FragColor = texture2D(u_picture, v_texCoord); })";

char const* const kCubeFragment = R"(
precision mediump float;
uniform samplerCube u_sky;
varying vec2 v_texCoord;
void main() { gl_FragColor = textureCube(u_sky, vec3(v_texCoord * 1.8 - 0.9, 1.0)); })";

char const* const kHolesFragment = R"(
precision mediump float;
uniform vec4 u_colour;
varying vec2 v_texCoord;
void main() {
    vec2 field = floor(v_texCoord * 4.0);
    if (mod(field.x + field.y, 2.0) > 0.5) { discard; }
    gl_FragColor = u_colour;
})";

struct Program
{
    GLuint name = 0;
    GLint place = -1;
    GLint depth = -1;
    GLint colour = -1;
};

class Stages : public examples::StageFields
{
public:
    void Setup(int width, int height) override
    {
        StageFields::Setup(width, height);
        m_colours = MakeProgram(kColourFragment);
        m_textures = MakeProgram(kTextureFragment);
        m_cubes = MakeProgram(kCubeFragment);
        m_holes = MakeProgram(kHolesFragment);
        m_sky = MakeTexture(GL_TEXTURE_CUBE_MAP, GL_LINEAR);
        for (GLenum face = 0; face < 6; ++face)
            UploadChecks(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face);
        m_picture = MakeTexture(GL_TEXTURE_2D, GL_LINEAR);
        Upload(GL_TEXTURE_2D, kTarget, nullptr);
        glGenFramebuffers(1, &m_framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        AttachPicture();
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
            throw std::runtime_error("the driver draws into no RGBA texture");
        glEnableVertexAttribArray(kPosition);
    }

private:
    static Program MakeProgram(char const* fragment)
    {
        Program program;
        program.name = examples::BuildProgram(kPlaceVertex, fragment);
        glBindAttribLocation(program.name, kPosition, "position");
        glLinkProgram(program.name);
        program.place = glGetUniformLocation(program.name, "u_place");
        program.depth = glGetUniformLocation(program.name, "u_depth");
        program.colour = glGetUniformLocation(program.name, "u_colour");
        return program;
    }

    void UseColour(Colour const& colour) override { Use(m_colours, colour); }
    void UseTexture() override { Use(m_textures); }

    void Use(Program const& program, Colour const& colour = examples::kGreen)
    {
        m_program = &program;
        glUseProgram(program.name);
        if (program.colour < 0)
            return;
        glUniform4f(program.colour, colour.red, colour.green, colour.blue, colour.alpha);
        m_tally.Add("Uniform uploads", 1);
    }

    void Place(float scale, float x, float y, float depth) override
    {
        glUniform4f(m_program->place, scale, scale, x, y);
        glUniform1f(m_program->depth, depth);
        m_tally.Add("Uniform uploads", 2);
    }

    void Vertices(GLfloat const* vertices) override
    {
        glVertexAttribPointer(kPosition, 2, GL_FLOAT, GL_FALSE, 0, vertices);
    }

    // In each frame anew: a recording of the middle of a run need not hold what an earlier frame attached.
    void AttachPicture() const
    {
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_picture, 0);
    }

    // What the rendered texture shows: a green square on violet.
    void Prepare() override
    {
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        AttachPicture();
        View(0, 0, kTarget, kTarget);
        ClearTo(examples::kPlum, GL_COLOR_BUFFER_BIT);
        Use(m_colours, examples::kGreen);
        Quad(0.5F);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }

    void OwnFields() override
    {
        CubeMap();
        Discard();
        RenderedTexture();
    }

    void CubeMap()
    {
        Field(3, 1);
        Use(m_cubes);
        Quad(0.8F);
    }

    // Checks that are discarded.
    void Discard()
    {
        Field(1, 2);
        Use(m_holes, examples::kOrange);
        Quad(0.8F);
    }

    void RenderedTexture()
    {
        Field(2, 2);
        glBindTexture(GL_TEXTURE_2D, m_picture);
        Use(m_textures);
        Quad(0.8F);
        glBindTexture(GL_TEXTURE_2D, ChecksTexture());
    }

    Program m_colours;
    Program m_textures;
    Program m_cubes;
    Program m_holes;
    Program const* m_program = nullptr;
    GLuint m_sky = 0;
    GLuint m_picture = 0;
    GLuint m_framebuffer = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    Stages scene;
    return examples::Run(argc, argv, "Twelve fields, each of which shows a stage of the pipeline", scene);
}
