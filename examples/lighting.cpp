// Three turning solids under two lights, of a material each, in fog, on a ground of two texture units: a
// pattern that wanders by a texture matrix, and a spot that is combined with it.
#include "matrix.h"
#include "support.h"
#include <GLES/gl.h>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

using examples::Multiply;

namespace
{
constexpr float kPi = 3.14159265F;
constexpr GLsizei kTextureSize = 32;

struct Vertex
{
    GLfloat position[3];
    GLfloat normal[3];
};

struct Material
{
    std::array<GLfloat, 4> ambient;
    std::array<GLfloat, 4> diffuse;
    std::array<GLfloat, 4> specular;
    std::array<GLfloat, 4> emission;
    GLfloat shininess;
};

constexpr Material kMaterials[] = {
    {{0.25F, 0.10F, 0.08F, 1}, {0.85F, 0.30F, 0.22F, 1}, {0.9F, 0.8F, 0.7F, 1}, {0, 0, 0, 1}, 48},
    {{0.08F, 0.16F, 0.10F, 1}, {0.25F, 0.70F, 0.38F, 1}, {0.2F, 0.3F, 0.2F, 1}, {0, 0.05F, 0, 1}, 8},
    {{0.10F, 0.10F, 0.25F, 1}, {0.30F, 0.38F, 0.90F, 1}, {1, 1, 1, 1}, {0.04F, 0, 0.08F, 1}, 96},
};

constexpr int kRings = 16;
constexpr int kSides = 24;

// A torus around the z axis.
std::vector<Vertex> TorusVertices()
{
    constexpr float kRadius = 0.62F;
    constexpr float kThickness = 0.3F;
    std::vector<Vertex> vertices;
    for (int side = 0; side <= kSides; ++side)
        for (int ring = 0; ring <= kRings; ++ring)
        {
            float const around = 2 * kPi * static_cast<float>(side) / kSides;
            float const across = 2 * kPi * static_cast<float>(ring) / kRings;
            float const reach = kRadius + kThickness * std::cos(across);
            vertices.push_back(
                {{reach * std::cos(around), reach * std::sin(around), kThickness * std::sin(across)},
                 {std::cos(across) * std::cos(around), std::cos(across) * std::sin(around),
                  std::sin(across)}});
        }
    return vertices;
}

std::vector<std::uint16_t> TorusIndices()
{
    std::vector<std::uint16_t> indices;
    for (int side = 0; side < kSides; ++side)
        for (int ring = 0; ring < kRings; ++ring)
        {
            auto const near = static_cast<std::uint16_t>(side * (kRings + 1) + ring);
            auto const far = static_cast<std::uint16_t>(near + kRings + 1);
            for (int const index : {near + 0, far + 0, near + 1, near + 1, far + 0, far + 1})
                indices.push_back(static_cast<std::uint16_t>(index));
        }
    return indices;
}

// The ground: position, normal, and a texture coordinate for each unit.
struct GroundVertex
{
    GLfloat position[3];
    GLfloat normal[3];
    GLfloat pattern[2];
    GLfloat spot[2];
};

constexpr GroundVertex kGround[] = {
    {{-4, -1.1F, -6}, {0, 1, 0}, {0, 0}, {0, 0}},
    {{4, -1.1F, -6}, {0, 1, 0}, {4, 0}, {1, 0}},
    {{-4, -1.1F, 2}, {0, 1, 0}, {0, 4}, {0, 1}},
    {{4, -1.1F, 2}, {0, 1, 0}, {4, 4}, {1, 1}},
};

GLuint MakeTexture(GLenum format, std::vector<std::uint8_t> const& pixels, GLint wrap)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), kTextureSize, kTextureSize, 0, format,
                 GL_UNSIGNED_BYTE, pixels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
    return texture;
}

GLuint MakePattern()
{
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kTextureSize; ++y)
        for (int x = 0; x < kTextureSize; ++x)
        {
            bool const dark = ((x / 8) + (y / 8)) % 2 != 0;
            pixels.push_back(dark ? 96 : 224);
            pixels.push_back(dark ? 104 : 214);
            pixels.push_back(dark ? 128 : 190);
        }
    return MakeTexture(GL_RGB, pixels, GL_REPEAT);
}

