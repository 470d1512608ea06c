// The frame of a trace: header, records, threads, frames, footer.
#include "reader_fixture.h"
#include <cstdio>
#include <fstream>

using namespace nebtrace;

INSTANTIATE_TEST_SUITE_P(Each, ReaderTest, testing::Values(Input::File, Input::Pipe), InputName);

// The header's three facts are found at their places.
TEST_P(ReaderTest, TheHeaderGivesVersionAndFlags)
{
    Reader const& reader = Read(Trace().Footer(0));
    EXPECT_EQ(EndState::Reading, reader.End());
    EXPECT_EQ(14u, reader.GetHeader().version);
    EXPECT_TRUE(reader.GetHeader().recordData);
    EXPECT_FALSE(reader.GetHeader().frameBuffer);
}

// The two flags are not mixed up.
TEST_P(ReaderTest, TheFrameBufferFlagIsTheSecond)
{
    std::string bytes = Trace().Footer(0).All();
    bytes[16] = 0;
    bytes[17] = 1;
    Reader const& reader = Read(bytes);
    EXPECT_FALSE(reader.GetHeader().recordData);
    EXPECT_TRUE(reader.GetHeader().frameBuffer);
}

// A record is its length, its ID and its payload, at the offset of the length.
TEST_P(ReaderTest, ARecordHasOffsetIdAndPayload)
{
    Trace trace;
    trace.Raw(Payload().U32(8).U16(2035).U32(0).U32(0x01020304)).Footer(0);
    Reader& reader = Read(trace);
    Record record;
    ASSERT_TRUE(reader.Next(record));
    EXPECT_EQ(RecordType::Call, record.type);
    EXPECT_EQ(2035, record.id);
    EXPECT_EQ(62u, record.offset);
    ASSERT_EQ(8u, record.payload.size);
    EXPECT_EQ(0x04, record.payload[4]);
    EXPECT_EQ(0x01, record.payload[7]);
    EXPECT_FALSE(reader.Next(record));
}

// A trace without a record is whole.
TEST_P(ReaderTest, AnEmptyTraceEndsInOrder)
{
    Reader& reader = Read(Trace().Footer(0));
    EXPECT_EQ(0u, Walk(reader));
    EXPECT_EQ(EndState::Footer, reader.End());
    EXPECT_EQ(62u, reader.EndOffset());
    EXPECT_EQ(0u, reader.SnapshotPosition());
    EXPECT_EQ(72u, reader.Size());
}

// Records belong to the thread of the last change, and to thread 0 ahead of the first.
TEST_P(ReaderTest, AThreadChangeHoldsForWhatFollows)
{
    Reader& reader =
        Read(Trace().Flush().Thread(0x123456789AULL).Flush().Flush().Thread(5).Flush().Footer(0));
    std::vector<std::pair<RecordType, uint64_t>> found;
    Record record;
    while (reader.Next(record))
        found.emplace_back(record.type, record.thread);
    std::vector<std::pair<RecordType, uint64_t>> const expected = {
        {RecordType::Call, 0},
        {RecordType::ThreadChange, 0x123456789AULL},
        {RecordType::Call, 0x123456789AULL},
        {RecordType::Call, 0x123456789AULL},
        {RecordType::ThreadChange, 5},
        {RecordType::Call, 5}};
    EXPECT_EQ(expected, found);
}

// Markers are records of their own, and are no calls.
TEST_P(ReaderTest, MarkersAreNotCalls)
{
    Reader& reader = Read(Trace().Record(2).Record(3).Record(4).Flush().Footer(0));
    Record record;
    for (uint16_t const id : {kEglStateId, kEs1StateId, kEs2StateId})
    {
        ASSERT_TRUE(reader.Next(record));
        EXPECT_EQ(RecordType::StateMarker, record.type);
        EXPECT_EQ(id, record.id);
        EXPECT_EQ(0u, record.payload.size);
    }
    ASSERT_TRUE(reader.Next(record));
    EXPECT_EQ(0u, record.call);
}

// A swap is the last call of its frame; calls are numbered through, without thread changes and markers.
TEST_P(ReaderTest, ASwapEndsItsFrame)
{
    Reader& reader =
        Read(Trace().Thread(1).Flush().SwapBuffers(40).Record(4).Flush().SwapBuffers(41).Flush().Footer(0));
    std::vector<std::pair<uint64_t, uint64_t>> found;  // call, frame
    Record record;
    while (reader.Next(record))
        if (record.type == RecordType::Call)
            found.emplace_back(record.call, record.frame);
    std::vector<std::pair<uint64_t, uint64_t>> const expected = {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}};
    EXPECT_EQ(expected, found);
}

// The footer's position is that of the snapshot at the end.
TEST_P(ReaderTest, TheFooterGivesTheSnapshot)
{
    Reader& reader = Read(Trace().Flush().Record(4).Flush().Footer(72));
    EXPECT_FALSE(reader.SnapshotPosition());
    EXPECT_EQ(3u, Walk(reader));
    EXPECT_EQ(EndState::Footer, reader.End());
    EXPECT_EQ(72u, reader.SnapshotPosition());
    EXPECT_EQ(88u, reader.EndOffset());
}

