// Mapped GLES2 buffers: what lies behind a mapping is recorded when it ends.
#include "tests/wrappers/shadow.h"

class MappedBuffers : public Shadow
{
protected:
    MappedBuffers()
    {
        RecordFromHere();
        HostAnswers({{GL_ARRAY_BUFFER_BINDING, 5}, {GL_ELEMENT_ARRAY_BUFFER_BINDING, 6}});
        Fake().On("glGetBufferPointervOES", [this](Call const& call) { *call.Pointer<void*>(2) = m_mapped; });
        Fake().Result("glMapBufferRangeEXT", static_cast<void*>(m_mapped));
        Fake().Result("glMapBufferOES", static_cast<void*>(m_mapped));
    }

    // The buffer is mapped, and has this size.
    static void SizeIs(GLint size)
    {
        Fake().On("glGetBufferParameteriv", [size](Call const& call) {
            *call.Pointer<GLint>(2) = call.Argument<GLenum>(1) == 0x88BC ? 1 : size;
        });
    }
    // The bytes in the record of an unmap: behind error word, API byte, result, target, pointer and size.
    Bytes Unmapped(GLenum target = GL_ARRAY_BUFFER)
    {
        Written();
        Printed([=] { Es2::_glUnmapBufferOES(target); });
        Bytes const record = Written();
        return record.size() < 24 ? record : Bytes(record.begin() + 24, record.end());
    }

    uint8_t m_mapped[8] = {1, 2, 3, 4, 5, 6, 7, 8};
};

// All questions come ahead of the host's unmap, in this order; the one for the error comes behind.
TEST_F(MappedBuffers, AreCopiedAheadOfTheUnmap)
{
    SizeIs(8);
    Fake().Forget();
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 8}), Unmapped());
    EXPECT_EQ((std::vector<std::string>{"glGetBufferParameteriv", "glGetBufferPointervOES",
                                        "glGetBufferParameteriv", "glGetIntegerv", "glUnmapBufferOES",
                                        "glGetError"}),
              Fake().Names());
    EXPECT_EQ(0x88BCu, Fake().Calls()[0].Argument<GLenum>(1));
    EXPECT_EQ(0x88BDu, Fake().Calls()[1].Argument<GLenum>(1));
    EXPECT_EQ(0x8764u, Fake().Calls()[2].Argument<GLenum>(1));
    EXPECT_EQ(0x8894u, Fake().Calls()[3].Argument<GLenum>(0));
}

// The bound name is asked for two targets only.
TEST_F(MappedBuffers, TheNameIsKnownForTwoTargets)
{
    SizeIs(1);
    EXPECT_EQ(std::vector<GLenum>{0x8895}, AskedBy([this] { Unmapped(GL_ELEMENT_ARRAY_BUFFER); }));
    EXPECT_EQ(std::vector<GLenum>{}, AskedBy([this] { Unmapped(0x88EB); }));
}

// An unmapped buffer is asked for nothing more, and has no copy.
TEST_F(MappedBuffers, AnUnmappedBufferHasNoCopy)
{
    Fake().Forget();
    EXPECT_EQ("", Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); }));
    EXPECT_EQ(Expected(4005, U32(0), U8(2), U8(0), U32(0x8892), U32(0), U32(0)), Written());
    EXPECT_EQ((std::vector<std::string>{"glGetBufferParameteriv", "glUnmapBufferOES", "glGetError"}),
              Fake().Names());
}

// A mapped buffer without size is logged and has no copy; no more has one whose mapping the host does not
// tell.
TEST_F(MappedBuffers, AnEmptyBufferHasNoCopy)
{
    Bytes const empty = Expected(4005, U32(0), U8(2), U8(0), U32(0x8892), U32(0), U32(0));
    SizeIs(0);
    EXPECT_EQ("NEBTRACE(M) Size UnMapBuffer: 0\n", Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); }));
    EXPECT_EQ(empty, Written());
    SizeIs(8);
    Fake().On("glGetBufferPointervOES", [](Call const&) {});
    Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); });
    EXPECT_EQ(empty, Written());
}

