// `nebtrace repair`: what is kept of a trace that was cut short, what is said of the rest, and what is
// refused.
#include "run_command.h"

namespace
{
class RepairTest : public CommandTest
{
protected:
    Outcome Repair() const { return Run("repair FILE -o FILE.fixed"); }

    // The bytes of the repaired trace, which is removed; "none" if there is none.
    std::string Fixed() const { return Run("", "cat FILE.fixed || printf none; rm -f FILE.fixed").out; }

    // What stands in the folder under the trace's name and more.
    std::string Beside() const { return Run("", "ls FILE?* 2>/dev/null").out; }

    // What the repair of a trace says behind the counts of records and frames.
    void ExpectRepaired(std::string const& bytes, std::string const& expected, std::string const& said)
    {
        Write(bytes);
        Outcome const outcome = Repair();
        EXPECT_EQ(0, outcome.code);
        EXPECT_EQ("", outcome.err);
        EXPECT_EQ(said, outcome.out);
        EXPECT_EQ(expected, Fixed());
        EXPECT_EQ("", Beside());
    }

    void ExpectRefused(std::string const& arguments, std::string const& reason)
    {
        Outcome const outcome = Run("repair " + arguments);
        EXPECT_EQ(1, outcome.code);
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ("nebtrace: " + reason + "\n", outcome.err);
    }
};

// One byte a letter: the footer that a repaired trace gets.
std::string Footer(uint64_t position) { return Trace::WithoutHeader().Footer(position).All(); }

// A frame on thread 7, then the state of EGL and of ES 2, which begins with a thread change.
Trace FrameAndState()
{
    Trace trace;
    trace.Thread(7).Flush().SwapBuffers(0);  // 14, 10 and 42 bytes
    trace.Thread(8).Record(2).Record(1002, Payload().Words({0x3000, 1})).Record(2);
    return trace.Record(4).Flush().Record(4);
}
constexpr uint64_t kStateBegin = 128;
}  // namespace

// Wherever a trace is cut, each whole record stays as it is, and the footer follows it.
TEST_F(RepairTest, EveryWholeRecordIsKept)
{
    Trace trace;
    std::vector<size_t> ends{trace.Size()};
    trace.Thread(7);
    ends.push_back(trace.Size());
    trace.Flush();
    ends.push_back(trace.Size());
    trace.SwapBuffers(0);
    ends.push_back(trace.Size());
    trace.Record(2013, Payload().Fill(30, 9));
    ends.push_back(trace.Size());
    size_t whole = 0;
    for (size_t cut = ends[0]; cut <= trace.Size(); ++cut)
    {
        whole = whole + 1 < ends.size() && ends[whole + 1] == cut ? whole + 1 : whole;
        Write(trace.Cut(cut));
        EXPECT_EQ(0, Repair().code) << cut;
        EXPECT_EQ(trace.Cut(ends[whole]) + Footer(0), Fixed()) << cut;
    }
}

// What is dropped is told by its size, its place, and the record that it would have become.
TEST_F(RepairTest, TheBrokenRecordIsNamed)
{
    Trace trace;
    trace.Flush().SwapBuffers(3);
    std::string const kept = trace.All();
    std::string const counts = "FILE.fixed: 2 records and 1 frame kept, dropped ";
    trace.Record(2013, Payload().Fill(30, 9));
    ExpectRepaired(trace.Cut(114 + 5), kept + Footer(0),
                   counts + "5 bytes at offset 114: the beginning of a record\n");
    ExpectRepaired(trace.Cut(114 + 20), kept + Footer(0),
                   counts + "20 bytes at offset 114: the beginning of glBufferData, 30 bytes long\n");
    trace = Trace().Flush().SwapBuffers(3).Thread(9);
    ExpectRepaired(trace.Cut(114 + 13), kept + Footer(0),
                   counts + "13 bytes at offset 114: the beginning of a thread change\n");
}

// A recording that ended with its application has whole records and no footer: it loses nothing.
TEST_F(RepairTest, OnlyTheFooterMayBeMissing)
{
    ExpectRepaired(Trace().Flush().All(), Trace().Flush().Footer(0).All(),
                   "FILE.fixed: 1 record and 0 frames kept, nothing dropped: only the footer was missing\n");
}

