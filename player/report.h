// What a replay has to say about single calls.
#pragma once
#include "player/call.h"
#include <functional>
#include <string>

namespace nebtrace::player
{
enum class Problem : uint8_t
{
    GlError,      // the replay raised an error that the recording did not
    NotReplayed,  // the record holds less than the call needs, or the driver lacks the function
    QueryDiffers  // a query answered otherwise than in the recording
};

using Reporter = std::function<void(Problem, Call const&, std::string const&)>;
}  // namespace nebtrace::player
