// GLES2 draws: what they keep of arrays in the application's memory.
#include "state/buffer_object_list.h"
#include "tests/wrappers/shadow.h"
#include <algorithm>

class Draws : public Shadow
{
protected:
    Draws()
    {
        RecordFromHere();
        for (int i = 0; i < 64; ++i)
            m_vertices[i] = static_cast<GLfloat>(i) / 4;
    }
    ~Draws() override { Es2::BufferList.RemoveObject(77); }

    // Enables an attribute, read from client memory.
    void Point(GLuint index, GLint size, GLenum type, GLsizei stride, void const* pointer)
    {
        Es2::_glVertexAttribPointer(index, size, type, GL_FALSE, stride, pointer);
        Es2::_glEnableVertexAttribArray(index);
        Written();
    }
    // An element buffer with these bytes is bound.
    void BindElements(Bytes const& bytes)
    {
        HostAnswers({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}});
        Es2::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes.size()), bytes.data(),
                           GL_STATIC_DRAW);
        Written();
    }
    // The entry of a strided array has the copy's address in it, which nobody knows: it is taken out, 4 bytes
    // at this place.
    Bytes WrittenWithout(size_t place)
    {
        Bytes record = Written();
        if (record.size() >= place + 4)
            record.erase(record.begin() + static_cast<long>(place),
                         record.begin() + static_cast<long>(place) + 4);
        return record;
    }
    // Error word, mode, count and type of glDrawElements.
    static Bytes Elements(uint32_t count, uint32_t type) { return Words({0, 4, count, type}); }

    GLfloat m_vertices[64];
};

// Without arrays a draw is its arguments.
TEST_F(Draws, ADrawWithoutArraysIsItsArguments)
{
    Es2::_glDrawArrays(GL_TRIANGLES, 3, 6);
    EXPECT_EQ(Expected(2041, Words({0, 4, 3, 6})), Written());
}

// A tight array is recorded where it stands: index, pointer, size, bytes. On purpose: from its first element,
// whatever element the draw begins with.
TEST_F(Draws, ATightArrayIsRecordedFromItsFirstElement)
{
    Point(2, 2, GL_FLOAT, 0, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 10, 3);
    EXPECT_EQ(Expected(2041, Words({0, 4, 10, 3}), U32(2), Ptr(m_vertices), U32(24), Raw(m_vertices, 24)),
              Written());
}

// A stride equal to the element is tight as well: the pointer is the application's.
TEST_F(Draws, AStrideOfTheElementIsTight)
{
    Point(2, 3, GL_FLOAT, 12, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 2);
    EXPECT_EQ(Expected(2041, Words({0, 4, 0, 2}), U32(2), Ptr(m_vertices), U32(24), Raw(m_vertices, 24)),
              Written());
}

// A strided array is gathered: its elements stand next to each other, and the pointer is the copy's.
TEST_F(Draws, AStridedArrayIsGathered)
{
    Point(1, 1, GL_FLOAT, 12, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
    Bytes const record = Written();
    ASSERT_EQ(6u + 16 + 12 + 12, record.size());
    EXPECT_NE(Ptr(m_vertices), Bytes(record.begin() + 26, record.begin() + 30));
    EXPECT_EQ(Joined(U32(12), F32(0), F32(0.75f), F32(1.5f)), Bytes(record.begin() + 30, record.end()));
}

// Arrays that overlap, each element reaching into the next, are gathered too.
TEST_F(Draws, OverlappingElementsAreGathered)
{
    Point(1, 2, GL_FLOAT, 4, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 2);
    EXPECT_EQ(
        Joined(U32(44), U16(2041), Words({0, 4, 0, 2, 1, 16}), F32(0), F32(0.25f), F32(0.25f), F32(0.5f)),
        WrittenWithout(26));
}

// A count of nothing leaves an entry of no bytes, of a strided array too.
TEST_F(Draws, ACountOfNothingLeavesEmptyEntries)
{
    Point(1, 2, GL_FLOAT, 0, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 0);
    EXPECT_EQ(Expected(2041, Words({0, 4, 0, 0}), U32(1), Ptr(m_vertices), U32(0)), Written());
    Es2::_glDrawArrays(GL_TRIANGLES, 0, -1);
    EXPECT_EQ(Expected(2041, Words({0, 4, 0, 0xFFFFFFFF}), U32(1), Ptr(m_vertices), U32(0)), Written());
    Point(1, 2, GL_FLOAT, 12, m_vertices);
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 0);
    EXPECT_EQ(Joined(U32(28), U16(2041), Words({0, 4, 0, 0, 1, 0})), WrittenWithout(26));
}

