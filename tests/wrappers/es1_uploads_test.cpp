// GLES1 wrappers that carry bulk data: images, buffers, and pixels read back.
#include "state/buffer_object_list.h"
#include "tests/wrappers/shadow.h"

class Es1Uploads : public Shadow
{
protected:
    Es1Uploads() { RecordFromHere(); }
    ~Es1Uploads() override
    {
        for (unsigned int name : {77u, 78u, 79u})
        {
            Es1::BufferList.RemoveObject(name);
            Es2::BufferList.RemoveObject(name);
        }
    }

    static void AlignmentsAre(int pack, int unpack)
    {
        HostAnswers({{GL_PACK_ALIGNMENT, pack}, {GL_UNPACK_ALIGNMENT, unpack}});
    }
    // An image of 3 x 2 bytes of red, green and blue.
    void Upload(void const* pixels)
    {
        Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels);
    }
    // Its record up to the pixels.
    static Bytes Head(uint32_t error = 0)
    {
        return Words({error, 0x0DE1, 0, 0x1907, 3, 2, 0, 0x1907, 0x1401});
    }
    Bytes Pixels(size_t size) const { return Bytes(m_pixels, m_pixels + size); }
    // What the driver reads, then zeros: the record's padding need not be the application's memory.
    Bytes Padded(size_t read, size_t size) const { return Joined(Pixels(read), Bytes(size - read)); }
    static void Copy(GLuint name)
    {
        Es1::BufferList.AddObject(name, 1, "x");
        Es2::BufferList.AddObject(name, 1, "x");
    }

    uint8_t m_pixels[64] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                            13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
};

// An upload is measured with the unpack alignment, asked when its record is written. A row of 9 bytes is
// rounded up to 12, the image is 24 bytes; the last row ends with its last pixel.
TEST_F(Es1Uploads, TexImageIsMeasuredWithTheUnpackAlignment)
{
    AlignmentsAre(1, 4);
    Upload(m_pixels);
    EXPECT_EQ(Expected(3133, Head(), Ptr(m_pixels), U32(24), Padded(21, 24), U32(4)), Written());
}

// While the recorded frames are ahead and contents are not wanted, nobody needs the alignment.
TEST_F(Es1Uploads, TheAlignmentIsAskedForARecord)
{
    AlignmentsAre(1, 4);
    STraceConfig::m_recordEnable = false;
    EXPECT_EQ(std::vector<GLenum>{}, AskedBy([this] { WithoutData([this] { Upload(m_pixels); }); }));
}

// No alignment means no rounding; null pixels have no bytes and keep the alignment at the end.
TEST_F(Es1Uploads, AlignmentZeroAndNullPixels)
{
    AlignmentsAre(0, 0);
    Upload(m_pixels);
    EXPECT_EQ(Expected(3133, Head(), Ptr(m_pixels), U32(18), Pixels(18), U32(0)), Written());
    AlignmentsAre(1, 4);
    Upload(nullptr);
    EXPECT_EQ(Expected(3133, Head(), U32(0), U32(0), U32(4)), Written());
}

// The short form keeps the alignment behind the bare pointer.
TEST_F(Es1Uploads, WithoutDataTheAlignmentStays)
{
    AlignmentsAre(1, 2);
    WithoutData([this] {
        Upload(m_pixels);
        Es1::_glReadPixels(1, 2, 3, 2, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    });
    EXPECT_EQ(Joined(Expected(3133, Head(), Ptr(m_pixels), U32(2)),
                     Expected(3114, Words({0, 1, 2, 3, 2, 0x1907, 0x1401}), Ptr(m_pixels), U32(2))),
              Written());
}

// A failed upload records its image all the same.
TEST_F(Es1Uploads, AFailedUploadRecordsItsImage)
{
    AlignmentsAre(1, 1);
    Refused([this] { Upload(m_pixels); });
    EXPECT_EQ(Expected(3133, Head(0x502), Ptr(m_pixels), U32(18), Pixels(18), U32(1)), Written());
}

// A snapshot's image is a record's own bytes, and has no padding that is not.
TEST_F(Es1Uploads, ASnapshotsImageIsWhole)
{
    AlignmentsAre(1, 4);
    WithoutHost([this] { Upload(m_pixels); });
    EXPECT_EQ(Expected(3133, Head(), Ptr(m_pixels), U32(24), Pixels(24), U32(4)), Written());
}

// Sub-images, and pixels read back, which are a pack operation, are measured with the unpack alignment.
TEST_F(Es1Uploads, OthersAreMeasuredWithTheUnpackAlignment)
{
    AlignmentsAre(1, 4);
    Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(3140, Words({0, 0x0DE1, 0, 1, 2, 3, 1, 0x1907, 0x1401}), Ptr(m_pixels), U32(12),
                       Padded(9, 12), U32(4)),
              Written());
    Refused([this] { Es1::_glReadPixels(1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels); });
    EXPECT_EQ(Expected(3114, Words({0x502, 1, 2, 3, 1, 0x1907, 0x1401}), Ptr(m_pixels), U32(12),
                       Padded(9, 12), U32(4)),
              Written());
    // On purpose: bufSize neither stands in the record nor bounds it.
    Es1::_glReadnPixelsEXT(1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, 5, m_pixels);
    EXPECT_EQ(
        Expected(4168, Words({0, 1, 2, 3, 1, 0x1907, 0x1401}), Ptr(m_pixels), U32(12), Padded(9, 12), U32(4)),
        Written());
}

