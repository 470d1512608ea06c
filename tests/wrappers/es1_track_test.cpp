// What the shadow keeps of GLES1 objects, and when.
#include "api/es1_enums.h"
#include "state/es1_context_state.h"
#include "tests/wrappers/shadow.h"
#include <functional>

class Es1Track : public Shadow
{
protected:
    static CEs1ContextState& State() { return *CTraceRecordManager::m_Es1FileState; }
    static CEs1ContextState::textureDefinition* Image(GLuint name, GLint level)
    {
        auto* const levels = State().m_sTexImageTextures.Find(name);
        return levels ? levels->Find(level) : nullptr;
    }
    static void Upload(GLint level = 0, GLenum target = GL_TEXTURE_2D)
    {
        GLubyte const pixel = 0xA5;
        Es1::_glTexImage2D(target, level, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, &pixel);
    }
    static CEs1ContextState::clientArray& Array(int array, int object = 0)
    {
        return State().mVertexArrayObjects[object].arrays[array];
    }
};

// An image goes to the bound texture and its level, as a copy, with the pack alignment.
TEST_F(Es1Track, ImagesGoToTheBoundTexture)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}, {GL_PACK_ALIGNMENT, 2}});
    EXPECT_EQ((std::vector<GLenum>{GL_PACK_ALIGNMENT, GL_TEXTURE_BINDING_2D, GL_UNPACK_ALIGNMENT}),
              AskedBy([] { Upload(3); }));
    ASSERT_NE(nullptr, Image(9, 3));
    CEs1ContextState::textureDefinition const& image = *Image(9, 3);
    EXPECT_EQ(0x0DE1u, image.textureTarget);
    EXPECT_EQ(9u, image.textureName);
    EXPECT_EQ(3, image.textureLevel);
    EXPECT_EQ(0x1906, image.internalformat);
    EXPECT_EQ(0x1906u, image.format);
    EXPECT_EQ(0x1401u, image.type);
    EXPECT_EQ(1, image.width);
    EXPECT_EQ(1, image.height);
    EXPECT_EQ(2, image.alignment);
    EXPECT_EQ(2, image.imageSize);
    EXPECT_FALSE(image.externalData);
    EXPECT_TRUE(image.deepCopy);
    EXPECT_FALSE(image.isCompressed);
    EXPECT_EQ(0xA5, image.pixels[0]);
    EXPECT_EQ(0, image.pixels[1]);  // past the application's bytes
    EXPECT_EQ(1, State().m_sTexImageTextures.Count());
}

// An image without pixels has a size all the same.
TEST_F(Es1Track, AnImageWithoutPixelsHasASize)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}, {GL_PACK_ALIGNMENT, 4}});
    Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(nullptr, Image(9, 0)->pixels);
    EXPECT_EQ(24, Image(9, 0)->imageSize);
}

// A compressed image has its format twice, no type, and the size of its call.
TEST_F(Es1Track, CompressedImagesAreKept)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}, {GL_PACK_ALIGNMENT, 4}});
    GLubyte const bytes[3] = {1, 2, 3};
    Es1::_glCompressedTexImage2D(GL_TEXTURE_2D, 1, 0x8B90, 8, 4, 0, 3, bytes);
    CEs1ContextState::textureDefinition const& image = *Image(9, 1);
    EXPECT_EQ(0x8B90u, image.format);
    EXPECT_EQ(0x8B90, image.internalformat);
    EXPECT_EQ(0u, image.type);
    EXPECT_EQ(3, image.imageSize);
    EXPECT_EQ(4, image.alignment);
    EXPECT_TRUE(image.isCompressed);
    EXPECT_EQ(3, image.pixels[2]);
}

// A sub-image is merged into the image; one in another format leaves it as it was.
TEST_F(Es1Track, SubImagesAreMerged)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}, {GL_PACK_ALIGNMENT, 1}, {GL_UNPACK_ALIGNMENT, 1}});
    GLubyte const pixels[4] = {1, 2, 3, 4};
    GLubyte const update[2] = {5, 6};
    Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 2, 2, 0, GL_ALPHA, GL_UNSIGNED_BYTE, pixels);
    Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 0, 1, 2, GL_ALPHA, GL_UNSIGNED_BYTE, update);
    EXPECT_EQ((Bytes{1, 5, 3, 6}), Bytes(Image(9, 0)->pixels, Image(9, 0)->pixels + 4));
    Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_LUMINANCE, GL_UNSIGNED_BYTE, update);
    EXPECT_EQ(1, Image(9, 0)->pixels[0]);
}

