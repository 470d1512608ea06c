// The GLES1 snapshot: textures, buffers, array objects and framebuffers.
#include "tests/wrappers/es1_snapshot.h"

class Es1SnapshotObjects : public Es1Snapshot
{
protected:
    // From the marker to the first unit.
    Lines OfTextures() { return Tail(From(Taken(), "-- 3", "glMultiTexCoord4f(target = GL_TEXTURE0"), 1, 3); }
    // From the alpha test to the blend function.
    Lines OfBuffers() { return Tail(From(Taken(), "glAlphaFunc", "glBlendFunc"), 1, 1); }
    // From the viewport to the last marker.
    Lines OfArraysAndFramebuffers() { return Tail(From(Taken(), "glViewport", "-- 3"), 1, 1); }
    // The calls that make objects and bind them, of those.
    Lines OfFramebuffers()
    {
        return Only(OfArraysAndFramebuffers(),
                    {"glGenRenderbuffersOES", "glBindRenderbufferOES", "glRenderbufferStorageOES",
                     "glGenFramebuffersOES", "glBindFramebufferOES", "glFramebufferRenderbufferOES",
                     "glFramebufferTexture2DOES"});
    }
    // Lines without so many at the front and at the back.
    static Lines Tail(Lines const& lines, std::ptrdiff_t front, std::ptrdiff_t back)
    {
        if (static_cast<std::ptrdiff_t>(lines.size()) < front + back)
            return {"too few"};
        return Lines(lines.begin() + front, lines.end() - back);
    }
    static std::string ImageLine(int level, std::string const& pixels)
    {
        return "glTexImage2D(target = GL_TEXTURE_2D, level = " + std::to_string(level) +
               ", internalformat = GL_ALPHA, width = 1, height = 1, border = 0, format = GL_ALPHA, type = "
               "GL_UNSIGNED_BYTE, pixels = " +
               pixels + ", alignment = 0)";
    }
    // The bytes of the second half.
    Bytes WrittenState()
    {
        STraceConfig::m_bDoNativeCall = false;
        CTraceRecordManager::saveRenderStatePhase2(false, false);
        STraceConfig::m_bDoNativeCall = true;
        return Written();
    }
    static bool Holds(Bytes const& written, Bytes const& part)
    {
        return written.end() != std::search(written.begin(), written.end(), part.begin(), part.end());
    }
};

// A texture is bound ahead of everything, then gets its name, a binding and its parameters at level 0; its
// levels follow in the order of their upload.
TEST_F(Es1SnapshotObjects, TexturesAreWrittenLevelByLevel)
{
    BindTexture(9);
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    Image(0, 1);
    Image(2, 2);
    BindTexture(8);
    Image(1, 3);
    Image(0, 4);
    auto const begun = [](std::string const& name, std::string const& wrap) {
        return Lines{
            "glGenTextures(n = 1, textures = {" + name + "})",
            "glBindTexture(target = GL_TEXTURE_2D, texture = " + name + ")",
            "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MIN_FILTER, param = "
            "GL_NEAREST_MIPMAP_LINEAR)",
            "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MAG_FILTER, param = GL_LINEAR)",
            "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_S, param = " + wrap + ")",
            "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_T, param = GL_REPEAT)"};
    };
    Lines expected = {"glBindTexture(target = GL_TEXTURE_2D, texture = 9)"};
    for (std::string const& line : begun("9", "GL_CLAMP_TO_EDGE"))
        expected.push_back(line);
    expected.push_back(ImageLine(0, "[1 bytes]"));
    expected.push_back(ImageLine(2, "[1 bytes]"));
    expected.push_back("glBindTexture(target = GL_TEXTURE_2D, texture = 8)");
    expected.push_back(ImageLine(1, "[1 bytes]"));
    for (std::string const& line : begun("8", "GL_REPEAT"))
        expected.push_back(line);
    expected.push_back(ImageLine(0, "[1 bytes]"));
    EXPECT_EQ(expected, OfTextures());
}