// Entries stand in the order of their attributes, whatever order the application named them in.
TEST_F(Draws, EntriesAscend)
{
    uint8_t const bytes[] = {1, 2, 3};
    Point(9, 1, GL_UNSIGNED_BYTE, 0, bytes);
    Point(0, 1, GL_UNSIGNED_BYTE, 0, bytes + 1);
    Point(4, 1, GL_UNSIGNED_BYTE, 0, bytes + 2);
    Es2::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(2041, Words({0, 0, 0, 1}), U32(0), Ptr(bytes + 1), U32(1), U8(2), U32(4),
                       Ptr(bytes + 2), U32(1), U8(3), U32(9), Ptr(bytes), U32(1), U8(1)),
              Written());
}

// Arrays that are off, or in a buffer, or that have no pointer, yield no entry; nothing is said of the
// latter.
TEST_F(Draws, ArraysOutsideClientMemoryYieldNoEntry)
{
    Point(0, 2, GL_FLOAT, 0, nullptr);
    Point(1, 2, GL_FLOAT, 0, m_vertices);
    Es2::_glDisableVertexAttribArray(1);
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 5);
    Point(2, 2, GL_FLOAT, 0, m_vertices);
    EXPECT_EQ("", Printed([] { Es2::_glDrawArrays(GL_POINTS, 0, 1); }));
    EXPECT_EQ(Expected(2041, Words({0, 0, 0, 1})), Written());
}

// An element of an unknown type has no size.
TEST_F(Draws, AnUnknownTypeHasNoSize)
{
    Point(1, 2, 0x8D9F, 0, m_vertices);
    Es2::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(2041, Words({0, 0, 0, 1}), U32(1), Ptr(m_vertices), U32(0)), Written());
    Point(1, 2, 0x8D9F, 12, m_vertices);
    Es2::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Joined(U32(28), U16(2041), Words({0, 0, 0, 1, 1, 0})), WrittenWithout(26));
}

// The arrays are those of the current array object.
TEST_F(Draws, ArraysAreThoseOfTheCurrentObject)
{
    Point(1, 1, GL_FLOAT, 0, m_vertices);
    State().mBoundVAO = 3;
    Es2::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(2041, Words({0, 0, 0, 1})), Written());
    EXPECT_NE(nullptr, State().mVertexArrayObjects.Find(3));
}

// The short form of both.
TEST_F(Draws, WithoutDataADrawIsItsArguments)
{
    Point(1, 1, GL_FLOAT, 0, m_vertices);
    RecordWithoutData();
    Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
    EXPECT_EQ(Expected(2041, Words({0, 4, 0, 3})), Written());
    Es2::_glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, m_vertices);
    EXPECT_EQ(Expected(2042, Elements(3, 0x1401), Ptr(m_vertices)), Written());
}

// A refused draw is recorded with its arrays.
TEST_F(Draws, ARefusedDrawKeepsItsArrays)
{
    Point(1, 1, GL_FLOAT, 0, m_vertices);
    HostFails(GL_INVALID_OPERATION);
    Printed([] { Es2::_glDrawArrays(GL_POINTS, 0, 1); });
    EXPECT_EQ(Expected(2041, Words({0x502, 0, 0, 1}), U32(1), Ptr(m_vertices), U32(4), F32(0)), Written());
}

// Short indices and a tight vec3: 6 bytes of indices, and 96 of the attribute, up to the largest index.
TEST_F(Draws, IndicesTellTheExtent)
{
    GLushort const indices[] = {0, 7, 3};
    Point(0, 3, GL_FLOAT, 0, m_vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, indices);
    EXPECT_EQ(Expected(2042, Elements(3, 0x1403), Ptr(indices), U32(6), Raw(indices, 6), Ptr(indices), U32(0),
                       Ptr(m_vertices), U32(96), Raw(m_vertices, 96)),
              Written());
}

// Indices of one byte and of four.
TEST_F(Draws, IndicesHaveThreeWidths)
{
    uint8_t const vertices[] = {1, 2, 3, 4};
    Point(0, 1, GL_UNSIGNED_BYTE, 0, vertices);
    GLubyte const bytes[] = {1, 2};
    Es2::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, bytes);
    EXPECT_EQ(Expected(2042, Elements(2, 0x1401), Ptr(bytes), U32(2), Bytes{1, 2}, Ptr(bytes), U32(0),
                       Ptr(vertices), U32(3), Bytes{1, 2, 3}),
              Written());
    GLuint const words[] = {3, 0};
    Es2::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_INT, words);
    EXPECT_EQ(Expected(2042, Elements(2, 0x1405), Ptr(words), U32(8), Words({3, 0}), Ptr(words), U32(0),
                       Ptr(vertices), U32(4), Bytes{1, 2, 3, 4}),
              Written());
}

