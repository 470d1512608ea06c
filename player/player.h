// Replays a trace on the machine's own EGL and OpenGL ES.
#pragma once
#include "player/picture.h"
#include "player/report.h"
#include "player/survey.h"
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace nebtrace::player
{
struct ReplayOptions
{
    bool window = false;
    bool checkQueries = false;
    // Whether the driver is asked for an error after every call. Without it, calls are as fast as they can
    // be.
    bool checkErrors = true;
    bool readFrames = false;  // hand each frame's picture to `frame`
    bool timeFrames = false;  // wait for each frame to be drawn, and keep its time
    uint64_t firstFrame = 0;  // of those that are handed over and timed; all before it are replayed too
    uint64_t lastFrame = UINT64_MAX;
};

struct ReplayedFrame
{
    uint64_t index = 0;   // in the file
    uint32_t number = 0;  // in the application's run
    Picture replayed;
    std::optional<Picture> recorded;
};

struct ReplayEvents
{
    std::function<void(ReplayedFrame const&)> frame;
    Reporter problem;
    // Told at each frame's end, whether it is in the range or not; may be empty. Its time is no frame's.
    std::function<void(uint64_t frame)> progress = {};
};

struct ReplayResult
{
    uint64_t calls = 0;
    uint64_t frames = 0;  // in the range
    uint64_t callsInRange = 0;
    std::vector<double> frameTimes;  // seconds
    std::string failure;             // empty unless replay stopped: the record and why
};

// `survey`: of the same file. Throws DriverFailure where there is no driver to begin with.
ReplayResult Replay(std::string const& path, Survey const& survey, ReplayOptions const& options,
                    ReplayEvents const& events);
}  // namespace nebtrace::player