// A compressed image comes back as one, an image without pixels without them.
TEST_F(Es1SnapshotObjects, ImagesComeBackAsTheyWereGiven)
{
    BindTexture(9);
    GLubyte const bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Es1::_glCompressedTexImage2D(GL_TEXTURE_2D, 1, 0x8D64, 4, 4, 0, 8, bytes);
    Es1::_glTexImage2D(GL_TEXTURE_2D, 2, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, nullptr);
    Lines const expected = {
        "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glCompressedTexImage2D(target = GL_TEXTURE_2D, level = 1, internalformat = "
        "GL_ETC1_RGB8_OES, width = 4, height = 4, border = 0, imageSize = 8, data = [8 bytes])",
        ImageLine(2, "NULL")};
    EXPECT_EQ(expected, OfTextures());
}

// Mipmaps that were generated are not written: their levels are what was uploaded.
TEST_F(Es1SnapshotObjects, GeneratedMipmapsAreNotWritten)
{
    BindTexture(9);
    Image(0, 1);
    Es1::_glGenerateMipmapOES(GL_TEXTURE_2D);
    EXPECT_EQ(Lines(), Only(Taken(), {"glGenerateMipmapOES"}));
}

// The record of an image is measured by the unpack alignment of the moment of writing. Where that makes it
// longer than the image's bytes, the rest is zeros and not what lies behind them.
TEST_F(Es1SnapshotObjects, AnImageIsPaddedToWhatItsRecordTakes)
{
    BindTexture(9);
    HostAnswers(GL_PACK_ALIGNMENT, 1);
    HostAnswers(GL_UNPACK_ALIGNMENT, 1);
    GLubyte const pixels[] = {0xA1, 0xA2, 0xA3};
    Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 3, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, pixels);
    EXPECT_EQ(3, State().m_sTexImageTextures[9][0].imageSize);
    HostAnswers(GL_UNPACK_ALIGNMENT, 8);
    Capture();
    // Size, bytes, and the alignment behind them.
    Bytes const image = Joined(U32(8), Bytes{0xA1, 0xA2, 0xA3, 0, 0, 0, 0, 0}, U32(8));
    EXPECT_TRUE(Holds(WrittenState(), image));
}

// What is uploaded between the two halves is not in the state, whose bytes are those of the capture; and the
// live objects may be gone by then.
TEST_F(Es1SnapshotObjects, ReuploadsDoNotReachTheFrozenState)
{
    BindTexture(9);
    HostAnswers(GL_PACK_ALIGNMENT, 1);
    HostAnswers(GL_UNPACK_ALIGNMENT, 1);
    std::vector<GLubyte> const old(64, 0xA5);
    std::vector<GLubyte> const later(64, 0x5A);
    auto const upload = [&](std::vector<GLubyte> const& bytes) {
        Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 8, 8, 0, GL_ALPHA, GL_UNSIGNED_BYTE, bytes.data());
        Buffer(GL_ARRAY_BUFFER, 11, bytes);
    };
    upload(old);
    Capture();
    Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 8, 8, GL_ALPHA, GL_UNSIGNED_BYTE, later.data());
    Es1::_glBufferSubData(GL_ARRAY_BUFFER, 0, 64, later.data());
    upload(later);
    EXPECT_EQ(0x5A, State().m_sBufferDatas[11].bufferData[63]);
    *CTraceRecordManager::m_Es1FileState = CEs1ContextState();
    Bytes const written = WrittenState();
    EXPECT_TRUE(Holds(written, Joined(U32(64), Bytes(64, 0xA5), U32(1))));  // the image, and its alignment
    EXPECT_TRUE(Holds(written, Joined(U32(64), Bytes(64, 0xA5), U32(GL_STATIC_DRAW))));
    EXPECT_FALSE(Holds(written, Bytes(8, 0x5A)));
}

