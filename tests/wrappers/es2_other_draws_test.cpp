// GLES2 draws that keep nothing of the arrays, and the calls that set these up.
#include "tests/wrappers/recorder.h"

class OtherDraws : public Recorder
{
protected:
    GLfloat m_vertices[4] = {1, 2, 3, 4};
};

// The other draws read nothing of the arrays, and little of what their arguments point at.
TEST_F(OtherDraws, OtherDrawsAreTheirArguments)
{
    GLint const firsts[] = {5, 6, 7};
    GLsizei const counts[] = {2, 9};
    void const* const indices[] = {m_vertices};
    GLenum const buffers[] = {1, 2};
    GLint const numbers[] = {3};
    Record();
    Es2::_glVertexAttribPointer(1, 1, GL_FLOAT, GL_FALSE, 0, m_vertices);
    Es2::_glEnableVertexAttribArray(1);
    Written();
    Es2::_glDrawArraysInstancedANGLE(GL_TRIANGLES, 1, 2, 3);
    EXPECT_EQ(Expected(4188, U32(0), U8(2), Words({4, 1, 2, 3})), Written());
    Es2::_glDrawElementsInstancedANGLE(GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, m_vertices, 3);
    EXPECT_EQ(Expected(4189, U32(0), U8(2), Words({4, 1, 0x1401}), Ptr(m_vertices), U32(3)), Written());
    Es2::_glMultiDrawElementsEXT(GL_TRIANGLES, counts, GL_UNSIGNED_BYTE, indices, 2);
    EXPECT_EQ(Expected(4002, U32(0), U8(2), U32(4), Ptr(counts), U32(0x1401), Ptr(indices), U32(2)),
              Written());
    // On purpose: the first word of the counts is the number of firsts, and one count is recorded.
    Es2::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, counts, 2);
    EXPECT_EQ(Expected(4003, U32(0), U8(2), U32(4), Ptr(firsts), Words({2, 5, 6}), Ptr(counts), Words({1, 2}),
                       U32(2)),
              Written());
    Es2::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, nullptr, 2);
    EXPECT_EQ(Expected(4003, U32(0), U8(2), U32(4), Ptr(firsts), U32(0), U32(0), U32(0), U32(2)), Written());
    Es2::_glDrawBuffersNV(2, buffers);
    EXPECT_EQ(Expected(4236, U32(0), U8(2), U32(2), Ptr(buffers), Words({2, 1, 2})), Written());
    Es2::_glDrawBuffersIndexedEXT(2, buffers, numbers);
    EXPECT_EQ(Expected(4238, U32(0), U8(2), U32(2), Ptr(buffers), Ptr(numbers)), Written());
}

// Pointers and switches are plain records; the pointer stands bare, with contents or without.
TEST_F(OtherDraws, PointersAreRecordedBare)
{
    Record();
    Bytes const record = Expected(2141, U32(0), Words({3, 2, 0x1402}), U8(1), U32(24), Ptr(m_vertices));
    Es2::_glVertexAttribPointer(3, 2, GL_SHORT, GL_TRUE, 24, m_vertices);
    EXPECT_EQ(record, Written());
    RecordWithoutData();
    Es2::_glVertexAttribPointer(3, 2, GL_SHORT, GL_TRUE, 24, m_vertices);
    EXPECT_EQ(record, Written());
    Es2::_glEnableVertexAttribArray(3);
    Es2::_glDisableVertexAttribArray(3);
    EXPECT_EQ(Joined(Expected(2044, U32(0), U32(3)), Expected(2040, U32(0), U32(3))), Written());
}
