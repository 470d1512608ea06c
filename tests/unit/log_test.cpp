#include "support/log.h"
#include <gtest/gtest.h>

namespace
{

template <typename Print>
std::string Printed(Print print)
{
    testing::internal::CaptureStdout();
    print();
    return testing::internal::GetCapturedStdout();
}

}  // namespace

// Scripts on the target look for these exact prefixes.
TEST(Log, HasThreeFormats)
{
    EXPECT_EQ("NEBTRACE(M) Recording... Current Frame: 3\n",
              Printed([] { LogMessage("Recording... Current Frame: %d", 3); }));
    EXPECT_EQ("NEBTRACE(W) WARNING: no file\n", Printed([] { LogWarning("no %s", "file"); }));
    EXPECT_EQ("NEBTRACE(W) ERROR: bad\n", Printed([] { LogError("bad"); }));
}

// A few texts are printed as they stand.
TEST(Log, RawTextsHaveNoPrefix)
{
    EXPECT_EQ("Error refering empty TraceScopedPtr\n",
              Printed([] { LogRaw("Error refering empty %s\n", "TraceScopedPtr"); }));
}

// A text that came from outside is an argument, never a format.
TEST(Log, PercentSignsInArgumentsStayAsTheyAre)
{
    EXPECT_EQ("NEBTRACE(M) 100%s %d\n", Printed([] { LogMessage("%s", "100%s %d"); }));
}
