#include "player/survey.h"
#include "player/call.h"
#include <algorithm>

namespace nebtrace::player
{
namespace
{
class Surveyor
{
public:
    explicit Surveyor(Survey& survey) : m_survey(survey) {}

    void Look(Record const& record)
    {
        if (record.type != RecordType::Call)
            return;
        RecordSpec const* const spec = FindRecord(Api::Any, record.id);
        if (record.id < kFirstSharedId && spec->api == Api::Es2)
            m_survey.usesEs2 = true;
        if (record.id < kFirstSharedId && spec->api == Api::Es1)
            m_survey.usesEs1 = true;
        // What does not decode is named when replay comes to it.
        if (IsWanted(spec->name) && Decode(record.id, Api::Any, record.payload, m_decoded))
            Note(Call(record, m_decoded), m_survey.PartOf(record));
    }

private:
    static bool IsWanted(std::string_view name)
    {
        return name == "eglSwapBuffers" || name == "glViewport" || name == "glLinkProgram" ||
               name == "glGetAttribLocation";
    }

    void Note(Call const& call, Part part)
    {
        std::string const name = call.Name();
        if (name == "eglSwapBuffers")
            NoteSwap(call);
        else if (name == "glViewport")
            m_survey.viewport.Include(int64_t{call.Int("x")} + call.Int("width"),
                                      int64_t{call.Int("y")} + call.Int("height"));
        else if (name == "glLinkProgram")
            ++m_links[{part, call.Word("program")}];
        else if (!call.Failed())
            NoteAttribute(call, part);
    }

    void NoteSwap(Call const& call)
    {
        ++m_survey.frames;
        m_survey.swapped.insert(call.Word("surface"));
        if (call.Data("pixels").empty())
            return;
        ++m_survey.framesWithPixels;
        m_survey.surfaces[call.Word("surface")].Include(call.Int("width"), call.Int("height"));
        m_survey.frame.Include(call.Int("width"), call.Int("height"));
    }

    void NoteAttribute(Call const& call, Part part)
    {
        DecodedField const& name = call.Field("name");
        auto const location = static_cast<int32_t>(call.Result());
        uint32_t const program = call.Word("program");
        if (name.hasData && location >= 0)
            m_survey.attributes[{part, program, m_links[{part, program}]}][Call::Text(name)] = location;
    }

    Survey& m_survey;
    DecodedCall m_decoded;
    std::map<std::pair<Part, uint32_t>, uint32_t> m_links;
};

// `snapshot`: where the snapshot is taken to begin, which only the walk to the end can confirm.
bool Walk(std::string const& path, uint64_t snapshot, Survey& survey, std::string& error)
{
    std::unique_ptr<Reader> const reader = Reader::Open(path, error);
    if (!reader)
        return false;
    survey = {};
    survey.snapshot = snapshot;
    Surveyor surveyor(survey);
    Record record;
    while (reader->Next(record))
        surveyor.Look(record);
    survey.end = reader->End();
    survey.endOffset = reader->EndOffset();
    survey.endReason = reader->EndReason();
    survey.snapshot = reader->SnapshotPosition().value_or(0);
    return true;
}
}  // namespace

void Size::Include(int64_t otherWidth, int64_t otherHeight)
{
    width = static_cast<int>(std::clamp<int64_t>(otherWidth, width, kMost));
    height = static_cast<int>(std::clamp<int64_t>(otherHeight, height, kMost));
}

bool TakeSurvey(std::string const& path, Survey& survey, std::string& error)
{
    std::unique_ptr<Reader> const reader = Reader::Open(path, error);
    if (!reader)
        return false;
    uint64_t const probable = reader->ProbableSnapshotPosition().value_or(0);
    if (!Walk(path, probable, survey, error))
        return false;
    // The last record of a file without a footer can look like one.
    return survey.snapshot == probable || Walk(path, survey.snapshot, survey, error);
}

Source::Source(std::string path, Survey const& survey)
    : m_path(std::move(path)), m_survey(survey), m_part(survey.snapshot != 0 ? Part::Snapshot : Part::Frames)
{
    OpenPart();
}

bool Source::OpenPart()
{
    std::string error;
    m_reader = Reader::Open(m_path, error);
    return m_reader != nullptr;
}

bool Source::Next(Record& record)
{
    while (m_reader)
    {
        bool const more = m_reader->Next(record);
        if (more && m_survey.PartOf(record) == m_part)
            return true;
        // Records are read past up to the snapshot; the frames end where it begins.
        if (more && m_part == Part::Snapshot)
            continue;
        if (m_part == Part::Frames || !OpenPart())
            return false;
        m_part = Part::Frames;
    }
    return false;
}
}  // namespace nebtrace::player