// Without contents the odd record is short as after an error; a host that lacks it has made no error.
TEST_F(Es1Uploads, ReadnPixelsIsShortWithoutData)
{
    AlignmentsAre(1, 1);
    auto const read = [this] { Es1::_glReadnPixelsEXT(1, 2, 2, 1, GL_ALPHA, GL_UNSIGNED_BYTE, 5, m_pixels); };
    WithoutData(read);
    EXPECT_EQ(Expected(4168, Words({0, 1, 2, 2, 1, 0x1906, 0x1401}), Ptr(m_pixels), U32(1)), Written());
    HostLacks("glReadnPixelsEXT");
    read();
    EXPECT_EQ(
        Expected(4168, Words({0, 1, 2, 2, 1, 0x1906, 0x1401}), Ptr(m_pixels), U32(2), Pixels(2), U32(1)),
        Written());
}

// Of the images only the driver's own view of a texture is gated.
TEST_F(Es1Uploads, TheDriversTextureIsGated)
{
    AlignmentsAre(1, 4);
    auto const get = [this] {
        Es1::_glExtGetTexSubImageQCOM(0x806F, 0, 1, 2, 3, 3, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
    };
    Bytes const arguments = Words({0x806F, 0, 1, 2, 3, 3, 1, 1, 0x1906, 0x1401});
    get();
    EXPECT_EQ(Expected(4118, U32(0), U8(1), arguments, Ptr(m_pixels), U32(4), Pixels(4), U32(4)), Written());
    Refused(get);
    EXPECT_EQ(Expected(4118, U32(0x502), U8(1), arguments, Ptr(m_pixels), U32(0), U32(4)), Written());
}

// Compressed images have the size of the call, unless there are none.
TEST_F(Es1Uploads, CompressedImagesHaveTheSizeOfTheCall)
{
    Es1::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, 8, m_pixels);
    EXPECT_EQ(Expected(3023, Words({0, 0x0DE1, 0, 0x8D64, 4, 4, 0, 8}), Ptr(m_pixels), U32(8), Pixels(8)),
              Written());
    Es1::_glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 4, 4, 0x8D64, 8, nullptr);
    EXPECT_EQ(Expected(3024, Words({0, 0x0DE1, 0, 1, 2, 4, 4, 0x8D64, 8, 0, 0})), Written());
}

// A buffer's contents stand between its size and its usage; without contents the size stays.
TEST_F(Es1Uploads, BuffersHaveTheSizeOfTheCall)
{
    Es1::_glBufferData(GL_ARRAY_BUFFER, 3, m_pixels, GL_STATIC_DRAW);
    EXPECT_EQ(Expected(3007, Words({0, 0x8892, 3}), Ptr(m_pixels), U32(3), Pixels(3), U32(0x88E4)),
              Written());
    Es1::_glBufferData(GL_ARRAY_BUFFER, 300, nullptr, GL_STATIC_DRAW);
    EXPECT_EQ(Expected(3007, Words({0, 0x8892, 300, 0, 0, 0x88E4})), Written());
    Es1::_glBufferSubData(GL_ARRAY_BUFFER, 16, 2, m_pixels);
    EXPECT_EQ(Expected(3008, Words({0, 0x8892, 16, 2}), Ptr(m_pixels), U32(2), Pixels(2)), Written());
    WithoutData([this] { Es1::_glBufferSubData(GL_ARRAY_BUFFER, 16, 2, m_pixels); });
    EXPECT_EQ(Expected(3008, Words({0, 0x8892, 16, 2}), Ptr(m_pixels)), Written());
}

