// GLES1 draws: what they keep of arrays in the application's memory, and what differs from GLES2.
#include "tests/wrappers/es1_arrays.h"
#include "trace/decode.h"

class Es1Draws : public Es1Arrays
{
protected:
    // Enables the vertex array, slot 2, read from client memory.
    void PointVertices(GLint size, GLenum type, GLsizei stride, void const* pointer)
    {
        Es1::_glVertexPointer(size, type, stride, pointer);
        Es1::_glEnableClientState(0x8074);
        Written();
    }
    // Enables a unit's texture coordinates, slot 6 and up.
    void PointTextureCoordinates(GLenum unit, void const* pointer)
    {
        Es1::_glClientActiveTexture(unit);
        Es1::_glTexCoordPointer(1, GL_FLOAT, 0, pointer);
        Es1::_glEnableClientState(0x8078);
        Written();
    }
    // An element buffer with these bytes is bound.
    void BindElements(Bytes const& bytes)
    {
        HostKnows({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}});
        Es1::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes.size()), bytes.data(),
                           GL_STATIC_DRAW);
        Written();
    }
    void ExpectNoEntry()
    {
        Es1::_glDrawArrays(GL_POINTS, 0, 1);
        EXPECT_EQ(Expected(3036, Words({0, 0, 0, 1})), Written());
    }
    // Error word, mode, count and type of glDrawElements.
    static Bytes Elements(uint32_t count, uint32_t type) { return Words({0, 4, count, type}); }
};

// Without arrays, or without contents, a draw is its arguments.
TEST_F(Es1Draws, ADrawWithoutArraysIsItsArguments)
{
    Es1::_glDrawArrays(GL_TRIANGLES, 3, 6);
    EXPECT_EQ(Expected(3036, Words({0, 4, 3, 6})), Written());
    PointVertices(2, GL_FLOAT, 0, m_vertices);
    WithoutData([this] {
        Es1::_glDrawArrays(GL_TRIANGLES, 3, 6);
        Es1::_glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, m_vertices);
    });
    EXPECT_EQ(
        Joined(Expected(3036, Words({0, 4, 3, 6})), Expected(3037, Elements(3, 0x1401), Ptr(m_vertices))),
        Written());
}

// A tight array is recorded where it stands, from its first element: slot, pointer, size, bytes.
TEST_F(Es1Draws, ATightArrayIsRecordedFromItsFirstElement)
{
    PointVertices(2, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawArrays(GL_TRIANGLES, 10, 3);
    EXPECT_EQ(Expected(3036, Words({0, 4, 10, 3}), U32(2), Ptr(m_vertices), U32(24), Raw(m_vertices, 24)),
              Written());
}

// A strided array is gathered; the pointer in its entry is the copy's.
TEST_F(Es1Draws, AStridedArrayIsGathered)
{
    PointVertices(1, GL_FLOAT, 12, m_vertices);
    Es1::_glDrawArrays(GL_TRIANGLES, 0, 3);
    Bytes const record = Written();
    ASSERT_EQ(6u + 16 + 12 + 12, record.size());
    EXPECT_NE(Ptr(m_vertices), Bytes(record.begin() + 26, record.begin() + 30));
    EXPECT_EQ(Joined(U32(12), F32(0), F32(0.75f), F32(1.5f)), Bytes(record.begin() + 30, record.end()));
}

// Entries stand in the order of their slots, whatever order the application named them in; each texture unit
// has one.
TEST_F(Es1Draws, EntriesStandByTheirSlots)
{
    PointTextureCoordinates(GL_TEXTURE1, m_vertices + 3);
    PointTextureCoordinates(GL_TEXTURE0, m_vertices + 2);
    PointVertices(1, GL_FLOAT, 0, m_vertices + 1);
    Es1::_glColorPointer(4, GL_UNSIGNED_BYTE, 0, m_vertices);
    Es1::_glEnableClientState(0x8076);
    Written();
    Es1::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(3036, Words({0, 0, 0, 1}), U32(0), Ptr(m_vertices), U32(4), F32(0), U32(2),
                       Ptr(m_vertices + 1), U32(4), F32(0.25f), U32(6), Ptr(m_vertices + 2), U32(4),
                       F32(0.5f), U32(7), Ptr(m_vertices + 3), U32(4), F32(0.75f)),
              Written());
}

// Normals are three components, point sizes one, though their calls do not say so. Fixed point has 4 bytes.
TEST_F(Es1Draws, NormalsAndPointSizesHaveTheirSizes)
{
    Es1::_glNormalPointer(GL_BYTE, 0, m_vertices + 4);
    Es1::_glEnableClientState(0x8075);
    Es1::_glPointSizePointerOES(GL_FIXED, 0, m_vertices + 8);
    Es1::_glEnableClientState(0x8B9C);
    Written();
    Es1::_glDrawArrays(GL_POINTS, 0, 2);
    EXPECT_EQ(Expected(3036, Words({0, 0, 0, 2}), U32(1), Ptr(m_vertices + 4), U32(6), Raw(m_vertices + 4, 6),
                       U32(3), Ptr(m_vertices + 8), U32(8), Raw(m_vertices + 8, 8)),
              Written());
}

