// Frames as text.
#include "tools/perf/output.h"
#include <gtest/gtest.h>

using namespace perf;

namespace
{
std::vector<std::string> const kNames = {"Draws", "Bytes (\"up\"), all", "CPU driver time (us)"};
Frame const kFrame{3, 50000, 16667, {2, 0, 4294967295}, {102, 7, 4294967295}};
Source const kSource{4711, "cube", kNames};
}  // namespace

// The fields of a frame, in the order of the header; names that would break the line are quoted.
TEST(Csv, ALineForEachFrame)
{
    EXPECT_EQ("pid,frame,time_us,frame_us,Draws,\"Bytes (\"\"up\"\"), all\",CPU driver time (us)\n",
              CsvHeader(kNames));
    EXPECT_EQ("4711,3,50000,16667,2,0,4294967295\n", CsvLine(kSource, kFrame));
}

// One object on one line, with the counters by name.
TEST(Json, AnObjectForEachFrame)
{
    EXPECT_EQ(
        "{\"pid\":4711,\"name\":\"cube\",\"frame\":3,\"time_us\":50000,\"frame_us\":16667,"
        "\"counters\":{\"Draws\":2,\"Bytes (\\\"up\\\"), all\":0,\"CPU driver time (us)\":4294967295},"
        "\"totals\":{\"Draws\":102,\"Bytes (\\\"up\\\"), all\":7,\"CPU driver time (us)\":4294967295}}\n",
        JsonLine(kSource, kFrame));
}

// Names are bytes of the application: they need not be text, and the line is JSON all the same.
TEST(Json, NamesThatAreNoText)
{
    std::vector<std::string> const names = {"a\xFF\n"};
    Source const source{1, "\xC3", names};
    EXPECT_EQ("{\"pid\":1,\"name\":\"\xEF\xBF\xBD\",\"frame\":1,\"time_us\":0,\"frame_us\":0,"
              "\"counters\":{\"a\xEF\xBF\xBD\\n\":5},\"totals\":{\"a\xEF\xBF\xBD\\n\":6}}\n",
              JsonLine(source, Frame{1, 0, 0, {5}, {6}}));
}

// A line for people leaves out what did not happen.
TEST(Plain, LeavesOutWhatDidNotHappen)
{
    FrameRate rate;
    rate.Add(20000, 500);
    EXPECT_EQ(
        "frame 3: 50.0 frames/s, CPU driver time 500 us a frame; Draws 2, CPU driver time (us) 4294967295",
        PlainText(kSource, kFrame, rate));
}
