// Textures and buffers that the application uploads again, or deletes, while a captured state waits to be
// written. The capture shares their bytes with the live state, so that these tests are run under
// AddressSanitizer as well.
#include "tests/wrappers/snapshot_calls.h"
#include "wrappers/es2/track.h"
#include <algorithm>

namespace
{

constexpr GLuint kTexture = 9;
constexpr GLuint kBuffer = 11;
constexpr GLsizei kSide = 32;
constexpr GLsizei kSize = kSide * kSide * 4;

std::vector<GLubyte> Filled(GLubyte value, GLsizei size = kSize)
{
    return std::vector<GLubyte>(static_cast<size_t>(size), value);
}

void UploadImage(GLubyte value, GLsizei side = kSide)
{
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, side, side, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                       Filled(value, side * side * 4).data(), 0);
}

void UploadSubImage(GLubyte value, GLint offset, GLsizei side)
{
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, offset, offset, side, side, GL_RGBA, GL_UNSIGNED_BYTE,
                          Filled(value, side * side * 4).data());
}

void UploadBuffer(GLubyte value, GLsizei size = kSize)
{
    Es2::_glBufferData(GL_ARRAY_BUFFER, size, Filled(value, size).data(), GL_STATIC_DRAW);
}

void UploadPart(GLubyte value, GLintptr offset, GLsizei size)
{
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, offset, size, Filled(value, size).data());
}

// How often `written` has a run of `count` bytes of the value, and nothing longer.
size_t RunsOf(Bytes const& written, GLubyte value, std::ptrdiff_t count)
{
    size_t runs = 0;
    for (auto at = std::find(written.begin(), written.end(), value); at != written.end();)
    {
        auto const end = std::find_if(at, written.end(), [value](uint8_t byte) { return byte != value; });
        runs += end - at == count ? 1 : 0;
        at = std::find(end, written.end(), value);
    }
    return runs;
}

}  // namespace

class Reupload : public Snapshot
{
protected:
    static constexpr GLubyte kOld = 0xA5;
    static constexpr GLubyte kLater = 0x5A;

    Reupload()
    {
        HostAnswers(GL_TEXTURE_BINDING_2D, kTexture);
        HostAnswers(GL_ARRAY_BUFFER_BINDING, kBuffer);
        UploadImage(kOld);
        UploadBuffer(kOld);
    }

    // As a recorded draw does, so that the optimisation keeps both objects.
    static void UseBoth()
    {
        CTraceRecordManager::m_Es2FileState->m_sUsedTextures[kTexture] = kTexture;
        CTraceRecordManager::m_Es2FileState->m_sUsedBuffers[kBuffer] = kBuffer;
    }

    // The second half as it stands in the file.
    Bytes WrittenState()
    {
        UseBoth();
        Written();
        STraceConfig::m_optimizationRS = true;
        STraceConfig::m_bDoNativeCall = false;
        Printed([] { CTraceRecordManager::saveRenderStatePhase2(false, false); });
        STraceConfig::m_bDoNativeCall = true;
        return Written();
    }

    // Both objects as they were at the capture, and nothing that came later.
    void ExpectTheOldContents(Bytes const& state)
    {
        EXPECT_EQ(2u, RunsOf(state, kOld, kSize));
        EXPECT_EQ(state.end(), std::search_n(state.begin(), state.end(), 4, kLater));
    }

    // One later upload between the halves, then the next state, which must show that the upload was followed.
    template <typename Upload>
    void ExpectToSurvive(Upload upload, size_t laterRuns, std::ptrdiff_t laterSize)
    {
        Capture();
        upload();
        ExpectTheOldContents(WrittenState());
        Capture();
        EXPECT_EQ(laterRuns, RunsOf(WrittenState(), kLater, laterSize));
    }
};

// A new image frees the one that the capture points at.
TEST_F(Reupload, OfAnImageLeavesTheCapturedOne)
{
    ExpectToSurvive([] { UploadImage(kLater); }, 1, kSize);
}

// So does one of another size, which must not change the size that the captured one is written with.
TEST_F(Reupload, OfALargerImageLeavesTheCapturedOne)
{
    ExpectToSurvive([] { UploadImage(kLater, 2 * kSide); }, 1, 4 * kSize);
}

// A whole sub-image and a part of one are copied into bytes that are shared.
TEST_F(Reupload, OfASubImageLeavesTheCapturedImage)
{
    ExpectToSurvive([] { UploadSubImage(kLater, 0, kSide); }, 1, kSize);
}
TEST_F(Reupload, OfAPartOfAnImageLeavesTheCapturedImage)
{
    constexpr GLsizei kPart = 4;
    ExpectToSurvive([] { UploadSubImage(kLater, 8, kPart); }, kPart, kPart * 4);
}

