// Frames held against each other.
#include "player/picture.h"
#include <gtest/gtest.h>

using namespace nebtrace::player;

namespace
{
Picture TwoPixels(std::vector<uint8_t> pixels) { return {2, 1, std::move(pixels)}; }
}  // namespace

// A pixel counts once, however many of its channels differ; alpha is a channel.
TEST(Pictures, DifferencesAreCountedByPixelAndMeasuredByChannel)
{
    Picture const one = TwoPixels({10, 20, 30, 255, 1, 2, 3, 4});
    Picture const other = TwoPixels({10, 20, 30, 255, 4, 2, 9, 0});
    Difference const difference = Compare(one, other);
    EXPECT_EQ(difference.pixels, 1u);
    EXPECT_EQ(difference.largest, 6u);
    EXPECT_EQ(Compare(one, one).pixels, 0u);
}

// Pictures of different sizes never count as alike.
TEST(Pictures, AnotherSizeDiffersInEveryPixel)
{
    Difference const difference = Compare(TwoPixels({0, 0, 0, 0, 0, 0, 0, 0}), Picture{1, 1, {0, 0, 0, 0}});
    EXPECT_EQ(difference.pixels, 2u);
    EXPECT_EQ(difference.largest, 255u);
}

// The picture of a difference of one step has to show on a screen.
TEST(Pictures, TheSmallestDifferenceShows)
{
    Picture const picture =
        DifferencePicture(TwoPixels({1, 0, 0, 255, 7, 7, 7, 7}), TwoPixels({0, 0, 0, 255, 7, 7, 7, 7}));
    EXPECT_EQ(picture.pixels, (std::vector<uint8_t>{67, 0, 0, 255, 0, 0, 0, 255}));
}
