// What two recordings of one program may differ in, and what not.
#include "../reader/trace_builder.h"
#include "trace_comparison.h"
#include <gtest/gtest.h>
#include <sstream>

namespace
{
using Lines = std::vector<std::string>;

// The differences between two traces.
Lines Differences(Trace const& one, Trace const& other)
{
    std::istringstream left(one.All());
    std::istringstream right(other.All());
    nebtrace::Reader leftReader(left);
    nebtrace::Reader rightReader(right);
    TraceComparison comparison(leftReader, rightReader);
    bool const same = comparison.Run();
    EXPECT_EQ(same, comparison.Differences().empty());
    return comparison.Differences();
}

// glBufferSubData of three bytes to GL_ARRAY_BUFFER: target, offset, size; pointer, count, the bytes.
Payload Part(uint32_t pointer, unsigned last)
{
    return Payload().U32(0).Words({0x8892, 4, 3}).Words({pointer, 3}).U8(1).U8(2).U8(last);
}

// glVertexAttribPointer of attribute 1: three floats, not normalized, without a stride.
Payload AttribAt(uint32_t pointer)
{
    return Payload().U32(0).Words({1, 3, 0x1406}).U8(0).Words({0, pointer});
}

// eglSwapInterval: result, display, interval.
Payload Interval(uint32_t display) { return Payload().Words({0x3000, 1, display, 1}); }
}  // namespace

// Addresses and thread IDs are new in each run.
TEST(TraceComparison, AddressesAndThreadsMayDiffer)
{
    Trace const one = Trace().Thread(7).Record(2014, Part(0xAAAA0000, 3)).Footer(0);
    Trace const other = Trace().Thread(900).Record(2014, Part(0x12345678, 3)).Footer(0);
    EXPECT_EQ(Lines{}, Differences(one, other));
}

// The bytes behind an address are the program's own.
TEST(TraceComparison, ContentsMayNotDiffer)
{
    Trace const one = Trace().Flush().Record(2014, Part(0xAAAA0000, 3)).Footer(0);
    Trace const other = Trace().Flush().Record(2014, Part(0xAAAA0000, 4)).Footer(0);
    EXPECT_EQ(Lines{"record 2 glBufferSubData, data: contents differ"}, Differences(one, other));
}

// A null pointer says something of the call.
TEST(TraceComparison, ANullPointerIsNoAddress)
{
    Trace const one = Trace().Record(2014, Part(0xAAAA0000, 3));
    Trace const other = Trace().Record(2014, Part(0, 3));
    Lines const expected{"record 1 glBufferSubData, data: pointers that cannot be the same"};
    EXPECT_EQ(expected, Differences(one, other));
    EXPECT_EQ(expected, Differences(other, one));
}

// What stands in a pointer's place while a buffer is bound is the program's own.
TEST(TraceComparison, OffsetsIntoBuffersMayNotDiffer)
{
    EXPECT_EQ(Lines{}, Differences(Trace().Record(2141, AttribAt(12)), Trace().Record(2141, AttribAt(12))));
    EXPECT_EQ(Lines{"record 1 glVertexAttribPointer, pointer: values differ"},
              Differences(Trace().Record(2141, AttribAt(12)), Trace().Record(2141, AttribAt(16))));
}

// A display may have another handle, but only one.
TEST(TraceComparison, AHandleStandsForOneAndTheSame)
{
    Trace const one = Trace().Record(1029, Interval(0x11)).Record(1029, Interval(0x11));
    EXPECT_EQ(Lines{}, Differences(one, Trace().Record(1029, Interval(0x99)).Record(1029, Interval(0x99))));
    Trace const other = Trace().Record(1029, Interval(0x99)).Record(1029, Interval(0x98));
    Lines const expected{"record 2 eglSwapInterval, dpy: values differ"};
    EXPECT_EQ(expected, Differences(one, other));
    EXPECT_EQ(expected, Differences(other, one));
}

// Two threads of the one recording are not one thread of the other.
TEST(TraceComparison, ThreadsAreNotMixedUp)
{
    Trace const one = Trace().Thread(1).Flush().Thread(2).Flush();
    Trace const other = Trace().Thread(5).Flush().Thread(5).Flush();
    EXPECT_FALSE(Differences(one, other).empty());
    EXPECT_FALSE(Differences(other, one).empty());
}

// Neither an error nor a plain value is free, nor how many records there are.
TEST(TraceComparison, AllElseMayNotDiffer)
{
    EXPECT_EQ(Lines{"record 1 glFlush: the error words differ"},
              Differences(Trace().Flush(), Trace().Record(2046, Payload().U32(0x502))));
    EXPECT_EQ(Lines{"record 1: IDs 2046 and 2045"},
              Differences(Trace().Flush(), Trace().Record(2045, Payload().U32(0))));
    EXPECT_EQ(Lines{"behind record 1: one recording has more records than the other"},
              Differences(Trace().Flush(), Trace().Flush().Flush()));
    EXPECT_EQ(Lines{"the end: the states stand elsewhere"},
              Differences(Trace().Flush().Footer(0), Trace().Flush().Footer(62)));
}
