// The matrix stacks of a GLES1 context, in the order of the shadow's.
#pragma once
#include "state/es1_names.h"

namespace Es1Matrices
{

// The calls that select a stack: the host's, or the wrappers'.
struct SSelector
{
    void (*matrixMode)(GLenum mode);
    void (*currentPaletteMatrix)(GLuint index);
    void (*activeTexture)(GLenum texture);
};

// Selects a stack. Returns the name that its top matrix is asked by.
inline GLenum Select(CEs1ContextState const& state, SSelector const& select, int stack)
{
    if (stack < 2)
    {
        select.matrixMode(stack == 0 ? Es1Enum::kModelview : Es1Enum::kProjection);
        return stack == 0 ? Es1Enum::kModelviewMatrix : Es1Enum::kProjectionMatrix;
    }
    int const palette = stack - 2;
    if (palette < state.PaletteMatrices())
    {
        select.matrixMode(Es1Enum::kMatrixPalette);
        select.currentPaletteMatrix(static_cast<GLuint>(palette));
        return Es1Enum::kMatrixPalette;
    }
    select.matrixMode(GL_TEXTURE);
    select.activeTexture(Es1Names::Unit(palette - state.PaletteMatrices()));
    return Es1Enum::kTextureMatrix;
}

}  // namespace Es1Matrices
