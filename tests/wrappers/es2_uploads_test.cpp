// GLES2 wrappers that carry bulk data: images, buffers, shaders, uniforms.
#include "state/buffer_object_list.h"
#include "tests/wrappers/recorder.h"

class Es2Uploads : public Recorder
{
protected:
    // What the host answers for the two alignments and for the bindings that nobody has set.
    static void AlignmentsAre(int pack, int unpack)
    {
        Fake().On("glGetIntegerv", [=](Call const& call) {
            GLenum const name = call.Argument<GLenum>(0);
            *call.Pointer<GLint>(1) = name == GL_PACK_ALIGNMENT     ? pack
                                      : name == GL_UNPACK_ALIGNMENT ? unpack
                                                                    : 0;
        });
    }
    Bytes Pixels(size_t size) const { return Bytes(m_pixels, m_pixels + size); }
    // What the driver reads, then zeros: the record's padding need not be the application's memory.
    Bytes Padded(size_t read, size_t size) const { return Joined(Pixels(read), Bytes(size - read)); }

    uint8_t m_pixels[64] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
};

// On purpose: an upload is measured with the host's pack alignment, asked right behind the call. A row of 9
// bytes is rounded up to 12, the image is 24 bytes.
TEST_F(Es2Uploads, TexImageIsMeasuredWithThePackAlignment)
{
    AlignmentsAre(4, 1);
    Record();
    Fake().Forget();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 1);
    EXPECT_EQ(Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0), U32(0x1907),
                       U32(0x1401), Ptr(m_pixels), U32(24), Padded(18, 24), U32(4)),
              Written());
    EXPECT_EQ((std::vector<std::string>{"glTexImage2D", "glGetIntegerv", "glGetError", "glGetIntegerv"}),
              Fake().Names());
    std::vector<Call> const asked = Fake().Calls("glGetIntegerv");
    EXPECT_EQ(0x0D05u, asked[0].Argument<GLenum>(0));
    EXPECT_EQ(0x0CF5u, asked[1].Argument<GLenum>(0));  // how far the driver read
}

// While profiling it is not asked, and in a snapshot the saved one counts: both take the tenth argument.
TEST_F(Es2Uploads, TexImageMayKeepItsTrailingAlignment)
{
    AlignmentsAre(4, 1);
    Bytes const expected = Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0),
                                    U32(0x1907), U32(0x1401), Ptr(m_pixels), U32(18), Pixels(18), U32(1));
    Record();
    STraceConfig::m_bProfile = true;
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 1);
    EXPECT_EQ(expected, Written());
    STraceConfig::m_bProfile = false;
    RecordWithHostOff();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 1);
    EXPECT_EQ(expected, Written());
}

// An alignment of 0 means no rounding; null pixels have size 0 and keep the alignment at the end.
TEST_F(Es2Uploads, AlignmentZeroAndNullPixels)
{
    AlignmentsAre(0, 0);
    Record();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 4);
    EXPECT_EQ(Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0), U32(0x1907),
                       U32(0x1401), Ptr(m_pixels), U32(18), Pixels(18), U32(0)),
              Written());
    AlignmentsAre(4, 1);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr, 0);
    EXPECT_EQ(Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0), U32(0x1907),
                       U32(0x1401), U32(0), U32(0), U32(4)),
              Written());
}

// The short form keeps the alignment behind the bare pointer.
TEST_F(Es2Uploads, WithoutDataTheAlignmentStays)
{
    AlignmentsAre(4, 2);
    RecordWithoutData();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 0);
    EXPECT_EQ(Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0), U32(0x1907),
                       U32(0x1401), Ptr(m_pixels), U32(4)),
              Written());
    Es2::_glReadPixels(1, 2, 3, 2, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(2093, U32(0), U32(1), U32(2), U32(3), U32(2), U32(0x1907), U32(0x1401), Ptr(m_pixels),
                       U32(2)),
              Written());
}

// A failed upload records its image all the same.
TEST_F(Es2Uploads, AFailedUploadRecordsItsImage)
{
    AlignmentsAre(1, 1);
    Record();
    HostFails(GL_INVALID_VALUE);
    Printed([&] {
        Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 2, 2, 0, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels, 0);
    });
    EXPECT_EQ(Expected(2106, U32(0x501), U32(0x0DE1), U32(0), U32(0x1906), U32(2), U32(2), U32(0),
                       U32(0x1906), U32(0x1401), Ptr(m_pixels), U32(4), Pixels(4), U32(1)),
              Written());
}

