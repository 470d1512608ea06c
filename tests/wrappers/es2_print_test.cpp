// The GLES2 shadow as text, for debugging: every field under its name.
#include "tests/wrappers/es2_snapshot.h"
#include "tests/wrappers/scratch_folder.h"
#include <fstream>
#include <sstream>

class Es2Print : public Es2Snapshot
{
protected:
    // What is printed of a state, as the lines whose text begins so.
    Lines PrintedOf(std::string const& start, bool writeBuffers = false)
    {
        std::istringstream log(Printed([&] { m_state.PrintRenderState(writeBuffers); }));
        std::string const prefix = "NEBTRACE(M) ";
        Lines lines;
        for (std::string line; std::getline(log, line);)
        {
            EXPECT_EQ(0u, line.find(prefix)) << line;
            if (line.compare(prefix.size(), start.size(), start) == 0)
                lines.push_back(line.substr(prefix.size()));
        }
        return lines;
    }

    CEs2ContextState m_state;
};

// The plain state, array by array and value by value.
TEST_F(Es2Print, PlainState)
{
    m_state.m_fClearDepth = 0.5f;
    m_state.m_iaViewport[2] = 640;
    EXPECT_EQ(Lines{"m_usClientVersion:2"}, PrintedOf("m_usClientVersion"));
    EXPECT_EQ(Lines{"m_fClearDepth:0.500000"}, PrintedOf("m_fClearDepth"));
    EXPECT_EQ((Lines{"m_iaViewport[0]:0", "m_iaViewport[1]:0", "m_iaViewport[2]:640", "m_iaViewport[3]:0"}),
              PrintedOf("m_iaViewport"));
    EXPECT_EQ(32u, PrintedOf("m_uBound3DTexturesOES").size());
    for (char const* field : {"m_iMaxTextureUnits",
                              "m_eActiveTexture",
                              "m_uBound2DTextures",
                              "m_uBoundCubeMapTextures",
                              "m_eBlendEquationAlpha",
                              "m_eBlendEquationRGB",
                              "m_faBlendColor",
                              "m_eBlendFuncRGBSourceDest",
                              "m_eBlendFuncAlphaSourceDest",
                              "m_fClearColor",
                              "m_iClearStencil",
                              "m_bColorMask",
                              "m_eCullFaceMode",
                              "m_eDepthFunc",
                              "m_bDepthMask",
                              "m_fDepthRangeNearFar",
                              "m_baServerState",
                              "m_iBoundFBO",
                              "m_eFrontFaceMode",
                              "m_eaHints",
                              "m_iPixelStorePackAlignment",
                              "m_iPixelStoreUnpackAlignment",
                              "m_fPolygonOffsetFactor",
                              "m_fPolygonOffsetUnits",
                              "m_bDeleteUsedProgram",
                              "m_bShaderCompilerReleased",
                              "m_iBoundRB",
                              "m_fSampleCoverageValue",
                              "m_bSampleCoverageInvert",
                              "m_iaScissorBox",
                              "m_eStencilFunc",
                              "m_iStencilFuncRef",
                              "m_uStencilFuncMask",
                              "m_uStencilMask",
                              "m_eStencilOpFail",
                              "m_eStencilOpZFail",
                              "m_eStencilOpZPass",
                              "mBoundVAO"})
        EXPECT_FALSE(PrintedOf(field).empty()) << field;
}

// Buffers, and the names of those that were used.
TEST_F(Es2Print, Buffers)
{
    BufferDefinition& buffer = m_state.m_sBufferDatas[11];
    buffer.bufferName = 11;
    buffer.bufferTarget = GL_ARRAY_BUFFER;
    buffer.Allocate(3);
    buffer.bufferDataSize = 3;
    buffer.bufferUsage = GL_STATIC_DRAW;
    buffer.deepCopy = true;
    m_state.m_sUsedBuffers[11] = 11;
    Lines lines = PrintedOf("m_sBufferDatas");
    ASSERT_EQ(8u, lines.size());
    EXPECT_EQ(0u, lines[2].find("m_sBufferDatas[0] st->bufferData:0x")) << lines[2];
    lines.erase(lines.begin() + 2);
    EXPECT_EQ((Lines{"m_sBufferDatas[0] st->bufferName:11", "m_sBufferDatas[0] st->bufferTarget:34962",
                     "m_sBufferDatas[0] st->bufferDataSize:3", "m_sBufferDatas[0] st->bufferUsage:35044",
                     "m_sBufferDatas[0] st->isMappedOES:0", "m_sBufferDatas[0] st->externalData:0",
                     "m_sBufferDatas[0] st->deepCopy:1"}),
              lines);
    EXPECT_EQ(Lines{"m_sUsedBuffers[0]:11"}, PrintedOf("m_sUsedBuffers"));
}

