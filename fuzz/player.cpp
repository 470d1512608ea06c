// A trace file, replayed on a driver that does nothing: all that stands between a record and the driver.
#include "player/player.h"
#include "fuzz/memory_file.h"

using namespace nebtrace::player;

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static fuzz::MemoryFile const file;
    file.Hold(data, size);
    Survey survey;
    std::string error;
    fuzz::Require(TakeSurvey(file.Path(), survey, error), "a file that can be opened can be surveyed");
    fuzz::Require(survey.endOffset <= size, "the end lies inside the file");
    ReplayOptions options;
    options.checkQueries = true;
    options.readFrames = true;
    uint64_t frames = 0;
    ReplayEvents events;
    events.frame = [&frames](ReplayedFrame const& frame) {
        ++frames;
        if (frame.recorded)
            DifferencePicture(frame.replayed, *frame.recorded);
    };
    events.problem = [](Problem, Call const& call, std::string const& what) {
        fuzz::Require(!call.Name().empty() && !what.empty(), "a problem has a call and a reason");
    };
    try
    {
        ReplayResult const result = Replay(file.Path(), survey, options, events);
        fuzz::Require(frames >= result.frames && frames <= survey.frames, "frames are those of the file");
    } catch (DriverFailure const&)
    {
        // There is nothing to begin with.
    }
    return 0;
}