// Sub-images and pixels read back are measured with the unpack alignment, the latter too.
TEST_F(Es2Uploads, OthersAreMeasuredWithTheUnpackAlignment)
{
    AlignmentsAre(1, 4);
    Record();
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(2111, U32(0), U32(0x0DE1), U32(0), U32(1), U32(2), U32(3), U32(1), U32(0x1907),
                       U32(0x1401), Ptr(m_pixels), U32(12), Padded(9, 12), U32(4)),
              Written());
    HostFails(GL_INVALID_OPERATION);
    Printed([&] { Es2::_glReadPixels(1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels); });
    EXPECT_EQ(Expected(2093, U32(0x502), U32(1), U32(2), U32(3), U32(1), U32(0x1907), U32(0x1401),
                       Ptr(m_pixels), U32(12), Padded(9, 12), U32(4)),
              Written());
    Es2::_glReadnPixelsEXT(1, 2, 3, 1, GL_RGB, GL_UNSIGNED_BYTE, 5, m_pixels);
    EXPECT_EQ(Expected(4168, U32(0), U8(2), U32(1), U32(2), U32(3), U32(1), U32(0x1907), U32(0x1401), U32(5),
                       Ptr(m_pixels), U32(12), Padded(9, 12), U32(4)),
              Written());
}

// Volumes: rows times height times depth.
TEST_F(Es2Uploads, VolumesAreMeasuredInDepth)
{
    AlignmentsAre(1, 4);
    Record();
    Es2::_glTexImage3DOES(0x806F, 0, GL_ALPHA, 3, 2, 2, 0, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(4128, U32(0), U8(2), U32(0x806F), U32(0), U32(0x1906), U32(3), U32(2), U32(2), U32(0),
                       U32(0x1906), U32(0x1401), Ptr(m_pixels), U32(16), Padded(15, 16), U32(4)),
              Written());
    Es2::_glTexSubImage3DOES(0x806F, 0, 1, 2, 3, 3, 2, 2, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(4129, U32(0), U8(2), U32(0x806F), U32(0), U32(1), U32(2), U32(3), U32(3), U32(2),
                       U32(2), U32(0x1906), U32(0x1401), Ptr(m_pixels), U32(16), Padded(15, 16), U32(4)),
              Written());
}

// Of these only the driver's own view of a texture is gated.
TEST_F(Es2Uploads, TheDriversTextureIsGated)
{
    AlignmentsAre(1, 4);
    Record();
    Es2::_glExtGetTexSubImageQCOM(0x806F, 0, 1, 2, 3, 3, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ(Expected(4118, U32(0), U8(2), U32(0x806F), U32(0), U32(1), U32(2), U32(3), U32(3), U32(1),
                       U32(1), U32(0x1906), U32(0x1401), Ptr(m_pixels), U32(4), Pixels(4), U32(4)),
              Written());
    HostFails(GL_INVALID_VALUE);
    Printed([&] {
        Es2::_glExtGetTexSubImageQCOM(0x806F, 0, 1, 2, 3, 3, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
    });
    EXPECT_EQ(Expected(4118, U32(0x501), U8(2), U32(0x806F), U32(0), U32(1), U32(2), U32(3), U32(3), U32(1),
                       U32(1), U32(0x1906), U32(0x1401), Ptr(m_pixels), U32(0), U32(4)),
              Written());
}

// Compressed images have the size of the call, unless there are none.
TEST_F(Es2Uploads, CompressedImagesHaveTheSizeOfTheCall)
{
    Record();
    Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, 8, m_pixels);
    EXPECT_EQ(Expected(2022, U32(0), U32(0x0DE1), U32(0), U32(0x8D64), U32(4), U32(4), U32(0), U32(8),
                       Ptr(m_pixels), U32(8), Pixels(8)),
              Written());
    Es2::_glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 4, 4, 0x8D64, 8, nullptr);
    EXPECT_EQ(Expected(2023, U32(0), U32(0x0DE1), U32(0), U32(1), U32(2), U32(4), U32(4), U32(0x8D64), U32(8),
                       U32(0), U32(0)),
              Written());
}