// What is no index type is not looked through: the extent is one element.
TEST_F(Draws, AnUnknownIndexTypeMeansOneElement)
{
    uint8_t const vertices[] = {1, 2, 3, 4};
    GLshort const indices[] = {3, 3};
    Point(0, 1, GL_UNSIGNED_BYTE, 0, vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 2, GL_SHORT, indices);
    EXPECT_EQ(Expected(2042, Elements(2, 0x1402), Ptr(indices), U32(4), Raw(indices, 4), Ptr(indices), U32(0),
                       Ptr(vertices), U32(1), U8(1)),
              Written());
}

// On purpose: a draw of no elements records one element of each array; null indices have no bytes.
TEST_F(Draws, NoElementsMeanOneElement)
{
    Point(0, 3, GL_FLOAT, 0, m_vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 0, GL_UNSIGNED_SHORT, m_vertices);
    EXPECT_EQ(Expected(2042, Elements(0, 0x1403), Ptr(m_vertices), U32(0), Ptr(m_vertices), U32(0),
                       Ptr(m_vertices), U32(12), Raw(m_vertices, 12)),
              Written());
    Es2::_glDrawElements(GL_TRIANGLES, 5, GL_UNSIGNED_SHORT, nullptr);
    EXPECT_EQ(Expected(2042, Elements(5, 0x1403), Words({0, 0, 0}), U32(0), Ptr(m_vertices), U32(12),
                       Raw(m_vertices, 12)),
              Written());
}

// A strided array is gathered up to the largest index.
TEST_F(Draws, IndexedArraysAreGathered)
{
    GLubyte const indices[] = {2, 1};
    Point(5, 1, GL_FLOAT, 8, m_vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(Joined(U32(16 + 14 + 12 + 12), U16(2042), Elements(2, 0x1401), Ptr(indices), U32(2),
                     Bytes{2, 1}, Ptr(indices), U32(5), U32(12), F32(0), F32(0.5f), F32(1)),
              WrittenWithout(6 + 16 + 14 + 4));
}

// Indices in a buffer: nothing of them is recorded but the offset. On purpose: the buffer is looked through
// from its start, whatever the offset.
TEST_F(Draws, IndicesInABufferAreScannedFromItsStart)
{
    uint8_t const vertices[] = {1, 2, 3, 4, 5, 6};
    BindElements({2, 0, 5, 1});
    Point(0, 1, GL_UNSIGNED_BYTE, 0, vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, reinterpret_cast<void*>(1024));
    EXPECT_EQ(Expected(2042, Elements(2, 0x1401), Words({0, 0, 1024}), U32(0), Ptr(vertices), U32(3),
                       Bytes{1, 2, 3}),
              Written());
}

// The buffer is not read past its end, however many indices the draw takes.
TEST_F(Draws, ABufferIsScannedToItsEndAtMost)
{
    uint8_t const vertices[] = {1, 2, 3, 4, 5, 6};
    BindElements({2, 0, 5});
    Point(0, 1, GL_UNSIGNED_BYTE, 0, vertices);
    Es2::_glDrawElements(GL_TRIANGLES, 1000, GL_UNSIGNED_SHORT, nullptr);
    EXPECT_EQ(Expected(2042, Elements(1000, 0x1403), Words({0, 0, 0}), U32(0), Ptr(vertices), U32(3),
                       Bytes{1, 2, 3}),
              Written());
}

// Without a copy of the buffer the record ends behind the offset, which is logged.
TEST_F(Draws, WithoutACopyOfTheBufferTheRecordEnds)
{
    HostAnswers({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}});
    Point(0, 1, GL_FLOAT, 0, m_vertices);
    auto const draw = [] {
        Es2::_glDrawElements(GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, reinterpret_cast<void*>(8));
    };
    EXPECT_EQ("NEBTRACE(M) Failed to get element buffer with ID 77\n\n", Printed(draw));
    EXPECT_EQ(Expected(2042, Elements(2, 0x1401), Words({0, 0, 8})), Written());
    BindElements({});
    EXPECT_EQ("NEBTRACE(M) Failed to get element buffer with ID 77\n\n", Printed(draw));
    EXPECT_EQ(Expected(2042, Elements(2, 0x1401), Words({0, 0, 8})), Written());
}

