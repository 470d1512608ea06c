// Traces that are cut or damaged: what came before is delivered, and the end says where and why.
#include "reader_fixture.h"

using namespace nebtrace;

using DamageTest = ReaderTest;
INSTANTIATE_TEST_SUITE_P(Each, DamageTest, testing::Values(Input::File, Input::Pipe), InputName);

// An empty file is not a trace with no records.
TEST_P(DamageTest, AnEmptyFileIsTruncated)
{
    Reader& reader = Read("");
    EXPECT_EQ(EndState::Truncated, reader.End());
    EXPECT_EQ(0u, reader.EndOffset());
    EXPECT_EQ("the header has 62 bytes, the file 0", reader.EndReason());
    EXPECT_EQ(0u, Walk(reader));
}

// A file that ends inside its header has no records, wherever it is cut.
TEST_P(DamageTest, ACutHeaderIsTruncated)
{
    Trace const trace;
    for (size_t size = 1; size < 62; ++size)
    {
        Reader& reader = Read(trace.Cut(size));
        EXPECT_EQ(EndState::Truncated, reader.End()) << size;
        EXPECT_EQ("the header has 62 bytes, the file " + std::to_string(size), reader.EndReason());
        EXPECT_EQ(0u, Walk(reader));
    }
}

// Another kind of file is named as such.
TEST_P(DamageTest, AWrongMagicIsNoTrace)
{
    std::string bytes = Trace().Footer(0).All();
    bytes[7] = 'E';
    Reader const& reader = Read(bytes);
    EXPECT_EQ(EndState::Damaged, reader.End());
    EXPECT_EQ(0u, reader.EndOffset());
    EXPECT_EQ("this is no trace: it does not begin with \"NEBTrace\"", reader.EndReason());
}

// A short file of another kind is no truncated trace.
TEST_P(DamageTest, AShortFileOfAnotherKindIsNoTrace)
{
    Reader const& reader = Read("#!/bin/sh\n");
    EXPECT_EQ(EndState::Damaged, reader.End());
}

// The marker tells the byte order; another one cannot be read.
TEST_P(DamageTest, AWrongMarkerIsSaid)
{
    std::string bytes = Trace().Footer(0).All();
    bytes[8] = 1;
    Reader const& reader = Read(bytes);
    EXPECT_EQ(EndState::Damaged, reader.End());
    EXPECT_EQ(8u, reader.EndOffset());
    EXPECT_EQ("the header's marker is not that of a trace", reader.EndReason());
}

// Another version may have other records.
TEST_P(DamageTest, AnUnknownVersionIsSaid)
{
    std::string bytes = Trace().Footer(0).All();
    bytes[12] = 15;
    Reader const& reader = Read(bytes);
    EXPECT_EQ(EndState::Damaged, reader.End());
    EXPECT_EQ(12u, reader.EndOffset());
    EXPECT_EQ("format version 15 is not known", reader.EndReason());
}

// The records begin behind the type table, so its length must be the known one.
TEST_P(DamageTest, AnotherTypeTableIsSaid)
{
    std::string bytes = Trace().Footer(0).All();
    bytes[22] = 30;
    Reader const& reader = Read(bytes);
    EXPECT_EQ(EndState::Damaged, reader.End());
    EXPECT_EQ(22u, reader.EndOffset());
}

// Wherever the last record is cut, the records before it come, and its offset is given.
TEST_P(DamageTest, ACutRecordEndsTheTraceAtItsOffset)
{
    Trace const trace = Trace().Flush().Flush();
    for (size_t size = 73; size < 82; ++size)
    {
        Reader& reader = Read(trace.Cut(size));
        EXPECT_EQ(1u, Walk(reader)) << size;
        EXPECT_EQ(EndState::Truncated, reader.End()) << size;
        EXPECT_EQ(72u, reader.EndOffset()) << size;
        EXPECT_FALSE(reader.EndReason().empty());
    }
}

// The reason tells a cut header of a record from a cut payload.
TEST_P(DamageTest, ACutRecordSaysHowMuchIsMissing)
{
    Trace const trace = Trace().Flush();
    Reader& inHeader = Read(trace.Cut(65));
    Walk(inHeader);
    EXPECT_EQ("the file ends 3 bytes into a record", inHeader.EndReason());
    Reader& inPayload = Read(trace.Cut(71));
    Walk(inPayload);
    EXPECT_EQ("a record of 4 bytes begins, 3 are left", inPayload.EndReason());
}

// A cut footer is a cut record: it has no other sign. What stands ahead of it is whole, and no damage.
TEST_P(DamageTest, ACutFooterIsTruncated)
{
    Trace const trace = Trace().Flush().Footer(0);
    for (size_t size = 73; size < 82; ++size)
    {
        Reader& reader = Read(trace.Cut(size));
        EXPECT_EQ(1u, Walk(reader)) << size;
        EXPECT_EQ(EndState::Truncated, reader.End()) << size;
        EXPECT_EQ(72u, reader.EndOffset()) << size;
        std::string const place = "the file ends " + std::to_string(size - 72) + " bytes into a record";
        EXPECT_EQ(size < 78 ? place : place + " or the footer", reader.EndReason()) << size;
    }
}

