// Pixel conversion for sub-images whose type differs from their texture's.
#pragma once
#include "support/export.h"

// Converts one pixel. False when the types are equal (the caller must have excluded that) or a pair of type
// and format is not valid.
NEBTRACE_API bool GlPixelConversion(unsigned int srcType, unsigned int srcFormat, unsigned char const* src,
                                    unsigned int dstType, unsigned int dstFormat, unsigned char* dst);
// Converts an image pixel by pixel and stops at the first that fails. Borders are skipped, not converted.
NEBTRACE_API bool GlTextureConversion(int width, int height, int border, unsigned int srcType,
                                      unsigned int srcFormat, int srcAlignment, unsigned char* src,
                                      unsigned int dstType, unsigned int dstFormat, int dstAlignment,
                                      unsigned char* dst);