// Contents need all of the gate.
TEST_F(Es1Track, ImagesPassTheDataGate)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}});
    ExpectDataGate([] { Upload(); }, [] { return Image(9, 0) != nullptr; });
    GLubyte const pixel = 0x11;
    ExpectDataGate([&] { Es1::_glCompressedTexImage2D(GL_TEXTURE_2D, 1, 1, 1, 1, 0, 1, &pixel); },
                   [] { return Image(9, 1) != nullptr; });
    ExpectDataGate(
        [&] { Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, &pixel); },
        [] { return Image(9, 0)->pixels[0] == 0x11; });
}

// Other targets have no place in the shadow: a cube map's faces would stand for a 2D texture's levels.
TEST_F(Es1Track, OtherTargetsAreNotFollowed)
{
    GLubyte const pixel = 0;
    Upload(0, 0x8515);
    Es1::_glTexSubImage2D(0x8515, 0, 0, 0, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, &pixel);
    Es1::_glTexParameteri(0x8513, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    GLint const rectangle[4] = {1, 2, 3, 4};
    Es1::_glTexParameteriv(0x8513, 0x8B9D, rectangle);
    Es1::_glGenerateMipmapOES(0x8513);
    EXPECT_EQ(0, State().m_sTexImageTextures.Count());
}

// Each of the eight forms sets one of the four parameters, at level 0. The float forms truncate.
TEST_F(Es1Track, ParametersGoToLevel0)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}});
    GLfloat const floats[] = {10497.75f};
    GLint const integers[] = {10497};
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 1);
    Es1::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, 2.75f);
    Es1::_glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, 3);
    Es1::_glTexParameterxOES(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, 4);
    ASSERT_NE(nullptr, Image(9, 0));
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(i + 1, Image(9, 0)->params[i]);
    Es1::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, floats);
    Es1::_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, integers);
    Es1::_glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, integers);
    Es1::_glTexParameterxvOES(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, integers);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(10497, Image(9, 0)->params[i]);
    Es1::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, nullptr);
    Es1::_glTexParameteri(GL_TEXTURE_2D, 0x84FE, 5);  // no such parameter is kept
    EXPECT_EQ(10497, Image(9, 0)->params[0]);
}

// A later image at level 0 keeps the parameters.
TEST_F(Es1Track, AnImageKeepsItsParameters)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}});
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    Upload();
    EXPECT_EQ(GL_NEAREST, Image(9, 0)->params[1]);
    EXPECT_EQ(GL_REPEAT, Image(9, 0)->params[2]);
}

// Automatic mipmaps, a crop rectangle and generated mipmaps are kept; the rectangle by the integer form
// alone.
TEST_F(Es1Track, MipmapsAndCropRectanglesAreKept)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 9}});
    GLint const rectangle[4] = {1, 2, 3, 4};
    Es1::_glTexParameterxv(GL_TEXTURE_2D, 0x8B9D, rectangle);
    EXPECT_EQ(nullptr, Image(9, 0));
    Es1::_glTexParameteriv(GL_TEXTURE_2D, 0x8B9D, rectangle);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(i + 1, Image(9, 0)->iTextureCropRectangleOES[i]);
    EXPECT_FALSE(Image(9, 0)->mipsGenerated);
    Es1::_glTexParameteri(GL_TEXTURE_2D, 0x8191, 1);
    EXPECT_TRUE(Image(9, 0)->mipsGenerated);
    Es1::_glTexParameterf(GL_TEXTURE_2D, 0x8191, 0.0f);
    EXPECT_FALSE(Image(9, 0)->mipsGenerated);
    Es1::_glGenerateMipmapOES(GL_TEXTURE_2D);
    EXPECT_TRUE(Image(9, 0)->mipsGenerated);
}

// Parameters and mipmaps pass the plain gate, each form by itself.
TEST_F(Es1Track, ParametersPassThePlainGate)
{
    GLint const integer = 7;
    GLfloat const real = 7.0f;
    std::vector<std::function<void()>> const calls = {
        [] { Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 7); },
        [] { Es1::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 7.0f); },
        [] { Es1::_glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 7); },
        [] { Es1::_glTexParameterxOES(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 7); },
        [&] { Es1::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &real); },
        [&] { Es1::_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &integer); },
        [&] { Es1::_glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &integer); },
        [&] { Es1::_glTexParameterxvOES(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &integer); },
        [] { Es1::_glGenerateMipmapOES(GL_TEXTURE_2D); }};
    GLint name = 100;
    for (auto const& call : calls)
    {
        HostAnswers({{GL_TEXTURE_BINDING_2D, ++name}});
        ExpectPlainGate(call, [name] { return Image(static_cast<GLuint>(name), 0) != nullptr; });
    }
}