// Short indices and a tight vec3: 6 bytes of indices, and 96 of the array, up to the largest index.
TEST_F(Es1Draws, IndicesTellTheExtent)
{
    GLushort const indices[] = {0, 7, 3};
    PointVertices(3, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, indices);
    EXPECT_EQ(Expected(3037, Elements(3, 0x1403), Ptr(indices), U32(6), Raw(indices, 6), Ptr(indices), U32(2),
                       Ptr(m_vertices), U32(96), Raw(m_vertices, 96)),
              Written());
    GLubyte const bytes[] = {1, 2};
    Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, bytes);
    EXPECT_EQ(Expected(3037, Elements(2, 0x1401), Ptr(bytes), U32(2), Bytes{1, 2}, Ptr(bytes), U32(2),
                       Ptr(m_vertices), U32(36), Raw(m_vertices, 36)),
              Written());
}

// On purpose: 32-bit indices are recorded, but not looked through: of each array there is one element.
TEST_F(Es1Draws, WideIndicesMeanOneElement)
{
    GLuint const indices[] = {3, 0};
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_INT, indices);
    EXPECT_EQ(Expected(3037, Elements(2, 0x1405), Ptr(indices), U32(8), Words({3, 0}), Ptr(indices), U32(2),
                       Ptr(m_vertices), U32(4), F32(0)),
              Written());
}

// A draw of no elements records one element of each array.
TEST_F(Es1Draws, NoElementsMeanOneElement)
{
    PointVertices(3, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawElements(GL_TRIANGLES, 0, GL_UNSIGNED_SHORT, m_vertices);
    EXPECT_EQ(Expected(3037, Elements(0, 0x1403), Ptr(m_vertices), U32(0), Ptr(m_vertices), U32(2),
                       Ptr(m_vertices), U32(12), Raw(m_vertices, 12)),
              Written());
}

// Indices in a buffer: nothing of them but the offset; they are looked for from the buffer's start, in
// GLES1's own copy of it.
TEST_F(Es1Draws, IndicesInABufferAreScannedFromItsStart)
{
    BindElements({2, 0, 5, 1});
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, reinterpret_cast<void*>(1024));
    EXPECT_EQ(Expected(3037, Elements(2, 0x1401), Words({0, 0, 1024}), U32(2), Ptr(m_vertices), U32(12),
                       Raw(m_vertices, 12)),
              Written());
}

// Without a copy of the buffer the record ends behind the offset. On purpose: the line in the log has no
// prefix.
TEST_F(Es1Draws, WithoutACopyOfTheBufferTheRecordEnds)
{
    HostKnows({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}});
    Es2::BufferList.AddObject(77, 1, "x");
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    EXPECT_EQ("Failed to get element buffer with ID 77\n", Printed([] {
                  Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, reinterpret_cast<void*>(8));
              }));
    Es2::BufferList.RemoveObject(77);
    EXPECT_EQ(Expected(3037, Elements(2, 0x1401), Words({0, 0, 8})), Written());
}

// An array without pointer is left out; the indexed draw alone says so.
TEST_F(Es1Draws, AnArrayWithoutPointerIsLogged)
{
    GLubyte const indices[] = {0};
    PointVertices(1, GL_FLOAT, 0, nullptr);
    EXPECT_EQ("", Printed([this] { ExpectNoEntry(); }));
    EXPECT_EQ("NEBTRACE(M) Es1Trace::_glDrawElements error trying to save VertexAttrib: No data pointer\n",
              Printed([&] { Es1::_glDrawElements(GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, indices); }));
    EXPECT_EQ(Expected(3037, Elements(1, 0x1401), Ptr(indices), U32(1), U8(0), Ptr(indices)), Written());
}

// The reader finds indices and entries by the record's length alone, also where it ends early.
TEST_F(Es1Draws, TheReaderFindsIndicesAndEntries)
{
    auto const read = [this](nebtrace::DecodedCall& call) {
        Bytes const record = Written();
        return nebtrace::DecodeAs(*nebtrace::FindRecord(nebtrace::Api::Es1, 3037), nebtrace::Form::Long,
                                  {record.data() + 6, record.size() - 6}, call);
    };
    GLubyte const indices[] = {1, 0};
    PointVertices(2, GL_FLOAT, 0, m_vertices);
    PointTextureCoordinates(GL_TEXTURE0, m_vertices + 8);
    Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, indices);
    nebtrace::DecodedCall call;
    ASSERT_TRUE(read(call));
    EXPECT_EQ(2u, call.Find("index_data")->count);
    EXPECT_EQ(2u, call.Find("arrays")->count);
    HostKnows({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 78}});
    Printed([&] { Es1::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, nullptr); });
    nebtrace::DecodedCall early;
    ASSERT_TRUE(read(early));
    EXPECT_EQ(0u, early.Find("index_data")->count);
    EXPECT_EQ(0u, early.Find("arrays")->count);
}

