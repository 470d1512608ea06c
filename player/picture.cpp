#include "player/picture.h"
#include <algorithm>
#include <cstdlib>

namespace nebtrace::player
{
namespace
{
constexpr size_t kChannels = 4;

unsigned ChannelDifference(uint8_t one, uint8_t other)
{
    return static_cast<unsigned>(std::abs(one - other));
}
}  // namespace

std::optional<Picture> RecordedPicture(Call const& call)
{
    Bytes const bytes = call.Data("pixels");
    if (bytes.empty())
        return std::nullopt;
    Picture picture;
    picture.width = call.Int("width");
    picture.height = call.Int("height");
    bool const whole =
        picture.width > 0 && picture.height > 0 &&
        uint64_t{static_cast<uint32_t>(picture.width)} * static_cast<uint32_t>(picture.height) * kChannels ==
            bytes.size;
    if (!whole)
        throw BadRecord("its pixels are not " + std::to_string(picture.width) + " times " +
                        std::to_string(picture.height));
    picture.pixels.assign(bytes.begin(), bytes.end());
    return picture;
}

Difference Compare(Picture const& one, Picture const& other)
{
    Difference difference;
    if (one.width != other.width || one.height != other.height)
    {
        difference.pixels = std::max(one.pixels.size(), other.pixels.size()) / kChannels;
        difference.largest = 255;
        return difference;
    }
    for (size_t pixel = 0; pixel + kChannels <= one.pixels.size(); pixel += kChannels)
    {
        unsigned largest = 0;
        for (size_t i = pixel; i < pixel + kChannels; ++i)
            largest = std::max(largest, ChannelDifference(one.pixels[i], other.pixels[i]));
        difference.pixels += largest != 0 ? 1 : 0;
        difference.largest = std::max(difference.largest, largest);
    }
    return difference;
}

Picture DifferencePicture(Picture const& one, Picture const& other)
{
    Picture picture;
    picture.width = std::min(one.width, other.width);
    picture.height = std::min(one.height, other.height);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
        {
            auto const at = [x, y](Picture const& from, size_t channel) {
                auto const pixel =
                    static_cast<size_t>(y) * static_cast<size_t>(from.width) + static_cast<size_t>(x);
                return from.pixels[pixel * kChannels + channel];
            };
            unsigned const alpha = ChannelDifference(at(one, 3), at(other, 3));
            for (size_t channel = 0; channel < 3; ++channel)
            {
                // A difference of alpha alone has to show as well.
                unsigned const seen =
                    std::max(ChannelDifference(at(one, channel), at(other, channel)), alpha / 2);
                picture.pixels.push_back(static_cast<uint8_t>(seen == 0 ? 0 : std::min(64 + seen * 3, 255U)));
            }
            picture.pixels.push_back(255);
        }
    return picture;
}
}  // namespace nebtrace::player