// The record has one form: the copy stands in it without data being asked for.
TEST_F(MappedBuffers, AreRecordedWithoutDataToo)
{
    STraceConfig::m_bRecordData = false;
    SizeIs(2);
    EXPECT_EQ((Bytes{1, 2}), Unmapped());
}

// A failed unmap has ended nothing that the recorder knows of: the copy is recorded.
TEST_F(MappedBuffers, AFailedUnmapIsRecordedWithItsCopy)
{
    SizeIs(2);
    HostFails(GL_INVALID_OPERATION);
    Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); });
    Bytes record = Written();
    ASSERT_EQ(6u + 4 + 1 + 1 + 4 + 4 + 4 + 2, record.size());
    record.erase(record.begin() + 16, record.begin() + 20);
    EXPECT_EQ(Joined(U32(20), U16(4005), U32(0x502), U8(2), U8(0), U32(0x8892), U32(2), Bytes{1, 2}), record);
}

// The host's result, of one byte, is the application's.
TEST_F(MappedBuffers, TheResultIsOneByte)
{
    Fake().Result("glUnmapBufferOES", GLboolean(1));
    EXPECT_EQ(1, Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER));
    EXPECT_EQ(Expected(4005, U32(0), U8(2), U8(1), U32(0x8892), U32(0), U32(0)), Written());
}

// Without the host there is nothing to ask, and the default result.
TEST_F(MappedBuffers, WithoutTheHostThereIsNoCopy)
{
    SizeIs(2);
    Fake().Forget();
    WithoutHost([] { EXPECT_EQ(0, Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER)); });
    EXPECT_EQ(Expected(4005, U32(0), U8(2), U8(0), U32(0x8892), U32(0), U32(0)), Written());
    HostLacks("glUnmapBufferOES");
    EXPECT_EQ(0, Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER));
    EXPECT_EQ(Expected(4005, U32(0), U8(2), U8(0), U32(0x8892), U32(0), U32(0)), Written());
    EXPECT_TRUE(Fake().Calls().empty());
}

// An application that never asked for the entry of the mapping's pointer is served all the same.
TEST_F(MappedBuffers, ThePointersEntryNeedNotBeAskedFor)
{
    HostLacks("glGetBufferPointervOES");
    SizeIs(3);
    EXPECT_EQ((Bytes{1, 2, 3}), Unmapped());
}

// Behind the mapping of a range lies no more than the range: the rest of the buffer's size is zeros.
TEST_F(MappedBuffers, ARangeEndsAheadOfTheBuffer)
{
    SizeIs(6);
    Es2::_glMapBufferRangeEXT(GL_ARRAY_BUFFER, 2, 3, 2);
    EXPECT_EQ((Bytes{1, 2, 3, 0, 0, 0}), Unmapped());
    // The range ended with its mapping.
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6}), Unmapped());
}

// A range that the host did not map is not remembered.
TEST_F(MappedBuffers, ARefusedRangeIsForgotten)
{
    SizeIs(6);
    Fake().Result("glMapBufferRangeEXT", static_cast<void*>(nullptr));
    Es2::_glMapBufferRangeEXT(GL_ARRAY_BUFFER, 2, 3, 2);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6}), Unmapped());
}

// A buffer that was deleted while a range of it was mapped leaves its name to another one, which is mapped
// whole.
TEST_F(MappedBuffers, AMapOfTheWholeForgetsAnOlderRange)
{
    SizeIs(6);
    Es2::_glMapBufferRangeEXT(GL_ARRAY_BUFFER, 2, 3, 2);
    Es2::_glMapBufferOES(GL_ARRAY_BUFFER, 0x88B9);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6}), Unmapped());
}
