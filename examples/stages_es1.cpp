// The stages of OpenGL ES 1: the common fields, and the alpha test.
#include "stage_fields.h"
#include <GLES/gl.h>

using examples::Colour;

namespace
{
class StagesEs1 : public examples::StageFields
{
public:
    int ApiVersion() const override { return 1; }

private:
    // All that the frame needs beyond its fields: a recording of the middle of a run need not hold what was
    // set ahead of it.
    void Prepare() override
    {
        glActiveTexture(GL_TEXTURE0);
        glClientActiveTexture(GL_TEXTURE0);
        glMatrixMode(GL_TEXTURE);
        // Positions serve as texture coordinates, too.
        glLoadIdentity();
        glTranslatef(0.5F, 0.5F, 0);
        glScalef(0.5F, 0.5F, 1);
        glMatrixMode(GL_MODELVIEW);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glPointSize(4);
        glAlphaFunc(GL_LESS, 0.6F);
    }

    void UseColour(Colour const& colour) override
    {
        glDisable(GL_TEXTURE_2D);
        glColor4f(colour.red, colour.green, colour.blue, colour.alpha);
    }

    void UseTexture() override
    {
        glEnable(GL_TEXTURE_2D);
        glColor4f(1, 1, 1, 1);
    }

    void Place(float scale, float x, float y, float depth) override
    {
        glLoadIdentity();
        // Depth grows away from the eye, as without any matrix.
        glTranslatef(x, y, depth);
        glScalef(scale, scale, 1);
    }

    void Vertices(GLfloat const* vertices) override
    {
        glVertexPointer(2, GL_FLOAT, 0, vertices);
        glTexCoordPointer(2, GL_FLOAT, 0, vertices);
    }

    // A square that the alpha test keeps away, over a veil that passes.
    void OwnFields() override
    {
        Field(1, 2);
        glEnable(GL_ALPHA_TEST);
        UseColour(examples::kVeil);
        Quad(0.8F);
        UseColour(examples::kOrange);
        Quad(0.4F);
        glDisable(GL_ALPHA_TEST);
    }
};
}  // namespace

int main(int argc, char** argv)
{
    StagesEs1 scene;
    return examples::Run(argc, argv, "Ten fields, each of which shows a stage of the fixed pipeline", scene);
}