// A buffer's contents stand between its size and its usage; without data the size stays.
TEST_F(Es2Uploads, BuffersHaveTheSizeOfTheCall)
{
    Record();
    Es2::_glBufferData(GL_ARRAY_BUFFER, 3, m_pixels, GL_STATIC_DRAW);
    EXPECT_EQ(Expected(2013, U32(0), U32(0x8892), U32(3), Ptr(m_pixels), U32(3), Pixels(3), U32(0x88E4)),
              Written());
    Es2::_glBufferData(GL_ARRAY_BUFFER, 300, nullptr, GL_STATIC_DRAW);
    EXPECT_EQ(Expected(2013, U32(0), U32(0x8892), U32(300), U32(0), U32(0), U32(0x88E4)), Written());
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 16, 2, m_pixels);
    EXPECT_EQ(Expected(2014, U32(0), U32(0x8892), U32(16), U32(2), Ptr(m_pixels), U32(2), Pixels(2)),
              Written());
}

// The index scan of draws reads a copy of each element buffer, kept under the bound name.
TEST_F(Es2Uploads, ElementBuffersAreCopied)
{
    Fake().On("glGetIntegerv", [](Call const& call) {
        *call.Pointer<GLint>(1) = call.Argument<GLenum>(0) == GL_ELEMENT_ARRAY_BUFFER_BINDING ? 77 : 0;
    });
    Record();
    Es2::_glBufferData(GL_ELEMENT_ARRAY_BUFFER, 4, m_pixels, GL_STATIC_DRAW);
    CBufferObjectList::SBufferObject const* const copy = Es2::BufferList.GetBufferObject(77);
    ASSERT_NE(nullptr, copy);
    EXPECT_EQ(Pixels(4), Raw(copy->data, copy->size));
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 1, 2, m_pixels + 8);
    EXPECT_EQ((Bytes{1, 9, 10, 4}), Raw(copy->data, copy->size));
    // Past the end nothing is taken over.
    Es2::_glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 3, 2, m_pixels);
    EXPECT_EQ((Bytes{1, 9, 10, 4}), Raw(copy->data, copy->size));
    Es2::BufferList.RemoveObject(77);
}

// A mapped buffer's contents reach the record at unmap, copied ahead of the host call that ends the mapping.
TEST_F(Es2Uploads, UnmapRecordsWhatWasMapped)
{
    Record();
    Fake().On("glGetBufferParameteriv",
              [](Call const& call) { *call.Pointer<GLint>(2) = call.Argument<GLenum>(1) == 0x88BC ? 1 : 5; });
    Fake().On("glGetBufferPointervOES", [this](Call const& call) { *call.Pointer<void*>(2) = m_pixels; });
    Fake().On("glUnmapBufferOES", [this](Call const&) { std::memset(m_pixels, 0xEE, sizeof m_pixels); });
    Fake().Result("glUnmapBufferOES", GLboolean(1));
    EXPECT_EQ("NEBTRACE(M) Size UnMapBuffer: 5\n",
              Printed([] { EXPECT_EQ(1, Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER)); }));
    Bytes record = Written();
    ASSERT_EQ(6u + 4 + 1 + 1 + 4 + 4 + 4 + 5, record.size());
    // Behind the target stands the address of the private copy.
    record.erase(record.begin() + 16, record.begin() + 20);
    EXPECT_EQ(Joined(U32(23), U16(4005), U32(0), U8(2), U8(1), U32(0x8892), U32(5), Bytes{1, 2, 3, 4, 5}),
              record);
}

// Without a mapping there is no copy; without a record nothing is asked.
TEST_F(Es2Uploads, UnmapWithoutMappingIsEmpty)
{
    Record();
    EXPECT_EQ("", Printed([] { Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER); }));
    EXPECT_EQ(Expected(4005, U32(0), U8(2), U8(0), U32(0x8892), U32(0), U32(0)), Written());
    STraceConfig::m_recordEnable = false;
    Fake().Forget();
    Es2::_glUnmapBufferOES(GL_ARRAY_BUFFER);
    EXPECT_EQ(0u, HostCalls("glGetBufferPointervOES"));
}

// Mapping records the pointer alone.
TEST_F(Es2Uploads, MappingRecordsThePointer)
{
    Record();
    Fake().Result("glMapBufferOES", static_cast<void*>(m_pixels));
    EXPECT_EQ(m_pixels, Es2::_glMapBufferOES(GL_ARRAY_BUFFER, 0x88B9));
    EXPECT_EQ(Expected(4004, U32(0), U8(2), Ptr(m_pixels), U32(0x8892), U32(0x88B9)), Written());
}