// A whole trace is copied, so that a script may repair whatever it is given; a header alone is a trace of
// nothing.
TEST_F(RepairTest, AWholeTraceIsCopied)
{
    std::string const whole = FrameAndState().Footer(kStateBegin).All();
    ExpectRepaired(
        whole, whole,
        "FILE.fixed: 10 records and 1 frame kept, nothing dropped: FILE is whole and was copied\n");
    ExpectRepaired(Trace().All(), Trace().Footer(0).All(),
                   "FILE.fixed: 0 records and 0 frames kept, nothing dropped: only the footer was missing\n");
}

// Zeros at the end are what a file was grown by ahead of its writing.
TEST_F(RepairTest, ZerosAreTrimmed)
{
    ExpectRepaired(Trace().Flush().Raw(Payload().Fill(4000, 0)).All(), Trace().Flush().Footer(0).All(),
                   "FILE.fixed: 1 record and 0 frames kept, dropped 4000 bytes at offset 72: zeros\n");
}

// A state of ES 2 that stands whole behind the frames is found again, whatever is left of the footer: its
// place is that of the thread change in front of it.
TEST_F(RepairTest, AStateBehindTheFramesIsFound)
{
    Trace const trace = FrameAndState();
    std::string const whole = FrameAndState().Footer(kStateBegin).All();
    std::string const counts = "FILE.fixed: 10 records and 1 frame kept, ";
    std::string const state = "; the captured state stands at offset 128\n";
    ExpectRepaired(trace.All(), whole, counts + "nothing dropped: only the footer was missing" + state);
    for (size_t left = 2; left < 10; ++left)
        ExpectRepaired(whole.substr(0, trace.Size() + left), whole,
                       counts + "dropped " + std::to_string(left) +
                           " bytes at offset 190: the beginning of the footer" + state);
    ExpectRepaired(whole.substr(0, trace.Size() + 1), whole,
                   counts + "dropped 1 byte at offset 190: the beginning of a record" + state);
}

// Without a thread change in front, the state begins at its first marker.
TEST_F(RepairTest, AStateOfTheSameThreadBeginsAtItsMarker)
{
    Trace trace;
    trace.Thread(7).SwapBuffers(0).Record(4).Flush().Record(4);
    ExpectRepaired(
        trace.All(), trace.All() + Footer(118),
        "FILE.fixed: 5 records and 1 frame kept, nothing dropped: only the footer was missing; the "
        "captured state stands at offset 118\n");
}

// A part of a state must not be replayed as one: the frames are then the whole trace.
TEST_F(RepairTest, AStateThatWasCutIsNotPointedAt)
{
    Trace const trace = FrameAndState();
    for (size_t const cut : {size_t{148}, size_t{162}, size_t{168}, size_t{184}})
    {
        Write(trace.Cut(cut));
        Outcome const outcome = Repair();
        EXPECT_NE(
            std::string::npos,
            outcome.out.find("nothing dropped: only the footer was missing; the captured state behind the "
                             "frames is not known to be whole and serves no replay\n"))
            << cut << ": " << outcome.out;
        EXPECT_EQ(trace.Cut(cut) + Footer(0), Fixed()) << cut;
    }
}

// The state of ES 1 has no closing marker: only what is left of the footer shows that it is whole.
TEST_F(RepairTest, AStateOfEs1NeedsTheFootersBeginning)
{
    Trace trace;
    trace.SwapBuffers(0).Record(2).Record(2).Record(3).Record(3034, Payload().Words({0, 1}));
    std::string const whole = Trace(trace).Footer(104).All();
    for (size_t left = 2; left < 10; ++left)
    {
        Write(whole.substr(0, trace.Size() + left));
        Repair();
        EXPECT_EQ(whole, Fixed()) << left;
    }
    for (size_t const left : {size_t{0}, size_t{1}})
    {
        Write(whole.substr(0, trace.Size() + left));
        Repair();
        EXPECT_EQ(trace.All() + Footer(0), Fixed()) << left;
    }
}

// A state ahead of the frames needs no pointer, and one that frames follow is none at the end.
TEST_F(RepairTest, AStateAheadOfFramesIsNotPointedAt)
{
    Trace trace;
    trace.Record(2).Record(2).Record(4).Flush().Record(4);
    EXPECT_EQ(0, (Write(trace), Repair()).code);
    EXPECT_EQ(trace.All() + Footer(0), Fixed());
    trace.Flush().SwapBuffers(0).Flush();
    EXPECT_EQ(0, (Write(trace), Repair()).code);
    EXPECT_EQ(trace.All() + Footer(0), Fixed());
    Trace behind = FrameAndState().Flush();
    EXPECT_EQ(0, (Write(behind), Repair()).code);
    EXPECT_EQ(behind.All() + Footer(0), Fixed());
}