// Images, by name, face and level.
TEST_F(Es2Print, Textures)
{
    TextureDefinition& image = m_state.m_sTexImageTextures[9][5][1];
    image.textureName = 9;
    image.textureTarget = GL_TEXTURE_CUBE_MAP_NEGATIVE_Z;
    image.bindTarget = GL_TEXTURE_CUBE_MAP;
    image.textureLevel = 1;
    image.width = 4;
    image.iTextureCropRectangleOES[3] = 7;
    m_state.m_sUsedTextures[9] = 9;
    std::string const head = "m_sTexImageTextures[9][5][1] st->";
    Lines const expected = {head + "textureTarget:34074",
                            head + "bindTarget:34067",
                            head + "textureName:9",
                            head + "textureLevel:1",
                            head + "depth:0",
                            head + "pixels:0x0",
                            head + "format:0",
                            head + "internalformat:0",
                            head + "width:4",
                            head + "height:0",
                            head + "type:0",
                            head + "alignment:0",
                            head + "border:0",
                            head + "params[0]:9986",
                            head + "params[1]:9729",
                            head + "params[2]:10497",
                            head + "params[3]:10497",
                            head + "iTextureCropRectangleOES[0]:0",
                            head + "iTextureCropRectangleOES[1]:0",
                            head + "iTextureCropRectangleOES[2]:0",
                            head + "iTextureCropRectangleOES[3]:7",
                            head + "imageSize:0",
                            head + "externalData:0",
                            head + "deepCopy:0",
                            head + "mipsGenerated:0",
                            head + "isDirty:0",
                            head + "isCompressed:0"};
    EXPECT_EQ(expected, PrintedOf("m_sTexImageTextures"));
    EXPECT_EQ(Lines{"m_sUsedTextures[0]:9"}, PrintedOf("m_sUsedTextures"));
}

// Framebuffers with all of their attachments, and renderbuffers.
TEST_F(Es2Print, Framebuffers)
{
    FBODefinition& framebuffer = m_state.mFramebufferObjects[31];
    framebuffer.name = 31;
    framebuffer.ColorAttachment(0) = {21, 0, 0, GL_RENDERBUFFER};
    framebuffer.StencilAttachment = {9, 2, 0, GL_TEXTURE};
    framebuffer.NumDrawBuffers = 1;
    framebuffer.DrawBuffers = new unsigned int[1]{7};
    std::string const head = "mFramebufferObjects[0] st->";
    Lines const expected = {head + "name:31",
                            head + "firstBind:0",
                            head + "NumColorAttachments():1",
                            head + "ColorAttachments[0].name:21",
                            head + "ColorAttachments[0].lod:0",
                            head + "ColorAttachments[0].cubeface:0",
                            head + "ColorAttachments[0].type:36161",
                            head + "DepthAttachment.name:0",
                            head + "DepthAttachment.lod:0",
                            head + "DepthAttachment.cubeface:0",
                            head + "DepthAttachment.type:0",
                            head + "StencilAttachment.name:9",
                            head + "StencilAttachment.lod:2",
                            head + "StencilAttachment.cubeface:0",
                            head + "StencilAttachment.type:5890",
                            head + "DepthStencilAttachment.name:0",
                            head + "DepthStencilAttachment.lod:0",
                            head + "DepthStencilAttachment.cubeface:0",
                            head + "DepthStencilAttachment.type:0",
                            head + "NumDrawBuffers:1",
                            head + "DrawBuffers[0]:7"};
    EXPECT_EQ(expected, PrintedOf("mFramebufferObjects"));
    m_state.m_sRenderbuffers[21] = {21, true, 64, 32, GL_RGB565};
    EXPECT_EQ((Lines{"m_sRenderbuffers[0] st->name:21", "m_sRenderbuffers[0] st->firstBind:1",
                     "m_sRenderbuffers[0] st->width:64", "m_sRenderbuffers[0] st->height:32",
                     "m_sRenderbuffers[0] st->internalformat:36194"}),
              PrintedOf("m_sRenderbuffers"));
}