// Buffers come back with their contents, mapped ones mapped. Behind them stand the bindings.
TEST_F(Es1SnapshotObjects, BuffersAreBoundFilledAndMapped)
{
    Buffer(GL_ELEMENT_ARRAY_BUFFER, 12, {1, 2, 3});
    Buffer(GL_ARRAY_BUFFER, 11, {4});
    Fake().On("glGetBufferParameteriv", [](Call const& call) {
        *call.Pointer<GLint>(2) = call.Argument<GLenum>(0) == GL_ARRAY_BUFFER ? 1 : 0;
    });
    Lines const expected = {
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 12)",
        "glBufferData(target = GL_ELEMENT_ARRAY_BUFFER, size = 3, data = {1, 2, 3}, usage = GL_STATIC_DRAW)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBufferData(target = GL_ARRAY_BUFFER, size = 1, data = {4}, usage = GL_STATIC_DRAW)",
        "glMapBufferOES(target = GL_ARRAY_BUFFER, access = GL_WRITE_ONLY) = NULL",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 12)"};
    EXPECT_EQ(expected, OfBuffers());
}

// Of an array object come the pointers in their order, each behind its buffer, those of the units, then the
// switches, the element buffer, and behind all objects the current one and the client unit.
TEST_F(Es1SnapshotObjects, ArrayObjectsAreWrittenArrayByArray)
{
    HostAnswers(Es1Enum::kClientActiveTexture, GL_TEXTURE1);
    GLuint name = 5;
    Es1::_glGenVertexArraysOES(1, &name);
    Es1::_glBindVertexArrayOES(5);
    auto const at = [](uintptr_t offset) { return reinterpret_cast<void const*>(offset); };
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 21);
    Es1::_glColorPointer(4, GL_UNSIGNED_BYTE, 16, at(1));
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 22);
    Es1::_glVertexPointer(3, GL_SHORT, 8, at(2));
    Es1::_glNormalPointer(GL_BYTE, 4, at(3));
    Es1::_glClientActiveTexture(GL_TEXTURE1);
    Es1::_glTexCoordPointer(2, GL_FIXED, 12, at(4));
    Es1::_glClientActiveTexture(GL_TEXTURE0);
    HostAnswers(GL_ELEMENT_ARRAY_BUFFER_BINDING, 23);
    HostEnables({0x8074, 0x8B9C});
    Lines const calls = OfArraysAndFramebuffers();
    Lines const object = {
        "glGenVertexArraysOES(n = 1, arrays = {5})",
        "glBindVertexArrayOES(array = 5)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 21)",
        "glColorPointer(size = 4, type = GL_UNSIGNED_BYTE, stride = 16, pointer = 0x1)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 22)",
        "glVertexPointer(size = 3, type = GL_SHORT, stride = 8, pointer = 0x2)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 22)",
        "glNormalPointer(type = GL_BYTE, stride = 4, pointer = 0x3)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glPointSizePointerOES(type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glMatrixIndexPointerOES(size = 1, type = GL_UNSIGNED_BYTE, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glWeightPointerOES(size = 1, type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glClientActiveTexture(texture = GL_TEXTURE0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glTexCoordPointer(size = 0, type = 0x0, stride = 0, pointer = NULL)",
        "glClientActiveTexture(texture = GL_TEXTURE1)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 22)",
        "glTexCoordPointer(size = 2, type = GL_FIXED, stride = 12, pointer = 0x4)",
        "glDisableClientState(array = GL_COLOR_ARRAY)",
        "glEnableClientState(array = GL_VERTEX_ARRAY)",
        "glDisableClientState(array = GL_NORMAL_ARRAY)",
        "glEnableClientState(array = GL_POINT_SIZE_ARRAY_OES)",
        "glDisableClientState(array = GL_MATRIX_INDEX_ARRAY_OES)",
        "glDisableClientState(array = GL_WEIGHT_ARRAY_OES)",
        "glClientActiveTexture(texture = GL_TEXTURE0)",
        "glDisableClientState(array = GL_TEXTURE_COORD_ARRAY)",
        "glClientActiveTexture(texture = GL_TEXTURE1)",
        "glDisableClientState(array = GL_TEXTURE_COORD_ARRAY)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 23)"};
    ASSERT_LT(object.size(), calls.size());
    EXPECT_EQ(object, Lines(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(object.size())));
    // The default array object stands behind it, as its record was made later.
    EXPECT_EQ("glBindVertexArrayOES(array = 0)", calls[object.size()]);
    Lines const end = {"glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 23)",
                       "glBindVertexArrayOES(array = 5)", "glClientActiveTexture(texture = GL_TEXTURE1)",
                       "glBindFramebufferOES(target = GL_FRAMEBUFFER, framebuffer = 0)"};
    EXPECT_EQ(end, Lines(calls.end() - 4, calls.end()));
}

