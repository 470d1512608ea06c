// How much lies behind a pointer, told by the enumerants of its call. Unknown enumerants never fail: they
// give the default of their table, 1 or 0.
#pragma once
#include "support/export.h"

// Elements that a call reads or writes for a pname.
NEBTRACE_API unsigned int GlFogParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlLightModelParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlLightParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlMaterialParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlTexEnvParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlTexParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlClearBufferSize(unsigned int buffer);
NEBTRACE_API unsigned int GlTexGenParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlPointParamSize(unsigned int pname);
NEBTRACE_API unsigned int GlVertexAttribSize(unsigned int pname);
NEBTRACE_API unsigned int GlStateSize(unsigned int pname);

// Components of a uniform's or attribute's type; 0 for an unknown one.
NEBTRACE_API unsigned int GlShaderTypeSize(unsigned int type);
// Bytes of a component; 0 for an unknown type, so that its payload is empty.
NEBTRACE_API unsigned int GlTypeSize(unsigned int type);

// Bytes of a pixel.
NEBTRACE_API unsigned int GetPixelSizeImage2D(unsigned int format, unsigned int type);
NEBTRACE_API bool GlTexTypeFormatValid(unsigned int type, unsigned int format);
// Bytes of one row, rounded up to the alignment; 0 means no rounding.
NEBTRACE_API unsigned int GetAligmentWidthImage2D(int width, unsigned int pixelSize, int alignment,
                                                  int border);
// Bytes of an image. Dimensions that no host takes, negative ones or ones whose image is 4 GiB or more, give
// 0: nothing of that size can lie behind the application's pointer.
NEBTRACE_API unsigned int GlImage2DSize(unsigned int format, unsigned int type, int width, int height,
                                        int alignment, int border);
NEBTRACE_API unsigned int GlImage3DSize(unsigned int format, unsigned int type, int width, int height,
                                        int depth, int alignment, int border);