// A buffer's contents go to the record of the name bound to its target, and updates into them.
TEST_F(Es1Track, BuffersAreKept)
{
    HostAnswers({{GL_ARRAY_BUFFER_BINDING, 11}, {GL_ELEMENT_ARRAY_BUFFER_BINDING, 12}});
    GLubyte const bytes[3] = {1, 2, 3};
    Es1::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, 3, bytes, GL_STATIC_DRAW);
    Es1::_glBufferData(GL_ARRAY_BUFFER, 2, nullptr, GL_DYNAMIC_DRAW);
    Es1::_glBufferSubData(GL_ARRAY_BUFFER, 1, 1, bytes);
    BufferDefinition const& elements = State().m_sBufferDatas[12];
    EXPECT_EQ(12u, elements.bufferName);
    EXPECT_EQ(0x8893u, elements.bufferTarget);
    EXPECT_EQ(3, elements.bufferDataSize);
    EXPECT_EQ(0x88E4u, elements.bufferUsage);
    EXPECT_EQ((Bytes{1, 2, 3}), Bytes(elements.bufferData, elements.bufferData + 3));
    BufferDefinition const& array = State().m_sBufferDatas[11];
    EXPECT_EQ((Bytes{0, 1}), Bytes(array.bufferData, array.bufferData + 2));
}

// Contents of buffers need all of the gate.
TEST_F(Es1Track, BuffersPassTheDataGate)
{
    HostAnswers({{GL_ARRAY_BUFFER_BINDING, 11}});
    GLubyte const bytes[2] = {1, 2};
    ExpectDataGate([&] { Es1::_glBufferData(GL_ARRAY_BUFFER, 2, bytes, GL_STATIC_DRAW); },
                   [] { return State().m_sBufferDatas.Find(11) != nullptr; });
    ExpectDataGate([&] { Es1::_glBufferSubData(GL_ARRAY_BUFFER, 0, 1, bytes + 1); },
                   [] { return State().m_sBufferDatas[11].bufferData[0] == 2; });
}

// Unmapping is recorded, but nothing of it goes into the shadow.
TEST_F(Es1Track, UnmappingChangesNoBuffer)
{
    HostAnswers({{GL_ARRAY_BUFFER_BINDING, 11}});
    GLubyte bytes[1] = {1};
    Es1::_glBufferData(GL_ARRAY_BUFFER, 1, bytes, GL_STATIC_DRAW);
    bytes[0] = 2;
    Fake().On("glGetBufferParameteriv", [](Call const& call) { *call.Pointer<GLint>(2) = 1; });
    Fake().On("glGetBufferPointervOES", [&](Call const& call) { *call.Pointer<void*>(2) = bytes; });
    Es1::_glUnmapBufferOES(GL_ARRAY_BUFFER);
    EXPECT_EQ(1, State().m_sBufferDatas[11].bufferData[0]);
}

// Names of framebuffers and renderbuffers have records from their generation on; a bind is noted, and of a
// name that was not generated, too; name 0 has none.
TEST_F(Es1Track, FramebuffersAndRenderbuffersHaveRecords)
{
    GLuint names[] = {4, 9};
    Es1::_glGenFramebuffersOES(2, names);
    Es1::_glGenRenderbuffersOES(2, names);
    EXPECT_EQ(9u, State().mFramebufferObjects[9].name);
    EXPECT_EQ(9u, State().m_sRenderbuffers[9].name);
    for (GLuint name : {9u, 5u, 0u})
    {
        Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, name);
        Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, name);
    }
    EXPECT_FALSE(State().mFramebufferObjects[4].firstBind);
    EXPECT_FALSE(State().m_sRenderbuffers[4].firstBind);
    for (GLuint name : {9u, 5u})
    {
        EXPECT_TRUE(State().mFramebufferObjects[name].firstBind);
        EXPECT_EQ(name, State().mFramebufferObjects[name].name);
        EXPECT_TRUE(State().m_sRenderbuffers[name].firstBind);
        EXPECT_EQ(name, State().m_sRenderbuffers[name].name);
    }
    Es1::_glDeleteFramebuffersOES(2, names);
    Es1::_glDeleteRenderbuffersOES(2, names);
    EXPECT_EQ(1, State().mFramebufferObjects.Count());
    EXPECT_EQ(1, State().m_sRenderbuffers.Count());
}

// They pass the plain gate, each call by itself.
TEST_F(Es1Track, FramebuffersPassThePlainGate)
{
    GLuint name = 4;
    auto const framebuffer = [] { return State().mFramebufferObjects.Find(4); };
    auto const renderbuffer = [] { return State().m_sRenderbuffers.Find(4); };
    ExpectPlainGate([&] { Es1::_glGenFramebuffersOES(1, &name); }, [&] { return framebuffer() != nullptr; });
    ExpectPlainGate([] { Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 4); },
                    [&] { return framebuffer()->firstBind; });
    ExpectPlainGate([&] { Es1::_glDeleteFramebuffersOES(1, &name); },
                    [&] { return framebuffer() == nullptr; });
    ExpectPlainGate([&] { Es1::_glGenRenderbuffersOES(1, &name); },
                    [&] { return renderbuffer() != nullptr; });
    ExpectPlainGate([] { Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, 4); },
                    [&] { return renderbuffer()->firstBind; });
    ExpectPlainGate([&] { Es1::_glDeleteRenderbuffersOES(1, &name); },
                    [&] { return renderbuffer() == nullptr; });
}