GLuint MakeSpot()
{
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kTextureSize; ++y)
        for (int x = 0; x < kTextureSize; ++x)
        {
            float const dx = (static_cast<float>(x) - 15.5F) / 16;
            float const dy = (static_cast<float>(y) - 15.5F) / 16;
            float const light = 1 - std::sqrt(dx * dx + dy * dy);
            pixels.push_back(static_cast<std::uint8_t>(light > 0 ? 60 + 195 * light : 60));
        }
    return MakeTexture(GL_LUMINANCE, pixels, GL_CLAMP_TO_EDGE);
}

template <typename Element>
GLuint MakeBuffer(GLenum target, std::vector<Element> const& elements)
{
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(elements.size() * sizeof(Element)), elements.data(),
                 GL_STATIC_DRAW);
    return buffer;
}

void const* Offset(std::size_t bytes) { return reinterpret_cast<void const*>(bytes); }

class Lighting : public examples::Scene
{
public:
    int ApiVersion() const override { return 1; }

    void Setup(int width, int height) override
    {
        glViewport(0, 0, width, height);
        glMatrixMode(GL_PROJECTION);
        float const aspect = static_cast<float>(width) / static_cast<float>(height);
        glFrustumf(-0.5F * aspect, 0.5F * aspect, -0.5F, 0.5F, 1, 20);
        LookAtScene();
        glClearColor(0.45F, 0.52F, 0.60F, 1);
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
        glEnable(GL_CULL_FACE);
        glShadeModel(GL_SMOOTH);
        SetLights();
        SetFog();
        MakeObjects();
        m_pattern = MakePattern();
        m_spot = MakeSpot();
    }

    void DrawFrame(int frame) override
    {
        float const turn = static_cast<float>(frame) * 4;
        BeginFrame();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        DrawGround(turn);
        for (int i = 0; i < 3; ++i)
            DrawSolid(kMaterials[i], static_cast<float>(i - 1) * 1.9F, turn * static_cast<float>(i + 1));
    }

private:
    // Loaded whole: drivers round by how a matrix came to be, and a recording that begins in mid-run loads it
    // so.
    static void LookAtScene()
    {
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(Multiply(examples::Translation(0, 0, -4), examples::RotationX(14 * kPi / 180)).data());
    }

    // All that a frame changes on its way: a recording can begin anywhere in one, and the next frame must not
    // depend on where.
    static void BeginFrame()
    {
        LookAtScene();
        glFrontFace(GL_CCW);
        EnableArrays(false);
        LeaveTextures();
    }

    // The first light far away and white, the second near, coloured, and narrow.
    static void SetLights()
    {
        GLfloat const ambient[] = {0.25F, 0.25F, 0.3F, 1};
        GLfloat const far[] = {0.4F, 1, 0.8F, 0};
        GLfloat const near[] = {-1.5F, 2, 1.5F, 1};
        GLfloat const down[] = {0.5F, -0.8F, -0.6F};
        GLfloat const orange[] = {0.9F, 0.6F, 0.2F, 1};
        glEnable(GL_LIGHTING);
        glEnable(GL_NORMALIZE);
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
        glEnable(GL_LIGHT0);
        glLightfv(GL_LIGHT0, GL_POSITION, far);
        glEnable(GL_LIGHT1);
        glLightfv(GL_LIGHT1, GL_POSITION, near);
        glLightfv(GL_LIGHT1, GL_SPOT_DIRECTION, down);
        glLightfv(GL_LIGHT1, GL_DIFFUSE, orange);
        glLightfv(GL_LIGHT1, GL_SPECULAR, orange);
        glLightf(GL_LIGHT1, GL_SPOT_CUTOFF, 40);
        glLightf(GL_LIGHT1, GL_SPOT_EXPONENT, 6);
        glLightf(GL_LIGHT1, GL_LINEAR_ATTENUATION, 0.15F);
    }

    static void SetFog()
    {
        GLfloat const color[] = {0.45F, 0.52F, 0.60F, 1};
        glEnable(GL_FOG);
        glFogx(GL_FOG_MODE, GL_LINEAR);
        glFogf(GL_FOG_START, 4);
        glFogf(GL_FOG_END, 10);
        glFogfv(GL_FOG_COLOR, color);
    }

    void MakeObjects()
    {
        std::vector<std::uint16_t> const indices = TorusIndices();
        m_indexCount = static_cast<GLsizei>(indices.size());
        m_torus = MakeBuffer(GL_ARRAY_BUFFER, TorusVertices());
        m_ground =
            MakeBuffer(GL_ARRAY_BUFFER, std::vector<GroundVertex>(std::begin(kGround), std::end(kGround)));
        m_indices = MakeBuffer(GL_ELEMENT_ARRAY_BUFFER, indices);
    }