// Renderbuffers come back with the storage that the host tells of, those never bound with their name alone.
TEST_F(Es1SnapshotObjects, RenderbuffersComeBackWithTheirStorage)
{
    GLuint names[] = {21, 22};
    Es1::_glGenRenderbuffersOES(2, names);
    Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, 21);
    Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, 23);
    Fake().On("glGetRenderbufferParameterivOES", [](Call const& call) {
        bool const first = Fake().Calls("glBindRenderbufferOES").back().Argument<GLuint>(1) == 21;
        GLenum const name = call.Argument<GLenum>(1);
        *call.Pointer<GLint>(2) = !first ? 0 : name == 0x8D42 ? 64 : name == 0x8D43 ? 32 : 0x81A5;
    });
    Lines const expected = {
        "glGenRenderbuffersOES(n = 1, renderbuffers = {21})",
        "glBindRenderbufferOES(target = GL_RENDERBUFFER, renderbuffer = 21)",
        "glRenderbufferStorageOES(target = GL_RENDERBUFFER, internalformat = GL_DEPTH_COMPONENT16, width = "
        "64, height = 32)",
        "glGenRenderbuffersOES(n = 1, renderbuffers = {22})",
        "glGenRenderbuffersOES(n = 1, renderbuffers = {23})",
        "glBindRenderbufferOES(target = GL_RENDERBUFFER, renderbuffer = 23)",
        "glBindFramebufferOES(target = GL_FRAMEBUFFER, framebuffer = 0)"};
    EXPECT_EQ(expected, OfFramebuffers());
}

// Framebuffers come back with what the host says is attached: colour, depth, stencil, each as its type says.
TEST_F(Es1SnapshotObjects, FramebuffersComeBackWithTheirAttachments)
{
    GLuint names[] = {31, 32};
    Es1::_glGenFramebuffersOES(2, names);
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 31);
    HostAnswers(GL_FRAMEBUFFER_BINDING, 31);
    Fake().On("glGetFramebufferAttachmentParameterivOES", [](Call const& call) {
        GLenum const point = call.Argument<GLenum>(1);
        GLenum const name = call.Argument<GLenum>(2);
        GLint* const value = call.Pointer<GLint>(3);
        if (name == 0x8CD0)
            *value = point == 0x8CE0 ? 0x1702 : point == 0x8D00 ? 0x8D41 : 0;
        else if (point != 0x8D20)
            *value = name == 0x8CD1 ? (point == 0x8CE0 ? 9 : 21) : 2;
    });
    Lines const expected = {
        "glGenFramebuffersOES(n = 1, framebuffers = {31})",
        "glBindFramebufferOES(target = GL_FRAMEBUFFER, framebuffer = 31)",
        "glFramebufferTexture2DOES(target = GL_FRAMEBUFFER, attachment = GL_COLOR_ATTACHMENT0, textarget = "
        "GL_TEXTURE_2D, texture = 9, level = 2)",
        "glFramebufferRenderbufferOES(target = GL_FRAMEBUFFER, attachment = GL_DEPTH_ATTACHMENT, "
        "renderbuffertarget = GL_RENDERBUFFER, renderbuffer = 21)",
        "glGenFramebuffersOES(n = 1, framebuffers = {32})",
        "glBindFramebufferOES(target = GL_FRAMEBUFFER, framebuffer = 31)"};
    EXPECT_EQ(expected, OfFramebuffers());
}

// The optimisation leaves nothing out: what no draw used is written, too.
TEST_F(Es1SnapshotObjects, AnOptimisedStateHoldsEverything)
{
    BindTexture(9);
    Image(0, 1);
    Buffer(GL_ARRAY_BUFFER, 11, {4});
    Lines const plain = Taken(false);
    EXPECT_EQ(plain, Taken(true));
    EXPECT_EQ(1u, Only(plain, {"glTexImage2D"}).size());
    EXPECT_EQ(1u, Only(plain, {"glBufferData"}).size());
}