// A shader's texts, by the lengths of the call, then the lengths themselves.
TEST_F(Es2Uploads, ShaderSourcesAreTextsAndLengths)
{
    Record();
    char const* const texts[] = {"void main", "() {}"};
    GLint const lengths[] = {4, -1};
    Es2::_glShaderSource(7, 2, texts, lengths);
    EXPECT_EQ(Expected(2099, U32(0), U32(7), U32(2), Ptr(texts), U32(2), Ptr(texts[0]), U32(4), Chars("void"),
                       Ptr(texts[1]), U32(5), Chars("() {}"), Ptr(lengths), Words({2, 4, 0xFFFFFFFF})),
              Written());
    Es2::_glShaderSource(7, 1, texts, nullptr);
    EXPECT_EQ(Expected(2099, U32(0), U32(7), U32(1), Ptr(texts), U32(1), Ptr(texts[0]), U32(9),
                       Chars("void main"), U32(0), U32(0)),
              Written());
    RecordWithoutData();
    Es2::_glShaderSource(7, 2, texts, lengths);
    EXPECT_EQ(Expected(2099, U32(0), U32(7), U32(2), Ptr(texts), Ptr(lengths)), Written());
}

// On purpose: a separable program's sources are never recorded.
TEST_F(Es2Uploads, SeparableProgramsHaveNoSources)
{
    Record();
    char const* texts[] = {"void main() {}"};
    Fake().Result("glCreateShaderProgramvEXT", 5u);
    EXPECT_EQ(5u, Es2::_glCreateShaderProgramvEXT(GL_VERTEX_SHADER, 1, texts));
    EXPECT_EQ(Expected(4206, U32(0), U8(2), U32(5), U32(0x8B31), U32(1), Ptr(texts), U32(0)), Written());
}

// Binaries: the shaders, the format, the bytes, the length; and of a program, format, bytes, length.
TEST_F(Es2Uploads, BinariesAreBytes)
{
    Record();
    GLuint const shaders[] = {5, 6};
    Es2::_glShaderBinary(2, shaders, 0x8DF8, m_pixels, 3);
    EXPECT_EQ(Expected(2098, U32(0), U32(2), Ptr(shaders), Words({2, 5, 6}), U32(0x8DF8), Ptr(m_pixels),
                       U32(3), Pixels(3), U32(3)),
              Written());
    Es2::_glProgramBinaryOES(4, 0x8740, m_pixels, 3);
    EXPECT_EQ(Expected(4127, U32(0), U8(2), U32(4), U32(0x8740), Ptr(m_pixels), U32(3), Pixels(3), U32(3)),
              Written());
}

// A program's binary is as long as the host says, also where the application does not ask.
TEST_F(Es2Uploads, AProgramsBinaryIsAsLongAsTheHostSays)
{
    Record();
    GLenum format = 0x8740;
    Fake().On("glGetProgramBinaryOES", [](Call const& call) { *call.Pointer<GLsizei>(2) = 3; });
    Es2::_glGetProgramBinaryOES(4, 64, nullptr, &format, m_pixels);
    EXPECT_EQ(Expected(4126, U32(0), U8(2), U32(4), U32(64), U32(0), U32(0), Ptr(&format), Words({1, 0x8740}),
                       Ptr(m_pixels), U32(3), Pixels(3)),
              Written());
}

// Uniform arrays: the count of the call, elements of one to four words; matrices by their squares.
TEST_F(Es2Uploads, UniformArraysHaveWholeElements)
{
    Record();
    GLfloat values[32];
    for (int i = 0; i < 32; ++i)
        values[i] = static_cast<GLfloat>(i);
    Es2::_glUniform3fv(1, 2, values);
    EXPECT_EQ(Expected(2121, U32(0), U32(1), U32(2), Ptr(values), U32(2), Raw(values, 24)), Written());
    Es2::_glUniformMatrix3fv(1, 1, GL_FALSE, values);
    EXPECT_EQ(Expected(2129, U32(0), U32(1), U32(1), U8(0), Ptr(values), U32(1), Raw(values, 36)), Written());
    Es2::_glUniformMatrix4fv(1, 2, GL_TRUE, values);
    EXPECT_EQ(Expected(2130, U32(0), U32(1), U32(2), U8(1), Ptr(values), U32(2), Raw(values, 128)),
              Written());
    Es2::_glUniform1fv(1, 3, nullptr);
    EXPECT_EQ(Expected(2113, U32(0), U32(1), U32(3), U32(0), U32(0)), Written());
}
