// What an application sends to the performance server, and what that shows of it. The first byte says how
// small the pieces are that the stream comes in, the next two how large the terminal is.
#include "fuzz/input.h"
#include "profiler/comms_blocks.h"
#include "tools/commands.h"
#include "tools/perf/items.h"
#include "tools/perf/output.h"
#include "tools/perf/view.h"

using namespace perf;

namespace
{
struct Outcome
{
    std::vector<Block> blocks;
    std::string fault;
    std::optional<uint32_t> process;

    bool operator==(Outcome const& other) const
    {
        auto const same = [](Block const& a, Block const& b) {
            return a.identifier == b.identifier && a.payload == b.payload;
        };
        return fault == other.fault && process == other.process &&
               std::equal(blocks.begin(), blocks.end(), other.blocks.begin(), other.blocks.end(), same);
    }
};

Outcome Understood(std::string const& stream, size_t piece)
{
    Outcome outcome;
    BlockReader reader;
    for (size_t at = 0; at < stream.size(); at += piece)
    {
        reader.Feed(stream.data() + at, std::min(piece, stream.size() - at));
        for (Block block; reader.Next(block);)
            outcome.blocks.push_back(block);
    }
    outcome.fault = reader.Fault();
    outcome.process = reader.Process();
    return outcome;
}

void Show(Item const& item, std::vector<Item> const& items)
{
    fuzz::Require(!ValueText(item).empty() || IsList(item), "a value has a text, or a choice without a name");
    Item toggled = item;
    toggled.value = Toggled(item);
    fuzz::Require(!IsList(item) || ChoicesOf(toggled) == ChoicesOf(item),
                  "another choice leaves the choices");
    fuzz::Require(!IsSwitch(item) || toggled.value != item.value, "a switch has two states");
    fuzz::Require(!IsList(item) || SelectionOf(toggled) < ChoicesOf(item).size(),
                  "a choice is one of the list");
    fuzz::Require(PutOff(toggled).size() <= item.value.size() + 1, "what is put off is no longer");
    try
    {
        fuzz::Require(Resolve({ShortName(item), "1"}, items).index < items.size(), "a change is of an item");
    } catch (CommandFailed const&)
    {
        // Its name or the value is none that it has.
    }
}

class Viewer
{
public:
    void Take(Block const& block)
    {
        auto const library = ParseLibraryName(block.payload);
        auto const mark = ParseMark(block.payload);
        fuzz::Require(!library || library->size() <= block.payload.size(),
                      "a name is no longer than its block");
        fuzz::Require(!mark || mark->size() + 4 == block.payload.size(), "a mark is its block's rest");
        auto const items = ParseItems(block.payload);
        for (Item const& item : items.value_or(std::vector<Item>()))
            Show(item, *items);
        if (block.identifier == eRcCounterDescription)
            m_names = ParseCounterNames(block.payload).value_or(m_names);
        if (auto const sample = ParseCounters(block.payload);
            sample && sample->values.size() == m_names.size())
            Draw(*sample);
    }

private:
    void Draw(Sample const& sample)
    {
        std::optional<Frame> const frame = m_frames.Add(sample);
        if (!frame)
            return;
        m_rate.Add(frame->duration, frame->counters.empty() ? 0 : frame->counters[0]);
        Source const source{1, "fuzz", m_names};
        fuzz::Require(!PlainText(source, *frame, m_rate).empty() && !JsonLine(source, *frame).empty(),
                      "lines");
        fuzz::Require(!CsvHeader(m_names).empty() && !CsvLine(source, *frame).empty(), "a table");
    }

    std::vector<std::string> m_names;
    FrameCounter m_frames;
    FrameRate m_rate;
};
// A link at whose other end stands the input.
class Link : public CDataPathSharedMem
{
public:
    explicit Link(std::string stream) : CDataPathSharedMem(nullptr), m_stream(std::move(stream)) {}

    int DataOpenServerTryAccept() override { return 1; }
    int DataSendBytes(char const* /*data*/, unsigned int /*length*/) override { return 1; }
    int DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount) override
    {
        *pCount = static_cast<unsigned int>(m_stream.copy(buffer, length, m_taken));
        m_taken += *pCount;
        return *pCount != 0 ? 2 : 1;
    }

private:
    std::string m_stream;
    size_t m_taken = 0;
};

// Draws the view whenever there is something new, and presses every key.
class Screen : public Listener
{
public:
    explicit Screen(Size size) : m_size(size) {}

    void OnDescribed(Session& session) override
    {
        std::vector<Item> const items = session.Items();
        for (uint32_t i = 0; i < items.size(); ++i)
            session.Set({i, Toggled(items[i])});
        Draw(session, session.Title());
    }
    void OnFrame(Session& session, Frame const& /*frame*/) override { Draw(session, "a frame"); }
    void OnMark(Session& session, std::string const& text) override { Draw(session, text); }
    void OnEnded(Session& session) override { Draw(session, session.Fault()); }

    void Run(std::string const& stream)
    {
        m_sessions.emplace_back(std::make_unique<Link>(stream));
        while (!m_sessions.front().IsOver() && m_sessions.front().Turn(*this))
        {
        }
    }

private:
    void Draw(Session const& session, std::string const& message)
    {
        std::vector<std::string> const lines = Compose(m_sessions, &session, message, m_size);
        fuzz::Require(lines.size() <= m_size.rows, "as many lines as there is room for");
        for (std::string const& line : lines)
            fuzz::Require(line.size() <= m_size.columns && line.find('\033') == std::string::npos,
                          "a line has room, and does not play with the terminal");
    }

    Size m_size;
    std::list<Session> m_sessions;
};
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    size_t const piece = input.Byte() % 32 + size_t{1};
    Size terminal;
    terminal.columns = input.Byte();
    terminal.rows = input.Byte();
    std::string const stream = input.Rest();
    Outcome const whole = Understood(stream, stream.size() + 1);
    fuzz::Require(Understood(stream, piece) == whole, "pieces are understood as the whole is");
    Viewer viewer;
    for (Block const& block : whole.blocks)
        viewer.Take(block);
    Screen(terminal).Run(stream);
    return 0;
}
