// The trace as it comes in: kept as it is, and walked on the way.
#include "tests/reader/trace_builder.h"
#include "tools/commands.h"
#include "tools/remote/trace_stream.h"
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <unistd.h>

namespace
{
using remote::TraceStream;

constexpr unsigned kEglState = 2;

std::vector<uint8_t> Piece(std::string const& bytes) { return {bytes.begin(), bytes.end()}; }

// A recording as it comes over the network: header, two frames, the state at the end, footer.
Trace Recording()
{
    Trace trace;
    trace.Thread(7).Flush().SwapBuffers(4).Flush().SwapBuffers(5);
    uint64_t const state = trace.Size();
    return trace.Record(kEglState).Flush().Record(kEglState).Footer(state);
}

void AddInPieces(TraceStream& stream, std::string const& bytes, size_t size)
{
    for (size_t at = 0; at < bytes.size(); at += size)
        stream.Add(Piece(bytes.substr(at, size)));
}

// However the bytes are cut, frames are counted and the end is known when it is there, and only then.
TEST(TraceStream, FramesAndTheEndAreSeenAtEveryCut)
{
    std::string const all = Recording().All();
    for (size_t const size : {size_t{1}, size_t{3}, size_t{61}, size_t{100}, all.size()})
    {
        SCOPED_TRACE(size);
        TraceStream stream("");
        AddInPieces(stream, all.substr(0, all.size() - 1), size);
        EXPECT_FALSE(stream.AtFooter());
        stream.Add(Piece(all.substr(all.size() - 1)));
        EXPECT_TRUE(stream.AtFooter());
        EXPECT_EQ(2u, stream.Frames());
        EXPECT_EQ(all.size(), stream.Bytes());
        EXPECT_EQ("", stream.Gap());
    }
}

// The bytes of a footer can be the beginning of a record that is still coming.
TEST(TraceStream, ARecordThatBeginsLikeAFooterIsNoEnd)
{
    constexpr size_t kSize = 0x1013;  // its length word begins with 13 10
    Trace trace;
    trace.Flush().Record(2001, Payload().U32(0).Fill(kSize - 4, 0)).SwapBuffers(0);
    std::string const all = trace.All();
    TraceStream stream("");
    for (char const byte : all)
    {
        stream.Add({static_cast<uint8_t>(byte)});
        ASSERT_FALSE(stream.AtFooter());
    }
    EXPECT_EQ("", stream.Gap());
    EXPECT_EQ(1u, stream.Frames());
}

// A client that comes into a recording that is already on lacks its header.
TEST(TraceStream, AMissingBeginningIsAGap)
{
    TraceStream stream("");
    stream.Add(Piece(Recording().All().substr(62)));
    EXPECT_EQ("the beginning of the trace is missing", stream.Gap());
    EXPECT_FALSE(stream.AtFooter());
}

// Bytes that were lost on the way leave the walk between records; the place is the last one that it was sure
// of.
TEST(TraceStream, MissingBytesAreAGap)
{
    std::string all = Recording().All();
    all.erase(62 + 14 + 3, 5);  // from within the first call
    TraceStream stream("");
    AddInPieces(stream, all, 40);
    EXPECT_EQ(0u, stream.Gap().find("bytes are missing ahead of offset ")) << stream.Gap();
    EXPECT_EQ(all.size(), stream.Bytes());
}

// The file is what came, byte for byte, whether it can be walked or not.
TEST(TraceStream, TheFileIsWhatCame)
{
    std::string const path = testing::TempDir() + "trace_stream_" + std::to_string(getpid());
    std::string const whole = Recording().All();
    for (std::string const& all : {whole, whole.substr(0, 100) + "and more that is no record"})
    {
        {
            TraceStream stream(path);
            AddInPieces(stream, all, 7);
            stream.Close();
        }
        std::ifstream file(path, std::ios::binary);
        EXPECT_EQ(all, std::string(std::istreambuf_iterator<char>(file), {}));
        std::remove(path.c_str());
    }
}

// Calls of other threads that were under way at the end of a recording are written behind it. They are left
// out: a trace's footer is the last thing in it.
TEST(TraceStream, NothingStandsBehindTheFooter)
{
    std::string const path = testing::TempDir() + "trace_stream_" + std::to_string(getpid());
    std::string const whole = Recording().All();
    Trace late;
    late.Thread(8).Flush();
    std::string const all = whole + late.All().substr(62);
    for (size_t const size : {size_t{1}, size_t{7}, whole.size(), all.size()})
    {
        SCOPED_TRACE(size);
        TraceStream stream(path);
        AddInPieces(stream, all, size);
        EXPECT_TRUE(stream.AtFooter());
        EXPECT_EQ("", stream.Gap());
        EXPECT_EQ(whole.size(), stream.Bytes());
        stream.Close();
        std::ifstream file(path, std::ios::binary);
        EXPECT_EQ(whole, std::string(std::istreambuf_iterator<char>(file), {}));
        std::remove(path.c_str());
    }
}

// A recorder without a file of its own gives no place for the state at the end: the file here has it.
TEST(TraceStream, TheFooterOfTheFileTellsWhereTheStateAtTheEndBegins)
{
    Trace trace;
    trace.Thread(7).Flush().SwapBuffers(4).Flush();
    uint64_t const state = trace.Size();
    trace.Thread(8).Record(kEglState).Flush().Record(kEglState).Thread(8).Record(4).Flush().Record(4);
    Trace expected = trace;
    std::string const path = testing::TempDir() + "trace_stream_" + std::to_string(getpid());
    TraceStream stream(path);
    AddInPieces(stream, trace.Footer(0).All(), 11);
    EXPECT_TRUE(stream.AtFooter());
    stream.Close();
    std::ifstream file(path, std::ios::binary);
    EXPECT_EQ(expected.Footer(state).All(), std::string(std::istreambuf_iterator<char>(file), {}));
    std::remove(path.c_str());
}

// A state that calls follow is not at the end: such a trace is read straight through.
TEST(TraceStream, AStateAtTheBeginningLeavesTheFooterAlone)
{
    Trace trace;
    trace.Record(kEglState).Flush().Record(kEglState).Flush().SwapBuffers(0).Footer(0);
    std::string const path = testing::TempDir() + "trace_stream_" + std::to_string(getpid());
    TraceStream stream(path);
    AddInPieces(stream, trace.All(), 1000);
    stream.Close();
    std::ifstream file(path, std::ios::binary);
    EXPECT_EQ(trace.All(), std::string(std::istreambuf_iterator<char>(file), {}));
    std::remove(path.c_str());
}

// A path that cannot be written is said before anything is recorded.
TEST(TraceStream, AFileThatCannotBeWrittenIsAnError)
{
    try
    {
        TraceStream const stream("/nonexistent/trace.nebt");
        FAIL();
    } catch (CommandFailed const& failed)
    {
        EXPECT_STREQ("cannot write /nonexistent/trace.nebt: No such file or directory", failed.what());
    }
}
}  // namespace
