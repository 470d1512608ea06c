// Whole replays of traces built by hand, on the machine's own driver.
#include "replay_trace.h"
#include "tests/reader/run_command.h"

namespace
{
class Replay : public CommandTest
{
protected:
    Outcome Verify(std::string const& bytes) const
    {
        Write(bytes);
        return Run("replay --verify FILE");
    }
};

// glVertexAttribPointer(0, 2, GL_FLOAT, false, 0, pointer) and glEnableVertexAttribArray(0).
ReplayTrace& UseClientArray(ReplayTrace& trace)
{
    return trace.Record(2141, Payload().Words({0, 0, 2, 0x1406}).U8(0).Words({0, 0x5000})).Gl(2044, {0});
}
}  // namespace

// Programs that get their display by a function that is not recorded leave a context and a surface that no
// record makes.
TEST_F(Replay, HandlesThatNoRecordMakesAreMade)
{
    Outcome const done = Verify(ReplayTrace().ClearColor(1, 0, 0).Clear().Swap(0, 255, 0, 0).Closed());
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.code, 0);
}

// The pictures are what replay has to prove: one wrong channel is told, and fails.
TEST_F(Replay, AFrameThatDiffersIsToldAndFails)
{
    ReplayTrace trace;
    trace.ClearColor(1, 0, 0).Clear().Swap(0, 255, 0, 0).Clear().Swap(1, 250, 0, 2);
    Outcome const done = Verify(trace.Closed());
    EXPECT_EQ(done.out, "frame 1 differs: 4 pixels, largest channel difference 5\n"
                        "2 frames, 6 calls replayed\n"
                        "2 frames compared, 1 differ\n");
    EXPECT_EQ(done.code, 1);
}

// Verifying nothing must not look like success.
TEST_F(Replay, ATraceWithoutPixelsCannotBeVerified)
{
    Outcome const done = Verify(Trace().Flush().SwapBuffers(0).Footer(0).All());
    EXPECT_EQ(done.code, 1);
    EXPECT_EQ(done.err,
              "nebtrace: FILE: no frame was recorded with its pixels, so none was verified; nebtrace "
              "record --save-frames keeps them\n");
}