// A new store frees the one that the capture points at.
TEST_F(Reupload, OfABufferLeavesTheCapturedOne)
{
    ExpectToSurvive([] { UploadBuffer(kLater); }, 1, kSize);
}
TEST_F(Reupload, OfASmallerBufferLeavesTheCapturedOne)
{
    ExpectToSurvive([] { UploadBuffer(kLater, 16); }, 1, 16);
}

// A part of a buffer is copied into bytes that are shared.
TEST_F(Reupload, OfAPartOfABufferLeavesTheCapturedOne)
{
    ExpectToSurvive([] { UploadPart(kLater, 64, 128); }, 1, 128);
}

// A part that is larger than the whole replaces the store.
TEST_F(Reupload, OfTooLargeAPartLeavesTheCapturedBuffer)
{
    ExpectToSurvive([] { UploadPart(kLater, 0, 2 * kSize); }, 1, 2 * kSize);
}

// What a mapping held is copied into the buffer at unmap.
TEST_F(Reupload, ThroughAMappingLeavesTheCapturedBuffer)
{
    ExpectToSurvive([] { Es2::Track::UnmapBuffer(kBuffer, Filled(kLater).data(), kSize); }, 1, kSize);
}

// Deleting is not followed: the captured state and the next one hold the objects still.
TEST_F(Reupload, DeletedObjectsAreWrittenAsTheyWere)
{
    GLuint const texture = kTexture;
    GLuint const buffer = kBuffer;
    Capture();
    Es2::_glDeleteTextures(1, &texture);
    Es2::_glDeleteBuffers(1, &buffer);
    ExpectTheOldContents(WrittenState());
    // Names that are used again are other objects' uploads.
    UploadImage(kLater);
    UploadBuffer(kLater);
    ExpectTheOldContents(WrittenState());
}

// Uploads without contents leave nothing to share, and free what was.
TEST_F(Reupload, WithoutContentsLeavesTheCapturedOnes)
{
    Capture();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kSide, kSide, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr, 0);
    Es2::_glBufferData(GL_ARRAY_BUFFER, kSize, nullptr, GL_STATIC_DRAW);
    ExpectTheOldContents(WrittenState());
    Capture();
    EXPECT_EQ(0u, RunsOf(WrittenState(), kOld, kSize));
}

// Captures that nobody writes, uploads between them, and a capture of what is shared already.
TEST_F(Reupload, BytesOutliveEveryCaptureThatSharesThem)
{
    CEs2ContextState other;
    for (GLubyte value = 1; value < 9; ++value)
    {
        Capture();
        other = *CTraceRecordManager::m_Es2FileState;
        Capture();
        UploadImage(value);
        UploadPart(value, 0, kSize / 2);
        other = *CTraceRecordManager::m_Es2FileState;
        UploadSubImage(kLater, 0, 2);
        UploadBuffer(value);
    }
    Capture();
    other = CEs2ContextState();
    Bytes const state = WrittenState();
    EXPECT_EQ(1u, RunsOf(state, 8, kSize));
    EXPECT_EQ(2u, RunsOf(state, kLater, 2 * 4));
}

// The live state can go ahead of the captured one.
TEST_F(Reupload, TheCapturedStateOutlivesTheLiveOne)
{
    Capture();
    *CTraceRecordManager::m_Es2FileState = CEs2ContextState();
    ExpectTheOldContents(WrittenState());
}

// The same in a run: uploads in the recorded frames stand in their frames, and the state behind them is that
// of the first one.
TEST_F(Reupload, InRecordedFramesDoesNotReachTheStateBehindThem)
{
    STraceConfig::m_ui32StartFrame = 1;
    STraceConfig::m_ui32EndFrame = 2;
    STraceConfig::m_optimizationRS = true;
    STraceConfig::m_bRecordData = true;
    Printed([] {
        Egl::_eglSwapBuffers(nullptr, nullptr);
        UploadImage(kLater);
        UploadPart(kLater, 0, kSize);
        Egl::_eglSwapBuffers(nullptr, nullptr);
        UploadBuffer(kLater);
        UploadSubImage(kLater, 0, kSide);
        Egl::_eglSwapBuffers(nullptr, nullptr);
        UseBoth();
        Es2::_glFlush();
    });
    Bytes const written = Written();
    // The footer: its mark, and where the state begins.
    ASSERT_LT(10u, written.size());
    EXPECT_EQ(Joined(U8(0x13), U8(0x10)), Bytes(written.end() - 10, written.end() - 8));
    EXPECT_EQ(4u, RunsOf(written, kLater, kSize));
    EXPECT_EQ(2u, RunsOf(written, kOld, kSize));
    auto const state = std::find(written.begin(), written.end(), kOld);
    EXPECT_EQ(written.end(), std::find(state, written.end(), kLater));
}