// From where the walk has lost its step nothing can be kept, and the reason is said.
TEST_F(RepairTest, WhatNoReaderCanFollowIsDropped)
{
    ExpectRepaired(
        Trace().Flush().Record(5).Flush().Footer(0).All(), Trace().Flush().Footer(0).All(),
        "FILE.fixed: 1 record and 0 frames kept, dropped 26 bytes at offset 72: no record has the ID 5\n");
    ExpectRepaired(
        Trace().Flush().Footer(0).Flush().All(), Trace().Flush().Footer(0).All(),
        "FILE.fixed: 1 record and 0 frames kept, dropped 20 bytes at offset 72: a footer with other bytes "
        "behind it\n");
    ExpectRepaired(
        Trace().Flush().Footer(500).All(), Trace().Flush().Footer(0).All(),
        "FILE.fixed: 1 record and 0 frames kept, dropped 10 bytes at offset 72: the footer's snapshot "
        "position 500 is outside the records\n");
}

// What has no header is no trace; nothing is made of it, and nothing in its place is touched.
TEST_F(RepairTest, WhatIsNoTraceIsRefused)
{
    Write(Trace().Cut(61));
    ExpectRefused("FILE -o FILE.fixed",
                  "FILE: at offset 0: the header has 62 bytes, the file 61; nothing was recorded before it "
                  "ended: record again");
    Write(std::string(100, 'x'));
    ExpectRefused("FILE -o FILE.fixed",
                  "FILE: at offset 0: this is no trace: it does not begin with \"NEBTrace\"");
    ExpectRefused("FILE.missing -o FILE.fixed", "FILE.missing: No such file or directory");
    EXPECT_EQ("none", Fixed());
}

// The trace itself is never written to, by whatever name it is given.
TEST_F(RepairTest, TheTraceItselfIsRefused)
{
    Write(Trace().Flush());
    ExpectRefused("FILE -o FILE", "FILE is the trace itself: the repaired one needs a file of its own");
    Run("", "ln -s FILE FILE.fixed");
    ExpectRefused("FILE -o FILE.fixed",
                  "FILE.fixed is the trace itself: the repaired one needs a file of its own");
    EXPECT_EQ(Trace().Flush().All(), Run("", "cat FILE; rm FILE.fixed").out);
}

// Where nothing can be written, nothing is left behind; a device is not replaced by a file.
TEST_F(RepairTest, AnOutputThatCannotBeWrittenIsRefused)
{
    Write(Trace().Flush());
    ExpectRefused("FILE -o FILE.folder/out", "FILE.folder/out: cannot be written: No such file or directory");
    ExpectRefused("FILE -o /dev/null", "/dev/null: not a regular file");
    ExpectRefused("FILE -o /tmp", "/tmp: not a regular file");
    // Room for a part of the file only.
    Write(Trace().Record(2013, Payload().Fill(100000, 9)));
    Outcome const full = Run("repair FILE -o FILE.fixed", "trap '' XFSZ; ulimit -f 8; @");
    EXPECT_EQ(1, full.code);
    EXPECT_EQ("nebtrace: FILE.fixed: cannot be written: File too large\n", full.err);
    EXPECT_EQ("", Beside());
}

// An older file of the name is replaced as a whole, also behind a link.
TEST_F(RepairTest, AnOlderFileIsReplaced)
{
    Write(Trace().Flush());
    Run("", "echo old > FILE.old; ln -s FILE.old FILE.fixed");
    EXPECT_EQ(0, Repair().code);
    EXPECT_EQ(Trace().Flush().Footer(0).All(),
              Run("", "cat FILE.old; test -h FILE.fixed && rm FILE.old").out);
    EXPECT_EQ("none", Fixed());
}

// The command is told like the others, and a forgotten output is a mistake on the command line.
TEST_F(RepairTest, TheCommandIsExplained)
{
    Outcome const help = Run("repair --help");
    EXPECT_EQ(0, help.code);
    EXPECT_NE(std::string::npos, help.out.find("Keep the whole records of a trace that was cut short"));
    EXPECT_EQ(2, Run("repair FILE").code);
    EXPECT_EQ(2, Run("repair").code);
}
