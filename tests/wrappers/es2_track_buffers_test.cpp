// What the shadow keeps of GLES2 buffers, and the copies that draws read their indices from.
#include "state/buffer_object_list.h"
#include "tests/wrappers/shadow.h"
#include "wrappers/es2/track.h"
#include <climits>

class TrackBuffers : public Shadow
{
protected:
    TrackBuffers() { HostAnswers({{GL_ARRAY_BUFFER_BINDING, 5}, {GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}}); }
    ~TrackBuffers() override { Es2::BufferList.RemoveObject(77); }

    static BufferDefinition* Find(GLuint name) { return State().m_sBufferDatas.Find(name); }
    static Bytes Kept(GLuint name)
    {
        BufferDefinition const* const buffer = Find(name);
        return buffer && buffer->bufferData
                   ? Raw(buffer->bufferData, static_cast<size_t>(buffer->bufferDataSize))
                   : Bytes();
    }
    // The copy for draws.
    static Bytes Indices()
    {
        CBufferObjectList::SBufferObject const* const object = Es2::BufferList.GetBufferObject(77);
        return object && object->data ? Raw(object->data, object->size) : Bytes();
    }
    void Fill(GLsizeiptr size, GLenum target = GL_ARRAY_BUFFER)
    {
        Es2::_glBufferData(target, size, m_bytes, GL_DYNAMIC_DRAW);
    }

    uint8_t m_bytes[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
};

// A buffer's record holds a copy of its contents, under the bound name.
TEST_F(TrackBuffers, ContentsAreCopied)
{
    EXPECT_EQ(std::vector<GLenum>{0x8894}, AskedBy([this] { Fill(3); }));
    m_bytes[0] = 99;
    ASSERT_NE(nullptr, Find(5));
    EXPECT_EQ(5u, Find(5)->bufferName);
    EXPECT_EQ(0x8892u, Find(5)->bufferTarget);
    EXPECT_EQ(3, Find(5)->bufferDataSize);
    EXPECT_EQ(0x88E8u, Find(5)->bufferUsage);
    EXPECT_FALSE(Find(5)->isMappedOES);
    EXPECT_FALSE(Find(5)->externalData);
    EXPECT_TRUE(Find(5)->deepCopy);
    EXPECT_EQ((Bytes{1, 2, 3}), Kept(5));
}

// Any target but GL_ARRAY_BUFFER means the element buffer's binding.
TEST_F(TrackBuffers, OtherTargetsMeanTheElementBuffer)
{
    EXPECT_EQ(std::vector<GLenum>{0x8895}, AskedBy([this] { Fill(2, 0x88EB); }));
    EXPECT_EQ((Bytes{1, 2}), Kept(77));
    EXPECT_EQ(0x88EBu, Find(77)->bufferTarget);
    EXPECT_EQ(Bytes(), Indices());
}

// New contents replace the old; without any there are none, but the size stays.
TEST_F(TrackBuffers, NewContentsReplaceTheOld)
{
    Fill(8);
    Find(5)->isMappedOES = true;
    Fill(2);
    EXPECT_EQ((Bytes{1, 2}), Kept(5));
    EXPECT_FALSE(Find(5)->isMappedOES);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 300, nullptr, GL_STATIC_DRAW);
    EXPECT_EQ(nullptr, Find(5)->bufferData);
    EXPECT_EQ(300, Find(5)->bufferDataSize);
    EXPECT_FALSE(Find(5)->externalData);
    Fill(2);
    Fill(0);
    EXPECT_EQ(nullptr, Find(5)->bufferData);
}

// Contents pass the data gate, new ones and parts.
TEST_F(TrackBuffers, ContentsPassTheDataGate)
{
    ExpectDataGate([this] { Fill(4); }, [] { return Find(5) != nullptr; });
    ExpectDataGate([this] { Es2::_glBufferSubData(GL_ARRAY_BUFFER, 1, 1, m_bytes + 8); },
                   [] {
                       return Kept(5) == Bytes{1, 9, 3, 4};
                   });
}

// The copy for draws is made in the recorded frames as well: it needs the contents and no error, no more.
TEST_F(TrackBuffers, TheCopyForDrawsOutlivesTheShadow)
{
    RecordFromHere();
    auto const fill = [this] { Fill(4, GL_ELEMENT_ARRAY_BUFFER); };
    Refused(fill);
    WithoutErrors(fill);
    WithoutHost(fill);
    WithoutData(fill);
    EXPECT_EQ(Bytes(), Indices());
    EXPECT_EQ(std::vector<GLenum>{0x8895}, AskedBy(fill));
    EXPECT_EQ((Bytes{1, 2, 3, 4}), Indices());
    EXPECT_EQ(nullptr, Find(77));
    auto const update = [this] { Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 2, 2, m_bytes + 8); };
    Refused(update);
    WithoutErrors(update);
    WithoutHost(update);
    WithoutData(update);
    EXPECT_EQ((Bytes{1, 2, 3, 4}), Indices());
    update();
    EXPECT_EQ((Bytes{1, 2, 9, 10}), Indices());
}

