// GLES1 wrappers: matrices.
#include "wrappers/calls.h"

namespace Es1
{

void _glFrustumf(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    Trace(Calls::glFrustumf, l, r, b, t, n, f);
}

void _glFrustumx(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    Trace(Calls::glFrustumx, l, r, b, t, n, f);
}

void _glLoadIdentity() { Trace(Calls::glLoadIdentity); }

void _glLoadMatrixf(const GLfloat* m) { Trace(Calls::glLoadMatrixf, FixedArray(m, 16)); }

void _glLoadMatrixx(const GLfixed* m) { Trace(Calls::glLoadMatrixx, FixedArray(m, 16)); }

void _glMatrixMode(GLenum mode) { Trace(Calls::glMatrixMode, mode); }

void _glMultMatrixf(const GLfloat* m) { Trace(Calls::glMultMatrixf, FixedArray(m, 16)); }

void _glMultMatrixx(const GLfixed* m) { Trace(Calls::glMultMatrixx, FixedArray(m, 16)); }

void _glOrthof(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    Trace(Calls::glOrthof, l, r, b, t, n, f);
}

void _glOrthox(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    Trace(Calls::glOrthox, l, r, b, t, n, f);
}

void _glPopMatrix() { Trace(Calls::glPopMatrix); }

void _glPushMatrix() { Trace(Calls::glPushMatrix); }

void _glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) { Trace(Calls::glRotatef, angle, x, y, z); }

void _glRotatex(GLfixed angle, GLfixed x, GLfixed y, GLfixed z) { Trace(Calls::glRotatex, angle, x, y, z); }

void _glScalef(GLfloat x, GLfloat y, GLfloat z) { Trace(Calls::glScalef, x, y, z); }

void _glScalex(GLfixed x, GLfixed y, GLfixed z) { Trace(Calls::glScalex, x, y, z); }

void _glTranslatef(GLfloat x, GLfloat y, GLfloat z) { Trace(Calls::glTranslatef, x, y, z); }

void _glTranslatex(GLfixed x, GLfixed y, GLfixed z) { Trace(Calls::glTranslatex, x, y, z); }

void _glCurrentPaletteMatrixOES(GLuint matrixpaletteindex)
{
    Trace(Calls::glCurrentPaletteMatrixOES, matrixpaletteindex);
}

void _glLoadPaletteFromModelViewMatrixOES() { Trace(Calls::glLoadPaletteFromModelViewMatrixOES); }

void _glFrustumxOES(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    Trace(Calls::glFrustumxOES, l, r, b, t, n, f);
}

void _glLoadMatrixxOES(const GLfixed* m) { Trace(Calls::glLoadMatrixxOES, FixedArray(m, 16)); }

void _glMultMatrixxOES(const GLfixed* m) { Trace(Calls::glMultMatrixxOES, FixedArray(m, 16)); }

void _glOrthoxOES(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    Trace(Calls::glOrthoxOES, l, r, b, t, n, f);
}

void _glRotatexOES(GLfixed angle, GLfixed x, GLfixed y, GLfixed z)
{
    Trace(Calls::glRotatexOES, angle, x, y, z);
}

void _glScalexOES(GLfixed x, GLfixed y, GLfixed z) { Trace(Calls::glScalexOES, x, y, z); }

void _glTranslatexOES(GLfixed x, GLfixed y, GLfixed z) { Trace(Calls::glTranslatexOES, x, y, z); }

GLbitfield _glQueryMatrixxOES(GLfixed* mantissa, GLint* exponent)
{
    return Trace(Calls::glQueryMatrixxOES, NeverCounted(mantissa), NeverCounted(exponent));
}

void _glFrustumfOES(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    Trace(Calls::glFrustumfOES, l, r, b, t, n, f);
}

void _glOrthofOES(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    Trace(Calls::glOrthofOES, l, r, b, t, n, f);
}

}  // namespace Es1
