// What is learned of a trace before it is replayed, and the order in which it is.
#include "player/survey.h"
#include "tests/reader/trace_builder.h"
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>

using namespace nebtrace;
using namespace nebtrace::player;

namespace
{
class SurveyTest : public testing::Test
{
protected:
    ~SurveyTest() override { std::remove(m_path.c_str()); }

    Survey Take(Trace const& trace)
    {
        std::ofstream(m_path, std::ios::binary) << trace.All();
        Survey survey;
        std::string error;
        EXPECT_TRUE(TakeSurvey(m_path, survey, error)) << error;
        return survey;
    }

    // The IDs of the records in the order of replay.
    std::vector<uint16_t> Order(Survey const& survey) const
    {
        Source source(m_path, survey);
        std::vector<uint16_t> order;
        Record record;
        while (source.Next(record))
            order.push_back(record.id);
        return order;
    }

private:
    std::string const m_path = testing::TempDir() + "nebtrace_survey_" +
                               testing::UnitTest::GetInstance()->current_test_info()->name() + ".nebt";
};

// glFinish of ES 2.
Trace& Finish(Trace& trace) { return trace.Record(2045, Payload().U32(0)); }
}  // namespace

// The state of the first frame stands at the end of an optimized file and has to come first.
TEST_F(SurveyTest, ASnapshotAtTheEndIsReplayedAheadOfTheFrames)
{
    Trace trace;
    trace.Flush().SwapBuffers(7);
    uint64_t const position = trace.Size();
    Finish(trace.Record(4)).Record(4).Footer(position);
    Survey const survey = Take(trace);
    EXPECT_EQ(survey.snapshot, position);
    EXPECT_EQ(Order(survey), (std::vector<uint16_t>{4, 2045, 4, 2046, 1022}));
}

// Without a position the file is replayed straight through; a state stands where it is.
TEST_F(SurveyTest, WithoutAPositionTheFileIsReplayedAsItStands)
{
    Trace trace;
    Finish(trace.Record(4)).Record(4).Flush().SwapBuffers(7).Footer(0);
    Survey const survey = Take(trace);
    EXPECT_EQ(survey.snapshot, 0u);
    EXPECT_EQ(Order(survey), (std::vector<uint16_t>{4, 2045, 4, 2046, 1022}));
}

// The last record of a recording that was killed can end in what looks like a footer with a position.
TEST_F(SurveyTest, WhatOnlyLooksLikeAFooterGivesNoSnapshot)
{
    Trace trace;
    trace.SwapBuffers(0);
    Payload image;
    image.Words({0, 0x0DE1, 0, 1, 1, 1, 0, 0x1903, 0x1401, 0x10, 6});
    image.U8(0x13).U8(0x10).U32(62).U32(0);
    trace.Record(2106, image);
    Survey const survey = Take(trace);
    EXPECT_EQ(survey.end, EndState::NoFooter);
    EXPECT_EQ(survey.snapshot, 0u);
    EXPECT_EQ(Order(survey).front(), 1022);
}

// Surfaces that no record makes get the size of their frames, or of what is drawn on them.
TEST_F(SurveyTest, TheLargestFrameAndViewportAreFound)
{
    Trace trace;
    trace.Record(2142, Payload().Words({0, 10, 20, 100, 50}));
    Payload swap;
    swap.Words({0x3000, 1, 0x10, 0x30, 0, 2, 1, 0x1234, 8}).Fill(8, 9);
    Survey const survey = Take(trace.Record(1022, swap).Footer(0));
    EXPECT_EQ(survey.viewport.width, 110);
    EXPECT_EQ(survey.viewport.height, 70);
    EXPECT_EQ(survey.surfaces.at(0x30).width, 2);
    EXPECT_EQ(survey.surfaces.at(0x30).height, 1);
    EXPECT_EQ(survey.framesWithPixels, 1u);
}

// A damaged size must not ask the driver for a surface that fills the memory.
TEST_F(SurveyTest, ImpossibleSizesAreLimited)
{
    Trace trace;
    trace.Record(2142, Payload().Words({0, 0x7FFFFFFF, 0, 0x7FFFFFFF, 0x80000000}));
    Survey const survey = Take(trace.Footer(0));
    EXPECT_EQ(survey.viewport.width, 8192);
    EXPECT_EQ(survey.viewport.height, 0);
}

// Locations belong to a program's link, and programs are linked more than once.
TEST_F(SurveyTest, AttributeLocationsAreKeptByLink)
{
    Trace trace;
    auto const link = [&trace] { trace.Record(2090, Payload().Words({0, 3})); };
    auto const location = [&trace](uint32_t answer) {
        trace.Record(2058, Payload().Words({0, answer, 3, 0x10, 1}).Text("a"));
    };
    link();
    location(2);
    link();
    location(5);
    location(0xFFFFFFFF);
    Survey const survey = Take(trace.Footer(0));
    EXPECT_EQ(survey.attributes.at({Part::Frames, 3, 1}).at("a"), 2);
    EXPECT_EQ(survey.attributes.at({Part::Frames, 3, 2}).at("a"), 5);
}