// The index scan of draws reads a copy of each element buffer, kept under the bound name, apart from GLES2's.
TEST_F(Es1Uploads, ElementBuffersAreCopied)
{
    HostAnswers({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}, {GL_ARRAY_BUFFER_BINDING, 78}});
    Es1::_glBufferData(GL_ARRAY_BUFFER, 4, m_pixels, GL_STATIC_DRAW);
    EXPECT_EQ(nullptr, Es1::BufferList.GetBufferObject(78));
    Es1::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, 4, m_pixels, GL_STATIC_DRAW);
    CBufferObjectList::SBufferObject const* const copy = Es1::BufferList.GetBufferObject(77);
    ASSERT_NE(nullptr, copy);
    EXPECT_EQ(nullptr, Es2::BufferList.GetBufferObject(77));
    EXPECT_EQ(Pixels(4), Raw(copy->data, copy->size));
    Es1::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 1, 2, m_pixels + 8);
    EXPECT_EQ((Bytes{1, 9, 10, 4}), Raw(copy->data, copy->size));
    // Past the end nothing is taken over.
    Es1::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 3, 2, m_pixels);
    EXPECT_EQ((Bytes{1, 9, 10, 4}), Raw(copy->data, copy->size));
}

// A copy is kept in the recorded frames too, but only of contents that are wanted and that the host took.
TEST_F(Es1Uploads, CopiesOfElementBuffersAreGated)
{
    HostAnswers({{GL_ELEMENT_ARRAY_BUFFER_BINDING, 77}});
    auto const define = [this] { Es1::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, 4, m_pixels, GL_STATIC_DRAW); };
    WithoutData(define);
    ExpectSuccessGate(define, [] { return Es1::BufferList.GetBufferObject(77) != nullptr; });
}

// Deleted buffers lose their copies, which GLES2's keep.
TEST_F(Es1Uploads, DeletedBuffersLoseTheirCopies)
{
    GLuint const names[] = {77, 79};
    for (GLuint const name : {77u, 78u, 79u})
        Copy(name);
    auto const isGone = [](GLuint name) { return Es1::BufferList.GetBufferObject(name) == nullptr; };
    ExpectSuccessGate([&] { Es1::_glDeleteBuffers(2, names); }, [&] { return isGone(77); });
    EXPECT_FALSE(isGone(78));
    EXPECT_TRUE(isGone(79));
    Es2::_glDeleteBuffers(2, names);
    EXPECT_NE(nullptr, Es2::BufferList.GetBufferObject(77));
    Written();
    // Nothing is there to remove; and no names are no failure.
    Es1::_glDeleteBuffers(2, nullptr);
    EXPECT_EQ(Expected(3028, Words({0, 2, 0, 0})), Written());
}

// The copy of a mapped buffer is taken ahead of the host's unmap, which ends the mapping. Nothing is logged.
TEST_F(Es1Uploads, UnmapCopiesAheadOfTheHost)
{
    Fake().On("glGetBufferParameteriv",
              [](Call const& call) { *call.Pointer<GLint>(2) = call.Argument<GLenum>(1) == 0x88BC ? 1 : 3; });
    Fake().On("glGetBufferPointervOES", [this](Call const& call) { *call.Pointer<void*>(2) = m_pixels; });
    Fake().On("glUnmapBufferOES", [this](Call const&) { std::memset(m_pixels, 0xEE, sizeof m_pixels); });
    Fake().Forget();
    EXPECT_EQ("", Printed([] { Es1::_glUnmapBufferOES(GL_ARRAY_BUFFER); }));
    std::vector<std::string> names = Fake().Names();
    ASSERT_LE(6u, names.size());
    names.resize(6);
    EXPECT_EQ((std::vector<std::string>{"glGetBufferParameteriv", "glGetBufferPointervOES",
                                        "glGetBufferParameteriv", "glGetIntegerv", "glUnmapBufferOES",
                                        "glGetError"}),
              names);
    Bytes const record = Written();
    ASSERT_EQ(6u + 4 + 1 + 1 + 4 + 4 + 4 + 3, record.size());
    EXPECT_EQ((Bytes{1, 2, 3}), Bytes(record.end() - 3, record.end()));
}

// An unmapped buffer has no copy; the record has one form.
TEST_F(Es1Uploads, UnmapWithoutMappingIsEmpty)
{
    WithoutData([] { EXPECT_EQ(0, Es1::_glUnmapBufferOES(GL_ARRAY_BUFFER)); });
    EXPECT_EQ(Expected(4005, U32(0), U8(1), U8(0), Words({0x8892, 0, 0})), Written());
}