// Bytes behind the footer are said to be that, not taken for records.
TEST_P(DamageTest, BytesBehindTheFooterAreSaid)
{
    for (size_t const extra : {size_t{1}, size_t{9}, size_t{10}, size_t{5000}})
    {
        Reader& reader = Read(Trace().Flush().Footer(0).Raw(Payload().Fill(extra, 0)));
        EXPECT_EQ(1u, Walk(reader));
        EXPECT_EQ(EndState::Damaged, reader.End());
        EXPECT_EQ(72u, reader.EndOffset());
        EXPECT_EQ("the footer is not the end: more bytes follow", reader.EndReason());
    }
}

// A snapshot cannot be inside the header or behind the records.
TEST_P(DamageTest, ASnapshotOutsideTheRecordsIsDamage)
{
    for (uint64_t const position : {uint64_t{1}, uint64_t{61}, uint64_t{73}, UINT64_MAX})
    {
        Reader& reader = Read(Trace().Flush().Footer(position));
        EXPECT_FALSE(reader.ProbableSnapshotPosition());
        EXPECT_EQ(1u, Walk(reader));
        EXPECT_EQ(EndState::Damaged, reader.End());
        EXPECT_EQ(72u, reader.EndOffset());
        EXPECT_FALSE(reader.SnapshotPosition());
    }
}

// Zeros up to the end are no record: a file can have been grown ahead of its writing. What they follow is
// whole.
TEST_P(DamageTest, ZerosUpToTheEndAreTheEnd)
{
    for (size_t const zeros : {size_t{6}, size_t{7}, size_t{10}, size_t{4102}, size_t{100000}})
    {
        Reader& reader = Read(Trace().Flush().Raw(Payload().Fill(zeros, 0)));
        EXPECT_EQ(1u, Walk(reader));
        EXPECT_EQ(EndState::NoFooter, reader.End());
        EXPECT_TRUE(reader.EndedInOrder());
        EXPECT_EQ(72u, reader.EndOffset());
        EXPECT_EQ(zeros, reader.TrailingZeros());
        EXPECT_EQ(72u + zeros, reader.Size());
    }
}

// Fewer zeros than a record's head may be the beginning of one.
TEST_P(DamageTest, FewZerosAreTheBeginningOfARecord)
{
    for (size_t const zeros : {size_t{1}, size_t{5}})
    {
        Reader& reader = Read(Trace().Flush().Raw(Payload().Fill(zeros, 0)));
        EXPECT_EQ(1u, Walk(reader));
        EXPECT_EQ(EndState::Truncated, reader.End());
        EXPECT_EQ(72u, reader.EndOffset());
        EXPECT_EQ(0u, reader.TrailingZeros());
    }
}

// Zeros with anything behind them mean that the walk has lost its step.
TEST_P(DamageTest, ZerosAheadOfOtherBytesAreDamage)
{
    for (size_t const zeros : {size_t{6}, size_t{5000}})
    {
        Reader& reader = Read(Trace().Flush().Raw(Payload().Fill(zeros, 0).U8(1)));
        EXPECT_EQ(1u, Walk(reader));
        EXPECT_EQ(EndState::Damaged, reader.End());
        EXPECT_EQ(72u, reader.EndOffset());
        EXPECT_EQ("no record has the ID 0", reader.EndReason());
        EXPECT_EQ(0u, reader.TrailingZeros());
    }
}

// An ID that no call has means that the walk has lost its step: zeros in a file would else be endless
// records.
TEST_P(DamageTest, AnUnknownIdEndsTheWalk)
{
    for (unsigned const id :
         {0u, 5u, 999u, 1000u, 1035u, 1099u, 1111u, 2000u, 2143u, 3000u, 3146u, 4000u, 4240u, 65535u})
    {
        Reader& reader = Read(Trace().Flush().Record(id, Payload().U32(0)).Flush().Footer(0));
        EXPECT_EQ(1u, Walk(reader)) << id;
        EXPECT_EQ(EndState::Damaged, reader.End()) << id;
        EXPECT_EQ(72u, reader.EndOffset()) << id;
        EXPECT_EQ("no record has the ID " + std::to_string(id), reader.EndReason());
    }
}

// Every ID at the edges of the ranges is known.
TEST_P(DamageTest, TheEdgesOfTheRangesAreKnown)
{
    for (unsigned const id : {1001u, 1034u, 1100u, 1110u, 2001u, 2142u, 3001u, 3145u, 4001u, 4239u})
    {
        Reader& reader = Read(Trace().Record(id, Payload().U32(0)).Footer(0));
        EXPECT_EQ(1u, Walk(reader)) << id;
        EXPECT_EQ(EndState::Footer, reader.End()) << id;
    }
}

// A thread change has eight bytes, a marker none: anything else is not one.
TEST_P(DamageTest, AReservedRecordOfAnotherSizeIsDamage)
{
    Reader& change = Read(Trace().Record(1, Payload().U32(7)).Flush().Footer(0));
    EXPECT_EQ(0u, Walk(change));
    EXPECT_EQ(EndState::Damaged, change.End());
    EXPECT_EQ("a record with ID 1 has 8 bytes, not 4", change.EndReason());
    Reader& marker = Read(Trace().Record(4, Payload().U32(7)).Flush().Footer(0));
    EXPECT_EQ(0u, Walk(marker));
    EXPECT_EQ("a record with ID 4 has 0 bytes, not 4", marker.EndReason());
}

// A reader that has come to an end stays there.
TEST_P(DamageTest, TheEndStays)
{
    Reader& reader = Read(Trace().Flush().Record(0).Flush().Footer(0));
    EXPECT_EQ(1u, Walk(reader));
    EXPECT_EQ(0u, Walk(reader));
    EXPECT_EQ(EndState::Damaged, reader.End());
}