// Arrays that are off or in a buffer yield no entry.
TEST_F(Es1Draws, ArraysOutsideClientMemoryYieldNoEntry)
{
    PointVertices(2, GL_FLOAT, 0, m_vertices);
    Es1::_glDisableClientState(0x8074);
    Written();
    ExpectNoEntry();
    HostKnows({{GL_ARRAY_BUFFER_BINDING, 5}});
    PointVertices(2, GL_FLOAT, 0, m_vertices);
    ExpectNoEntry();
}

// A refused draw is recorded with its arrays.
TEST_F(Es1Draws, ARefusedDrawKeepsItsArrays)
{
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    Refused([] { Es1::_glDrawArrays(GL_POINTS, 0, 1); });
    EXPECT_EQ(Expected(3036, Words({0x502, 0, 0, 1}), U32(2), Ptr(m_vertices), U32(4), F32(0)), Written());
}

// The element buffer's binding is asked for with the record open, then what the host says of each array.
// Nothing else is asked: no attributes are counted, no data tracked.
TEST_F(Es1Draws, TheOrderOfItsQuestions)
{
    GLubyte const indices[] = {0};
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    Fake().Forget();
    Es1::_glDrawElements(GL_POINTS, 1, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ((std::vector<std::string>{"glDrawElements", "glGetError", "glGetIntegerv", "glGetIntegerv",
                                        "glGetIntegerv", "glGetPointerv"}),
              Fake().Names());
    for (Call const& call : Fake().Calls())
        EXPECT_EQ("es1", call.api) << call.name;
    EXPECT_EQ(0x8895u, Fake().Calls()[2].Argument<GLenum>(0));
    EXPECT_EQ(0x8074u, Fake().Calls()[3].Argument<GLenum>(0));
    EXPECT_EQ(0x8896u, Fake().Calls()[4].Argument<GLenum>(0));
    EXPECT_EQ(0x808Eu, Fake().Calls()[5].Argument<GLenum>(0));
}

// Neither array objects nor contexts are followed, so that an array may be another one's, its pointer an
// offset or memory that is long gone: one that the host has off, in a buffer or elsewhere is not read.
TEST_F(Es1Draws, ArraysThatTheHostDoesNotReadAreNotRead)
{
    PointVertices(1, GL_FLOAT, 0, reinterpret_cast<void*>(16));
    HostKnows({{0x8074, 0}});
    ExpectNoEntry();
    HostKnows({{0x8896, 5}});
    ExpectNoEntry();
    HostKnows({});
    Fake().On("glGetPointerv", [](Call const& call) { *call.Pointer<void const*>(1) = nullptr; });
    ExpectNoEntry();
}

// The host is asked about texture coordinates with their unit active, and its own unit is put back.
TEST_F(Es1Draws, UnitsAreMadeActiveForTheQuestions)
{
    PointTextureCoordinates(GL_TEXTURE1, m_vertices);
    HostKnows({{0x84E1, GL_TEXTURE0}});
    Fake().Forget();
    Es1::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(3036, Words({0, 0, 0, 1}), U32(7), Ptr(m_vertices), U32(4), F32(0)), Written());
    std::vector<Call> const units = Fake().Calls("glClientActiveTexture");
    ASSERT_EQ(2u, units.size());
    EXPECT_EQ(0x84C1u, units[0].Argument<GLenum>(0));
    EXPECT_EQ(0x84C0u, units[1].Argument<GLenum>(0));
    HostKnows({{0x84E1, GL_TEXTURE1}});
    Fake().Forget();
    Es1::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_TRUE(Fake().Calls("glClientActiveTexture").empty());
}

// Rectangles and several draws at once keep nothing of the arrays.
TEST_F(Es1Draws, OtherDrawsKeepNoArrays)
{
    GLsizei const counts[] = {1};
    void const* const indices[] = {m_vertices};
    PointVertices(1, GL_FLOAT, 0, m_vertices);
    Es1::_glDrawTexfOES(1, 2, 3, 4, 5);
    EXPECT_EQ(Expected(4081, U32(0), U8(1), F32(1), F32(2), F32(3), F32(4), F32(5)), Written());
    Es1::_glMultiDrawElementsEXT(GL_TRIANGLES, counts, GL_UNSIGNED_BYTE, indices, 1);
    EXPECT_EQ(Expected(4002, U32(0), U8(1), U32(4), Ptr(counts), U32(0x1401), Ptr(indices), U32(1)),
              Written());
}
