#include "player/player.h"
#include "player/egl_player.h"
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
using Clock = std::chrono::steady_clock;

std::unique_ptr<Driver> OpenDriver()
{
    std::string error;
    std::unique_ptr<Driver> driver = Driver::Open(error);
    if (!driver)
        throw DriverFailure(error);
    return driver;
}

class Replayer
{
public:
    Replayer(std::string const& path, Survey const& survey, ReplayOptions const& options,
             ReplayEvents const& events)
        : m_survey(survey), m_options(options), m_events(events), m_source(path, survey),
          m_driver(OpenDriver()), m_egl(*m_driver, survey, options.window, events.problem),
          m_gl(*m_driver, survey, m_egl, {options.checkErrors, options.checkQueries}, events.problem)
    {
    }

    ReplayResult Run();

private:
    void Play(Record const& record);
    void PlayCall(Record const& record);
    void Dispatch(Record const& record, Call const& call);
    void EndFrame(Record const& record, Call const& call);
    Picture ReadFrame(Call const& call, std::optional<Picture> const& recorded, uint64_t thread);
    void StepMarker(Record const& record);
    bool InRange(uint64_t frame) const
    {
        return frame >= m_options.firstFrame && frame <= m_options.lastFrame;
    }

    Survey const& m_survey;
    ReplayOptions const& m_options;
    ReplayEvents const& m_events;
    Source m_source;
    std::unique_ptr<Driver> m_driver;
    EglPlayer m_egl;
    GlPlayer m_gl;
    DecodedCall m_decoded;
    Api m_api = Api::Any;  // of the last GL call: the hint for a record that does not say it itself
    bool m_inGlState = false;
    Clock::time_point m_frameBegan = Clock::now();
    ReplayResult m_result;
};

// "call 12 (glDrawArrays, at offset 345)", numbered as nebtrace dump numbers them.
std::string Place(Record const& record)
{
    RecordSpec const* const spec = FindRecord(Api::Any, record.id);
    return "call " + std::to_string(record.call) + " (" + std::string(spec ? spec->name : "?") +
           ", at offset " + std::to_string(record.offset) + ")";
}

ReplayResult Replayer::Run()
{
    Record record;
    while (m_source.Next(record) && record.frame <= m_options.lastFrame)
    {
        try
        {
            Play(record);
        } catch (BadRecord const& bad)
        {
            m_result.failure = "bad record: " + Place(record) + ": " + bad.what();
        } catch (DriverFailure const& failure)
        {
            m_result.failure = Place(record) + ": " + failure.what();
        } catch (std::bad_alloc const&)
        {
            m_result.failure = Place(record) + ": there is no memory for it";
        }
        if (!m_result.failure.empty())
            break;
    }
    return std::move(m_result);
}

void Replayer::Play(Record const& record)
{
    if (record.type == RecordType::StateMarker)
        StepMarker(record);
    else if (record.type == RecordType::Call)
        PlayCall(record);
}

// The markers stand at both ends; those of EGL do not change how records are read.
// A captured state is no part of the first frame's time.
void Replayer::StepMarker(Record const& record)
{
    if (record.id != kEglStateId)
        m_inGlState = !m_inGlState;
    m_frameBegan = Clock::now();
}

void Replayer::PlayCall(Record const& record)
{
    if (!Decode(record.id, m_api, record.payload, m_decoded))
        throw BadRecord("it fits no layout");
    Call const call(record, m_decoded);
    ++m_result.calls;
    bool const inSnapshot = m_survey.PartOf(record) == Part::Snapshot;
    if (!inSnapshot && InRange(record.frame))
        ++m_result.callsInRange;
    if (record.id == kSwapBuffersId && !inSnapshot)
        EndFrame(record, call);
    else
        Dispatch(record, call);
}

void Replayer::Dispatch(Record const& record, Call const& call)
{
    Api const api = m_decoded.GetApi();
    if (api != Api::Egl)
        m_api = api;
    if (api == Api::Egl)
        m_egl.Play(call, record.thread);
    else
        m_gl.Play(call, record.thread, m_survey.PartOf(record), m_inGlState);
}

// As the recorder does: from the framebuffer that is bound, under the pack state that is set, ahead of the
// swap.
Picture Replayer::ReadFrame(Call const& call, std::optional<Picture> const& recorded, uint64_t thread)
{
    GlFunctions const& gl = m_driver->ForVersion(m_egl.Current(thread)->version);
    Surface const* const surface = m_egl.CurrentDraw(thread);
    Picture picture;
    picture.width = recorded ? recorded->width : surface ? surface->width : 0;
    picture.height = recorded ? recorded->height : surface ? surface->height : 0;
    if (picture.width > Size::kMost || picture.height > Size::kMost)
        throw BadRecord("no frame is so large");
    size_t const row = static_cast<size_t>(picture.width) * 4;
    size_t const rows = static_cast<size_t>(picture.height);
    picture.pixels.resize((row + 8) * rows);
    gl.glReadPixels(0, 0, picture.width, picture.height, GL_RGBA, GL_UNSIGNED_BYTE, picture.pixels.data());
    if (gl.glGetError() != GL_NO_ERROR && !call.Failed())
        m_events.problem(Problem::NotReplayed, call, "the frame cannot be read");
    picture.pixels.resize(row * rows);
    return picture;
}

void Replayer::EndFrame(Record const& record, Call const& call)
{
    bool const wanted = InRange(record.frame);
    if (wanted && m_options.readFrames)
    {
        ReplayedFrame frame;
        frame.index = record.frame;
        frame.number = call.Word("frame");
        frame.recorded = RecordedPicture(call);
        frame.replayed = ReadFrame(call, frame.recorded, record.thread);
        m_events.frame(frame);
    }
    if (m_options.timeFrames)
    {
        m_driver->ForVersion(m_egl.Current(record.thread)->version).glFinish();
    }
    Dispatch(record, call);
    Clock::time_point const now = Clock::now();
    if (wanted && m_options.timeFrames)
        m_result.frameTimes.push_back(std::chrono::duration<double>(now - m_frameBegan).count());
    if (wanted)
        ++m_result.frames;
    if (m_events.progress)
        m_events.progress(record.frame);
    m_frameBegan = Clock::now();
}
}  // namespace

ReplayResult Replay(std::string const& path, Survey const& survey, ReplayOptions const& options,
                    ReplayEvents const& events)
{
    return Replayer(path, survey, options, events).Run();
}
}  // namespace nebtrace::player