// An update past the end of the copy for draws is lost from it, whole; so is one of no known buffer.
TEST_F(TrackBuffers, AnUpdatePastTheEndIsLostFromTheCopy)
{
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, 1, m_bytes);
    EXPECT_EQ(Bytes(), Indices());
    Fill(4, GL_ELEMENT_ARRAY_BUFFER);
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 3, 2, m_bytes + 8);
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, 2, nullptr);
    EXPECT_EQ((Bytes{1, 2, 3, 4}), Indices());
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 3, 1, m_bytes + 8);
    EXPECT_EQ((Bytes{1, 2, 3, 9}), Indices());
}

// A buffer that got its size alone begins as zeros with its first part.
TEST_F(TrackBuffers, ABufferWithoutContentsBeginsAsZeros)
{
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, nullptr, GL_STATIC_DRAW);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 1, 2, m_bytes);
    EXPECT_EQ((Bytes{0, 1, 2, 0}), Kept(5));
    Es2::_glBufferData(GL_ARRAY_BUFFER, 2, nullptr, GL_STATIC_DRAW);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 0, 2, nullptr);
    EXPECT_EQ((Bytes{0, 0}), Kept(5));
}

// A part that is larger than the record makes the record as large: the old contents are gone.
TEST_F(TrackBuffers, ALargerPartReplacesTheRecord)
{
    Fill(2);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 0, 3, m_bytes + 4);
    EXPECT_EQ((Bytes{5, 6, 7}), Kept(5));
    EXPECT_EQ(3, Find(5)->bufferDataSize);
}

// Bytes that would fall behind the record's end are left out.
TEST_F(TrackBuffers, NothingIsWrittenBehindTheRecord)
{
    Fill(4);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 3, 2, m_bytes + 8);
    EXPECT_EQ((Bytes{1, 2, 3, 9}), Kept(5));
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 9, 2, m_bytes);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, -1, 2, m_bytes);
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(int64_t{INT_MAX} + 1), 2, m_bytes);
    EXPECT_EQ((Bytes{1, 2, 3, 9}), Kept(5));
}

// Contents that belong to somebody else are copied before they change.
TEST_F(TrackBuffers, SharedContentsAreCopiedFirst)
{
    uint8_t shared[] = {21, 22, 23};
    BufferDefinition& buffer = State().m_sBufferDatas[5];
    buffer.bufferData = shared;
    buffer.bufferDataSize = 3;
    buffer.externalData = true;
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 1, 1, m_bytes);
    EXPECT_EQ((Bytes{21, 1, 23}), Kept(5));
    EXPECT_EQ(22, shared[1]);
    EXPECT_FALSE(buffer.externalData);
}

// What was written into a mapping goes into the record as a part at its start, and grows it.
TEST_F(TrackBuffers, MappedContentsAreAPartAtTheStart)
{
    Fill(4);
    Find(5)->isMappedOES = true;
    Es2::Track::UnmapBuffer(5, m_bytes + 8, 2);
    EXPECT_EQ((Bytes{9, 10, 3, 4}), Kept(5));
    Es2::Track::UnmapBuffer(5, m_bytes, 6);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6}), Kept(5));
    EXPECT_TRUE(Find(5)->isMappedOES);
}

// In the recorded frames of a file nothing of a mapping goes into the shadow.
TEST_F(TrackBuffers, MappedContentsPassTheGate)
{
    Fill(2);
    Fake().On("glGetBufferParameteriv", [](Call const& call) { *call.Pointer<GLint>(2) = 2; });
    Fake().On("glGetBufferPointervOES", [this](Call const& call) { *call.Pointer<void*>(2) = m_bytes + 8; });
    RecordFromHere();
    Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); });
    EXPECT_EQ((Bytes{1, 2}), Kept(5));
}

// Binding leaves the buffers alone: it is noted in the current array object.
TEST_F(TrackBuffers, BindingIsNotedInTheArrayObject)
{
    State().mBoundVAO = 3;
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 8);
    Es2::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 9);
    Es2::_glBindBuffer(0x88EB, 10);
    VAODefinition const* const array = State().mVertexArrayObjects.Find(3);
    ASSERT_NE(nullptr, array);
    EXPECT_EQ(8u, array->boundarraybuffer);
    EXPECT_EQ(9u, array->boundelementbuffer);
    EXPECT_EQ(1, State().mVertexArrayObjects.Count());
    EXPECT_EQ(0, State().m_sBufferDatas.Count());
}

// On purpose: bindings are followed in the recorded frames as well.
TEST_F(TrackBuffers, BindingPassesTheSuccessGate)
{
    ExpectSuccessGate([] { Es2::_glBindBuffer(GL_ARRAY_BUFFER, 8); },
                      [] { return State().mVertexArrayObjects.Count() > 0; });
}

// Deleted and mapped buffers keep their records.
TEST_F(TrackBuffers, DeletingAndMappingAreNotFollowed)
{
    Fill(2);
    GLuint const name = 5;
    Fake().Result("glMapBufferOES", static_cast<void*>(m_bytes));
    Es2::_glMapBufferOES(GL_ARRAY_BUFFER, 0x88B9);
    Es2::_glDeleteBuffers(1, &name);
    EXPECT_EQ((Bytes{1, 2}), Kept(5));
    EXPECT_FALSE(Find(5)->isMappedOES);
}