// Shaders with their sources, programs, and the one in use.
TEST_F(Es2Print, Programs)
{
    ShaderDefinition& shader = m_state.m_sShaderMap[3];
    shader.name = 3;
    shader.type = GL_VERTEX_SHADER;
    shader.source = "void main() {}";
    shader.bDeleted = true;
    EXPECT_EQ((Lines{"m_sShaderMap[0] st->name:3", "m_sShaderMap[0] st->type:35633",
                     "m_sShaderMap[0] st->source:void main() {}", "m_sShaderMap[0] st->bCompiled:0",
                     "m_sShaderMap[0] st->bDeleted:1", "m_sShaderMap[0] st->attached:0"}),
              PrintedOf("m_sShaderMap"));
    m_state.m_sProgramMap[5] = {5, 3, 4, true, false};
    EXPECT_EQ((Lines{"m_sProgramMap[1] st->name:5", "m_sProgramMap[1] st->vertShaderName:3",
                     "m_sProgramMap[1] st->fragShaderName:4", "m_sProgramMap[1] st->bLinked:1"}),
              PrintedOf("m_sProgramMap[1]"));
    m_state.m_sUsedProgram = {5, 3, 0, true, false};
    EXPECT_EQ((Lines{"m_sUsedProgram.name:5", "m_sUsedProgram.vertShaderName:3",
                     "m_sUsedProgram.fragShaderName:0", "m_sUsedProgram.bLinked:1"}),
              PrintedOf("m_sUsedProgram"));
}

// Uniforms and attributes, by program and location, with their values.
TEST_F(Es2Print, UniformsAndAttributes)
{
    UniformDefinition& uniform = m_state.m_sUniformMap[5][2];
    uniform.program = 5;
    uniform.location = 2;
    uniform.name = "u";
    uniform.numValues = 1;
    uniform.valueType = kUniformInteger;
    uniform.aiValues.Append(8);
    uniform.aiValues.Append(9);
    std::string const head = "m_sUniformMap[5][2] st->";
    EXPECT_EQ((Lines{head + "program:5", head + "location:2", head + "name:u", head + "numValues:1",
                     head + "valueType:0", head + "aiValues[0]:8", head + "aiValues[1]:9"}),
              PrintedOf("m_sUniformMap"));
    ProgramAttribute& attribute = m_state.m_sPreAttribMap[5][3];
    attribute.name = "a";
    attribute.numValues = 1;
    attribute.afValues.Append(0.5f);
    EXPECT_EQ(
        (Lines{"m_sPreAttribMap[5][3] st->name:a", "m_sPreAttribMap[5][3] st->program:0",
               "m_sPreAttribMap[5][3] st->location:0", "m_sPreAttribMap[5][3] st->bDirectBind:0",
               "m_sPreAttribMap[5][3] st->numValues:1", "m_sPreAttribMap[5][3] st->afValues[0]:0.500000"}),
        PrintedOf("m_sPreAttribMap"));
    m_state.m_sPostAttribMap[5][4].bDirectBind = true;
    EXPECT_EQ(5u, PrintedOf("m_sPostAttribMap[5][4] st->").size());
}

// Array objects have a form of their own, with the numbers of their arrays.
TEST_F(Es2Print, ArrayObjects)
{
    VAODefinition& object = m_state.mVertexArrayObjects[41];
    object.name = 41;
    object.boundarraybuffer = 11;
    object.createdwithextension = true;
    VertexAttributeArray& array = object.vertexattributearrays[3];
    array.enabled = true;
    array.size = 2;
    array.type = GL_FLOAT;
    array.pointer = reinterpret_cast<void const*>(16);
    std::string const head = "mVertexArrayObjects[0].";
    std::string const arrayHead = head + "vertexattributearrays[3].";
    Lines const expected = {head + "name: 41",
                            head + "boundarraybuffer: 11",
                            head + "boundelementbuffer: 0",
                            head + "createdwithextension: 1",
                            arrayHead + "enabled: 1",
                            arrayHead + "normalized: 0",
                            arrayHead + "size: 2",
                            arrayHead + "type: 5126",
                            arrayHead + "stride: 0",
                            arrayHead + "pointer: 0x10",
                            arrayHead + "boundarraybuffer: 0"};
    EXPECT_EQ(expected, PrintedOf("mVertexArrayObjects"));
}

// Asked to, it writes the contents of the buffers to a file of a fixed name as well.
TEST_F(Es2Print, ContentsGoToAFile)
{
    ScratchFolder const folder;
    auto const fill = [this](GLuint name, GLubyte first) {
        BufferDefinition& buffer = m_state.m_sBufferDatas[name];
        buffer.Allocate(2);
        buffer.bufferDataSize = 2;
        buffer.bufferData[0] = first;
    };
    fill(11, 1);
    fill(12, 2);
    PrintedOf("", false);
    EXPECT_FALSE(std::ifstream("c:\\temp\\bufferData").is_open());
    PrintedOf("", true);
    std::ifstream file("c:\\temp\\bufferData", std::ios::binary);
    EXPECT_EQ((Bytes{1, 0, 2, 0}), Bytes((std::istreambuf_iterator<char>(file)), {}));
}