// A file tells where the snapshot seems to be ahead of the walk; a pipe cannot.
TEST_P(ReaderTest, AFileTellsTheSnapshotAhead)
{
    Reader const& reader = Read(Trace().Flush().Record(4).Flush().Footer(72));
    if (GetParam() == Input::File)
        EXPECT_EQ(72u, reader.ProbableSnapshotPosition());
    else
        EXPECT_FALSE(reader.ProbableSnapshotPosition());
}

// A recording that was killed has whole records and no footer: nothing is lost of it.
TEST_P(ReaderTest, AMissingFooterIsNoDamage)
{
    Reader& reader = Read(Trace().Flush().Flush());
    EXPECT_EQ(2u, Walk(reader));
    EXPECT_EQ(EndState::NoFooter, reader.End());
    EXPECT_TRUE(reader.EndedInOrder());
    EXPECT_EQ(82u, reader.EndOffset());
    EXPECT_EQ(82u, reader.Size());
    EXPECT_FALSE(reader.SnapshotPosition());
}

// The last ten bytes of a record can look like a footer: the walk decides, not the look.
TEST_P(ReaderTest, ARecordThatEndsLikeAFooterIsARecord)
{
    Trace trace;
    trace.Record(2140, Payload().U32(0).U32(1).U32(0x99).Fill(6, 0).U8(0x13).U8(0x10).U64(0));
    Reader& reader = Read(trace);
    EXPECT_EQ(1u, Walk(reader));
    EXPECT_EQ(EndState::NoFooter, reader.End());
    EXPECT_FALSE(reader.SnapshotPosition());
}

// A record whose length has the footer's bytes at its start is read as a record, in the middle and at the
// end.
TEST_P(ReaderTest, ARecordThatBeginsLikeAFooterIsARecord)
{
    uint32_t const length = 0x1013;  // 13 10 00 00
    // target, offset, size, pointer, count and 4087 bytes
    Payload const payload = Payload().Words({0, 0x8892, 0, 4087, 0x99, 4087}).Fill(length - 24, 7);
    Reader& reader = Read(Trace().Record(2014, payload).Flush().Record(2014, payload));
    Record record;
    ASSERT_TRUE(reader.Next(record));
    ASSERT_EQ(length, record.payload.size);
    EXPECT_EQ(0x92, record.payload[4]);
    EXPECT_EQ(7, record.payload[length - 1]);
    EXPECT_EQ(2u, Walk(reader));
    EXPECT_EQ(EndState::NoFooter, reader.End());
}

// What is delivered stays whole when a long record is followed by a short one.
TEST_P(ReaderTest, RecordsOfAllSizesFollowEachOther)
{
    Trace trace;
    for (uint32_t const size : {0u, 70000u, 1u, 300000u, 65536u})
        trace.Record(2014, Payload().Words({0, 0x8892, 0, size, 0x99, size}).Fill(size, size & 255));
    Reader& reader = Read(trace.Footer(0));
    Record record;
    for (uint32_t const size : {0u, 70000u, 1u, 300000u, 65536u})
    {
        ASSERT_TRUE(reader.Next(record));
        ASSERT_EQ(24 + size, record.payload.size);
        for (size_t i = 24; i < record.payload.size; ++i)
            ASSERT_EQ(size & 255, record.payload[i]);
    }
    EXPECT_FALSE(reader.Next(record));
    EXPECT_EQ(EndState::Footer, reader.End());
}

class TraceFile : public testing::Test
{
protected:
    void SetUp() override { std::remove(m_path.c_str()); }
    void TearDown() override { std::remove(m_path.c_str()); }

    std::string const m_path = testing::TempDir() + "reader_test_" +
                               testing::UnitTest::GetInstance()->current_test_info()->name() + ".nebt";
};

// A file on disk is read by its name.
TEST_F(TraceFile, AFileIsOpenedByName)
{
    Trace const trace = Trace().Flush().SwapBuffers(0).Footer(0);
    std::ofstream(m_path, std::ios::binary) << trace.All();
    std::string error;
    auto const reader = Reader::Open(m_path, error);
    ASSERT_TRUE(reader) << error;
    EXPECT_EQ(trace.Size(), reader->Size());
    Record record;
    EXPECT_TRUE(reader->Next(record));
    EXPECT_TRUE(reader->Next(record));
    EXPECT_FALSE(reader->Next(record));
    EXPECT_EQ(EndState::Footer, reader->End());
}

// What cannot be opened is said with its name and why.
TEST_F(TraceFile, AMissingFileIsSaid)
{
    std::string error;
    EXPECT_FALSE(Reader::Open(m_path, error));
    EXPECT_EQ(m_path + ": No such file or directory", error);
}

// A folder is no trace, although the standard library opens it.
TEST_F(TraceFile, AFolderIsSaid)
{
    std::string error;
    EXPECT_FALSE(Reader::Open("/", error));
    EXPECT_EQ("/: is a directory", error);
}