// An optimized recording has the first frame's state at its end: it is set before the first frame.
TEST_F(Replay, ASnapshotAtTheEndIsReplayedFirst)
{
    ReplayTrace trace;
    trace.Clear().Swap(0, 0, 255, 0).BeginSnapshot();
    trace.MakeCurrent(0x30, 0x40).Record(4, {}).ClearColor(0, 1, 0).Record(4, {});
    Outcome const done = Verify(trace.Closed());
    EXPECT_EQ(done.out, "1 frames, 5 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.code, 0);
}

// A state that was captured without a current context, and calls ahead of the first eglMakeCurrent, go to the
// context that is made current later.
TEST_F(Replay, CallsAheadOfAnyContextGoToTheFirst)
{
    Payload const red = Payload().U32(0).Words({Bits(1), 0, 0, Bits(1)});
    Trace trace;
    trace.Record(2017, red).Record(1018, Payload().Words({0x3000, 1, 0x10, 0x30, 0x30, 0x40, 0, 0, 0}));
    trace.Record(2016, Payload().Words({0, 0x4000}));
    Payload swap;
    swap.Words({0x3000, 1, 0x10, 0x30, 0, 1, 1, 0x1234, 4}).U8(255).U8(0).U8(0).U8(255);
    Outcome const done = Verify(trace.Record(1022, swap).Footer(0).All());
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 frames compared, 0 differ\n");
}

// In a captured state, an image has the alignment that its own record gives; outside it has the state's.
TEST_F(Replay, ImagesKeepTheAlignmentThatTheirRowsHave)
{
    // glBindTexture, then glTexImage2D of 3 x 2 RGB in nine and eighteen bytes: tight rows, which its record
    // says only in a captured state.
    auto const image = [](uint32_t alignment) {
        return Payload()
            .Words({0, 0x0DE1, 0, 0x1907, 3, 2, 0, 0x1907, 0x1401, 0x9000, 18})
            .Fill(18, 0x55)
            .U32(alignment);
    };
    ReplayTrace captured;
    captured.Record(4, {}).Gl(2007, {0x0DE1, 1}).Record(2106, image(1)).Record(4, {});
    captured.Clear().Swap(0, 0, 0, 0);
    Write(captured.Closed());
    EXPECT_EQ(Run("replay FILE").code, 0);
    ReplayTrace live;
    live.Gl(2091, {0x0CF5, 1}).Gl(2007, {0x0DE1, 1}).Record(2106, image(4)).Clear().Swap(0, 0, 0, 0);
    Write(live.Closed());
    EXPECT_EQ(Run("replay FILE").code, 0);
}

// With an alignment that GL has not, a driver would keep the one it has, and read rows that were not
// measured.
TEST_F(Replay, AnAlignmentThatGlHasNotIsNotTried)
{
    ReplayTrace captured;
    captured.Record(4, {}).Gl(2007, {0x0DE1, 1});
    // glTexImage2D of 3 x 2 RGB in tight rows, aligned to three
    captured.Record(
        2106,
        Payload().Words({0, 0x0DE1, 0, 0x1907, 3, 2, 0, 0x1907, 0x1401, 0x9000, 18}).Fill(18, 0x55).U32(3));
    captured.Record(4, {}).Clear().Swap(0, 0, 0, 0);
    Write(captured.Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.out, "1 frames, 5 calls replayed\n");
    EXPECT_EQ(done.code, 0);
}

// An error that only the replay raises points at what went wrong; one that the recording had as well does
// not.
TEST_F(Replay, OnlyErrorsThatTheRecordingDidNotHaveAreTold)
{
    ReplayTrace trace;
    trace.Gl(2043, {1}).Record(2043, Payload().Words({0x500, 1})).Swap(0, 0, 0, 0);
    Write(trace.Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_EQ(done.err, "call 1 glEnable: the replay raised GL_INVALID_ENUM, the recording did not\n");
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 errors that the recording did not have\n");
    EXPECT_EQ(done.code, 0);
}

// A draw of three vertices with an array of one must not make the driver read on.
TEST_F(Replay, AClientArrayThatIsTooShortIsABadRecord)
{
    ReplayTrace trace;
    UseClientArray(trace);
    // glDrawArrays(GL_TRIANGLES, 0, 3) with attribute 0 in eight bytes
    trace.Record(2041, Payload().Words({0, 4, 0, 3, 0, 0x5000, 8, 0, 0}));
    Write(trace.Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_EQ(done.err, "nebtrace: FILE: bad record: call 3 (glDrawArrays, at offset 163): the array of "
                        "attribute 0 has 8 bytes, and the draw reads 24\n");
    EXPECT_EQ(done.code, 1);
}

// The highest index decides what a draw reads of its arrays.
TEST_F(Replay, AnIndexPastTheClientArrayIsABadRecord)
{
    ReplayTrace trace;
    UseClientArray(trace);
    // glDrawElements(GL_POINTS, 2, GL_UNSIGNED_SHORT) of the indices 0 and 9, and two vertices
    Payload draw;
    draw.Words({0, 0, 2, 0x1403, 0x6000, 4}).U16(0).U16(9).U32(0x6000);
    draw.Words({0, 0x5000, 16}).Fill(16, 0);
    Write(trace.Record(2042, draw).Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_NE(done.err.find("attribute 0 has 16 bytes, and the draw reads 80"), std::string::npos)
        << done.err;
    EXPECT_EQ(done.code, 1);
}

// Fewer indices than the count says are a bad record too.
TEST_F(Replay, TooFewIndicesAreABadRecord)
{
    Payload draw;
    draw.Words({0, 0, 9, 0x1403, 0x6000, 4}).U16(0).U16(1).U32(0x6000);
    Write(ReplayTrace().Record(2042, draw).Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_NE(done.err.find("it has 4 bytes of indices, and needs 18"), std::string::npos) << done.err;
    EXPECT_EQ(done.code, 1);
}

// What a draw that begins late lacks of its array is zeros, but a few bytes must not ask for gigabytes of
// them.
TEST_F(Replay, AClientArrayIsNotFilledUpWithoutLimit)
{
    ReplayTrace trace;
    UseClientArray(trace);
    // glDrawArrays(GL_TRIANGLES, 0x1000000, 3) with attribute 0 in 24 bytes
    trace.Record(2041, Payload().Words({0, 4, 0x1000000, 3, 0, 0x5000, 24, 0, 0, 0, 0, 0, 0}));
    Write(trace.Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_EQ(done.err, "nebtrace: FILE: bad record: call 3 (glDrawArrays, at offset 163): the array of "
                        "attribute 0 has 24 bytes, and the draw reads 134217752\n");
    EXPECT_EQ(done.code, 1);
}

// Without its data a recording cannot be replayed; the first record that needs them says so.
TEST_F(Replay, ARecordingWithoutDataIsRefused)
{
    // glDeleteTextures(1, pointer) in its short form
    Write(ReplayTrace().Gl(2031, {1, 0x5000}).Closed());
    Outcome const done = Run("replay FILE");
    EXPECT_NE(done.err.find("what textures points at was not recorded"), std::string::npos) << done.err;
    EXPECT_EQ(done.code, 1);
}

// A recording that was killed is replayed as far as it goes.
TEST_F(Replay, ATraceWithoutFooterIsReplayedUpToItsEnd)
{
    ReplayTrace const trace = ReplayTrace().ClearColor(0, 0, 1).Clear().Swap(0, 0, 0, 255);
    Outcome const done = Verify(trace.Open());
    EXPECT_EQ(done.err, "FILE: the recording was not closed: there is no footer at offset " +
                            std::to_string(trace.Size()) + "; replaying up to there\n");
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.code, 0);
}

// So is one that ends inside a record.
TEST_F(Replay, ATraceThatEndsInsideARecordIsReplayedUpToTheLastWholeOne)
{
    ReplayTrace trace;
    trace.ClearColor(0, 0, 1).Clear().Swap(0, 0, 0, 255);
    std::string const whole = trace.Open();
    Outcome const done = Verify(trace.Clear().Open().substr(0, whole.size() + 8));
    EXPECT_NE(done.err.find("replaying up to the last whole record"), std::string::npos) << done.err;
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.code, 0);
}

// What stands behind damage cannot be read: the frames ahead of it are replayed, and the run fails.
TEST_F(Replay, DamageEndsTheReplayWithAFailure)
{
    ReplayTrace trace;
    trace.ClearColor(0, 0, 1).Clear().Swap(0, 0, 0, 255);
    uint64_t const damage = trace.Size();
    Outcome const done = Verify(trace.Record(999, {}).Clear().Closed());
    EXPECT_EQ(done.out, "1 frames, 4 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.err,
              "nebtrace: FILE: at offset " + std::to_string(damage) +
                  ": no record has the ID 999; nebtrace repair keeps what is whole ahead of that\n");
    EXPECT_EQ(done.code, 1);
}

// What is no trace never reaches the driver.
TEST_F(Replay, AFileThatIsNoTraceIsRefused)
{
    Write(std::string("something else altogether"));
    Outcome const done = Run("replay FILE");
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(done.err,
              "nebtrace: FILE: at offset 0: this is no trace: it does not begin with \"NEBTrace\"\n");
    EXPECT_EQ(done.code, 1);
}

// Queries are only made when asked for, and then held against the recording, in the recording's names.
TEST_F(Replay, QueriesAreComparedWhenAskedFor)
{
    ReplayTrace trace;
    // glBindTexture(GL_TEXTURE_2D, 77); glGetIntegerv(GL_TEXTURE_BINDING_2D) = 77, then recorded as 78
    trace.Gl(2007, {0x0DE1, 77}).Gl(2064, {0x8069, 0x5000, 1, 77}).Gl(2064, {0x8069, 0x5000, 1, 78});
    Write(trace.Swap(0, 0, 0, 0).Closed());
    EXPECT_EQ(Run("replay FILE").err, "");
    Outcome const done = Run("replay --check-queries FILE");
    EXPECT_EQ(done.err, "call 3 glGetIntegerv: answered otherwise: data is {77}, not {78}\n");
}

// A range of frames still needs all that came before it.
TEST_F(Replay, FramesOutsideTheRangeAreReplayedButNotCompared)
{
    ReplayTrace trace;
    trace.ClearColor(1, 0, 0).Clear().Swap(0, 1, 1, 1).Clear().Swap(1, 255, 0, 0).Clear().Swap(2, 1, 1, 1);
    Write(trace.Closed());
    Outcome const done = Run("replay --verify --frames 1-1 FILE");
    EXPECT_EQ(done.out, "1 frames, 6 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.code, 0);
}

// Each thread has a context of its own current: calls follow the thread that made them.
TEST_F(Replay, CallsGoToTheContextOfTheirThread)
{
    ReplayTrace trace;
    trace.ClearColor(1, 0, 0).Record(1, Payload().U64(8));
    trace.MakeCurrent(0x31, 0x41).ClearColor(0, 1, 0);
    trace.Record(1, Payload().U64(7)).Clear().Swap(0, 255, 0, 0);
    Outcome const done = Verify(trace.Closed());
    EXPECT_EQ(done.out, "1 frames, 6 calls replayed\n1 frames compared, 0 differ\n");
    EXPECT_EQ(done.err, "");
}