    // The pattern is lit; the spot is added to twice what comes of that, less a half.
    void UseTextures() const
    {
        glActiveTexture(GL_TEXTURE0);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, m_pattern);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glActiveTexture(GL_TEXTURE1);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, m_spot);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
        glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_ADD_SIGNED);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_RGB, GL_PREVIOUS);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC1_RGB, GL_TEXTURE);
        glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, GL_REPLACE);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_ALPHA, GL_PREVIOUS);
        glActiveTexture(GL_TEXTURE0);
    }

    static void UseMaterial(Material const& material)
    {
        glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, material.ambient.data());
        glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, material.diffuse.data());
        glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, material.specular.data());
        glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, material.emission.data());
        glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, material.shininess);
    }

    void DrawGround(float turn) const
    {
        constexpr Material kStone = {
            {0.5F, 0.5F, 0.5F, 1}, {0.8F, 0.8F, 0.8F, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}, 0};
        UseMaterial(kStone);
        UseTextures();
        glMatrixMode(GL_TEXTURE);
        glLoadIdentity();
        glTranslatef(turn * 0.01F, 0, 0);
        glRotatef(turn, 0, 0, 1);
        glMatrixMode(GL_MODELVIEW);
        glBindBuffer(GL_ARRAY_BUFFER, m_ground);
        glVertexPointer(3, GL_FLOAT, sizeof(GroundVertex), Offset(0));
        glNormalPointer(GL_FLOAT, sizeof(GroundVertex), Offset(offsetof(GroundVertex, normal)));
        glClientActiveTexture(GL_TEXTURE0);
        glTexCoordPointer(2, GL_FLOAT, sizeof(GroundVertex), Offset(offsetof(GroundVertex, pattern)));
        glClientActiveTexture(GL_TEXTURE1);
        glTexCoordPointer(2, GL_FLOAT, sizeof(GroundVertex), Offset(offsetof(GroundVertex, spot)));
        EnableArrays(true);
        glFrontFace(GL_CW);
        examples::DrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glFrontFace(GL_CCW);
        EnableArrays(false);
        LeaveTextures();
    }

    void DrawSolid(Material const& material, float x, float turn) const
    {
        UseMaterial(material);
        glBindBuffer(GL_ARRAY_BUFFER, m_torus);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
        glVertexPointer(3, GL_FLOAT, sizeof(Vertex), Offset(0));
        glNormalPointer(GL_FLOAT, sizeof(Vertex), Offset(offsetof(Vertex, normal)));
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_NORMAL_ARRAY);
        glPushMatrix();
        glTranslatef(x, 0, 0);
        glRotatef(turn, 0.5F, 1, 0.2F);
        glScalef(0.8F, 0.8F, 0.8F);
        examples::DrawElements(GL_TRIANGLES, m_indexCount, GL_UNSIGNED_SHORT, nullptr);
        glPopMatrix();
        glDisableClientState(GL_VERTEX_ARRAY);
        glDisableClientState(GL_NORMAL_ARRAY);
    }

    static void LeaveTextures()
    {
        for (GLenum const unit : {GLenum{GL_TEXTURE1}, GLenum{GL_TEXTURE0}})
        {
            glActiveTexture(unit);
            glDisable(GL_TEXTURE_2D);
        }
    }

    static void EnableArrays(bool enabled)
    {
        auto const change = enabled ? glEnableClientState : glDisableClientState;
        change(GL_VERTEX_ARRAY);
        change(GL_NORMAL_ARRAY);
        for (GLenum const unit : {GLenum{GL_TEXTURE0}, GLenum{GL_TEXTURE1}})
        {
            glClientActiveTexture(unit);
            change(GL_TEXTURE_COORD_ARRAY);
        }
    }

    GLuint m_pattern = 0;
    GLuint m_spot = 0;
    GLuint m_torus = 0;
    GLuint m_ground = 0;
    GLuint m_indices = 0;
    GLsizei m_indexCount = 0;
};
}  // namespace

int main(int argc, char** argv)
{
    Lighting scene;
    return examples::Run(argc, argv, "Lit solids in fog, with OpenGL ES 1", scene);
}
