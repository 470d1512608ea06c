// The first look at a trace, before anything is replayed: how it ends, and what replay must know ahead of the
// call that needs it.
#pragma once
#include "trace/reader.h"
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>

namespace nebtrace::player
{
struct Size
{
    int width = 0;
    int height = 0;

    // Larger surfaces than this no driver makes, whatever a record says.
    static constexpr int kMost = 8192;

    bool Empty() const { return width <= 0 || height <= 0; }
    void Include(int64_t otherWidth, int64_t otherHeight);
};

// A file has one part or two: the state of the first frame, if it stands at the end, and the frames.
enum class Part : uint8_t
{
    Snapshot,
    Frames
};

using Locations = std::map<std::string, int32_t>;

struct Survey
{
    EndState end = EndState::Reading;
    uint64_t endOffset = 0;
    std::string endReason;
    uint64_t snapshot = 0;  // the position in the footer

    uint64_t frames = 0;
    uint64_t framesWithPixels = 0;
    bool usesEs1 = false;
    bool usesEs2 = false;
    std::map<uint32_t, Size> surfaces;  // largest recorded frame, by the surface's handle
    Size frame;                         // largest recorded frame
    std::set<uint32_t> swapped;         // the surfaces that frames end on
    Size viewport;                      // largest viewport

    // What glGetAttribLocation answered after the program's Nth link in a part. Programs are linked again
    // with these, where the player's driver has chosen others.
    struct Link
    {
        Part part;
        uint32_t program;
        uint32_t number;
        bool operator<(Link const& other) const
        {
            return std::tie(part, program, number) < std::tie(other.part, other.program, other.number);
        }
    };
    std::map<Link, Locations> attributes;

    // Of OpenGL ES: what a context is to be that no record describes.
    int Version() const { return usesEs1 && !usesEs2 ? 1 : 2; }

    Part PartOf(Record const& record) const
    {
        return snapshot != 0 && record.offset >= snapshot ? Part::Snapshot : Part::Frames;
    }
};

// Walks the whole file. False if it cannot be opened.
bool TakeSurvey(std::string const& path, Survey& survey, std::string& error);

// The records of a file in the order of replay: a snapshot at the end comes first.
class Source
{
public:
    Source(std::string path, Survey const& survey);
    bool Next(Record& record);

private:
    bool OpenPart();

    std::string m_path;
    Survey const& m_survey;
    Part m_part;
    std::unique_ptr<Reader> m_reader;
};
}  // namespace nebtrace::player