// An attribute without pointer is logged by the indexed draw, and left out.
TEST_F(Draws, AnAttributeWithoutPointerIsLogged)
{
    GLubyte const indices[] = {0};
    Point(0, 1, GL_FLOAT, 0, nullptr);
    Point(1, 1, GL_FLOAT, 0, m_vertices);
    EXPECT_EQ("NEBTRACE(M) Es2Trace::_glDrawElements error trying to save VertexAttrib: No data pointer\n",
              Printed([&] { Es2::_glDrawElements(GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, indices); }));
    EXPECT_EQ(Expected(2042, Elements(1, 0x1401), Ptr(indices), U32(1), U8(0), Ptr(indices), U32(1),
                       Ptr(m_vertices), U32(4), F32(0)),
              Written());
}

// Behind the host's draw and the error come the questions about what it used, then the number of attributes;
// with the record open, the element buffer's binding, then what the host says of each array.
TEST_F(Draws, TheOrderOfItsQuestions)
{
    GLubyte const indices[] = {0};
    Point(3, 1, GL_FLOAT, 0, m_vertices);
    Fake().Forget();
    Es2::_glDrawElements(GL_POINTS, 1, GL_UNSIGNED_BYTE, indices);
    std::vector<std::string> const names = Fake().Names();
    ASSERT_LT(4u, names.size());
    EXPECT_EQ("glDrawElements", names[0]);
    EXPECT_EQ("glGetError", names[1]);
    auto const swallowed = std::find(names.begin() + 2, names.end(), "glGetError");
    EXPECT_EQ((std::vector<std::string>{"glGetError", "glGetIntegerv", "glGetIntegerv", "glGetVertexAttribiv",
                                        "glGetVertexAttribiv", "glGetVertexAttribPointerv"}),
              std::vector<std::string>(swallowed, names.end()));
    std::vector<Call> const asked = Fake().Calls("glGetIntegerv");
    EXPECT_EQ(0x8869u, asked[asked.size() - 2].Argument<GLenum>(0));
    EXPECT_EQ(0x8895u, asked[asked.size() - 1].Argument<GLenum>(0));
}

// The host says how many attributes there are; what it says is not believed without bounds.
TEST_F(Draws, TheNumberOfAttributesIsBounded)
{
    for (GLint number : {-1, 0, 0x7FFFFFFF})
    {
        HostAnswers({{GL_MAX_VERTEX_ATTRIBS, number}});
        Point(1, 1, GL_FLOAT, 12, m_vertices);
        Es2::_glDrawArrays(GL_POINTS, 0, 1);
        EXPECT_EQ(Joined(U32(32), U16(2041), Words({0, 0, 0, 1, 1, 4}), F32(0)), WrittenWithout(26));
    }
}

// A shadow that has lost the application's array object (none is followed in the recorded frames) must not
// read what is no pointer, or no longer one: an array that the host has off, in a buffer or elsewhere yields
// no entry.
TEST_F(Draws, ArraysThatTheHostDoesNotReadAreNotRead)
{
    GLfloat* const freed = nullptr;
    Point(1, 1, GL_FLOAT, 0, reinterpret_cast<void*>(16));
    auto const without = [this] {
        Es2::_glDrawArrays(GL_POINTS, 0, 1);
        EXPECT_EQ(Expected(2041, Words({0, 0, 0, 1})), Written());
    };
    Fake().On("glGetVertexAttribiv", [](Call const& call) {
        if (call.Argument<GLenum>(1) == GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING)
            *call.Pointer<GLint>(2) = 5;
    });
    without();
    Fake().On("glGetVertexAttribiv", [](Call const& call) {
        if (call.Argument<GLenum>(1) == GL_VERTEX_ATTRIB_ARRAY_ENABLED)
            *call.Pointer<GLint>(2) = 0;
    });
    without();
    Fake().On("glGetVertexAttribiv", [](Call const&) {});
    Fake().On("glGetVertexAttribPointerv",
              [freed](Call const& call) { *call.Pointer<void const*>(2) = freed; });
    without();
}

// A largest index that makes the array larger than any memory is no index: there is no entry.
TEST_F(Draws, AnImpossibleExtentYieldsNoEntry)
{
    GLuint const indices[] = {0xFFFFFFFF};
    Point(1, 4, GL_FLOAT, 0, m_vertices);
    Es2::_glDrawElements(GL_POINTS, 1, GL_UNSIGNED_INT, indices);
    EXPECT_EQ(
        Expected(2042, Words({0, 0, 1, 0x1405}), Ptr(indices), U32(4), Words({0xFFFFFFFF}), Ptr(indices)),
        Written());
}