// A pointer goes to its array in the current array object, with the array buffer of that moment; texture
// coordinates to the client unit's.
TEST_F(Es1Track, PointersGoToTheCurrentArrayObject)
{
    HostAnswers({{GL_ARRAY_BUFFER_BINDING, 21}});
    int memory = 0;
    Es1::_glBindVertexArrayOES(5);
    Es1::_glColorPointer(4, GL_UNSIGNED_BYTE, 16, &memory);
    Es1::_glVertexPointer(3, GL_SHORT, 8, &memory);
    Es1::_glNormalPointer(GL_BYTE, 4, &memory);
    Es1::_glClientActiveTexture(GL_TEXTURE1);
    Es1::_glTexCoordPointer(2, GL_FIXED, 12, &memory);
    Es1::_glClientActiveTexture(GL_TEXTURE0);
    struct
    {
        int array;
        int size;
        GLenum type;
        int stride;
    } const expected[] = {{0, 4, 0x1401, 16}, {1, 3, 0x1402, 8}, {2, 3, 0x1400, 4}, {7, 2, 0x140C, 12}};
    for (auto const& each : expected)
    {
        CEs1ContextState::clientArray const& array = Array(each.array, 5);
        EXPECT_EQ(21u, array.boundarraybuffer);
        EXPECT_EQ(each.size, array.size);
        EXPECT_EQ(each.type, array.type);
        EXPECT_EQ(each.stride, array.stride);
        EXPECT_EQ(&memory, array.pointer);
    }
    EXPECT_EQ(nullptr, Array(0, 0).pointer);
    EXPECT_EQ(nullptr, Array(6, 5).pointer);
}

// Pointers pass the plain gate.
TEST_F(Es1Track, PointersPassThePlainGate)
{
    int memory = 0;
    ExpectPlainGate([&] { Es1::_glColorPointer(4, GL_FLOAT, 0, &memory); }, [] { return Array(0).pointer; });
    ExpectPlainGate([&] { Es1::_glVertexPointer(4, GL_FLOAT, 0, &memory); }, [] { return Array(1).pointer; });
    ExpectPlainGate([&] { Es1::_glNormalPointer(GL_FLOAT, 0, &memory); }, [] { return Array(2).pointer; });
    ExpectPlainGate([&] { Es1::_glTexCoordPointer(4, GL_FLOAT, 0, &memory); },
                    [] { return Array(6).pointer; });
}

// Array objects have records from their generation or their first bind on; a deleted one that was current
// makes room for the default one, as on the host.
TEST_F(Es1Track, ArrayObjectsHaveRecords)
{
    GLuint names[] = {4, 9};
    Es1::_glGenVertexArraysOES(2, names);
    EXPECT_EQ(2, State().mVertexArrayObjects.Count());
    Es1::_glBindVertexArrayOES(9);
    EXPECT_EQ(9, State().mBoundVAO);
    Es1::_glDeleteVertexArraysOES(1, names);
    EXPECT_EQ(9, State().mBoundVAO);
    Es1::_glDeleteVertexArraysOES(2, names);
    EXPECT_EQ(0, State().mBoundVAO);
    EXPECT_EQ(0, State().mVertexArrayObjects.Count());
}

// Array objects pass the plain gate.
TEST_F(Es1Track, ArrayObjectsPassThePlainGate)
{
    GLuint name = 4;
    auto const record = [] { return State().mVertexArrayObjects.Find(4); };
    ExpectPlainGate([&] { Es1::_glGenVertexArraysOES(1, &name); }, [&] { return record() != nullptr; });
    ExpectPlainGate([] { Es1::_glBindVertexArrayOES(4); }, [] { return State().mBoundVAO == 4; });
    ExpectPlainGate([&] { Es1::_glDeleteVertexArraysOES(1, &name); }, [&] { return record() == nullptr; });
}

// A unit beyond the shadow's is not kept, and does no harm.
TEST_F(Es1Track, AUnitBeyondTheShadowIsNotKept)
{
    for (GLenum unit : {GL_TEXTURE0 + 32u, GL_TEXTURE0 - 1u})
    {
        Es1::_glClientActiveTexture(unit);
        Printed([] { Es1::_glTexCoordPointer(2, GL_FLOAT, 0, nullptr); });
    }
    Es1::_glClientActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(0, State().mVertexArrayObjects.Count());
}
