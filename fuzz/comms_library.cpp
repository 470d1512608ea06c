// What the performance server sends to an application: blocks, in pieces as small as the first byte says. The
// application's calls drive the pump until nothing is left.
#include "fuzz/input.h"
#include "profiler/comms_pump.h"
#include "profiler/npl.h"
#include <cerrno>

namespace
{
// Reads what the server sent, and breaks where that ends.
class ServerPath : public CDataPath
{
public:
    ServerPath(fuzz::Input& input, size_t piece, bool& stands)
        : CDataPath(nullptr), m_input(input), m_piece(piece), m_stands(stands)
    {
        m_stands = true;
    }
    ~ServerPath() override { m_stands = false; }

    int DataOpenServerTryAccept() override { return 0; }
    int DataOpenClientTryAccept() override { return 2; }
    int DataOpenServer(char const* /*name*/, unsigned int /*id*/) override { return 0; }
    int DataOpenClient(char const* /*name*/) override { return 1; }
    int DataSendBytes(char const* data, unsigned int length) override
    {
        // Every byte that goes out has to be there.
        for (unsigned int i = 0; i < length; ++i)
            m_sum = static_cast<uint8_t>(m_sum + static_cast<uint8_t>(data[i]));
        return 1;
    }
    int DataSendFlush() override { return 1; }
    int DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount) override
    {
        std::string const bytes = m_input.Take(std::min<size_t>(length, m_piece));
        std::copy(bytes.begin(), bytes.end(), buffer);
        bytesReceived += static_cast<uint32_t>(bytes.size());
        if (pCount)
            *pCount = static_cast<unsigned int>(bytes.size());
        return bytes.empty() ? 0 : 2;
    }

private:
    fuzz::Input& m_input;
    size_t m_piece;
    bool& m_stands;
    uint8_t m_sum = 0;
};

constexpr unsigned int kItems = 3;
constexpr unsigned int kCounters = 2;

void CreateTables(SSPSCommsData* comms)
{
    char switched[1] = {0};
    char list[4] = {'0', '\n', 'a', 'b'};
    SLibraryItem const items[kItems] = {
        {"Switch", 6, 4, switched, 1}, {"List", 4, 3, list, 4}, {"Empty", 5, 1, nullptr, 0}};
    SCommsCounter const counters[kCounters] = {{"Draws", 5}, {"CPU", 3}};
    nplLibraryCreate(comms, items, kItems);
    nplCountersCreate(comms, counters, kCounters);
}

void TakeChanges(SSPSCommsData* comms)
{
    unsigned int index = 0;
    unsigned int size = 0;
    char const* data = nullptr;
    for (unsigned int changes = 0; nplLibraryDirtyGetFirst(comms, &index, &size, &data); ++changes)
    {
        fuzz::Require(index < kItems, "a change is of an item that there is");
        std::string const copy(data, size);
    }
}
}  // namespace

// No server is there that the library could find by itself: not even one that runs on this machine.
extern "C" int __wrap_shm_open(char const* /*name*/, int /*flags*/, mode_t /*mode*/)
{
    errno = ENOENT;
    return -1;
}

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    size_t const piece = input.Byte() % 16 + size_t{1};
    SSPSCommsData* const comms = nplInitialise("fuzz", 4);
    bool stands = false;
    CreateTables(comms);
    while (input.Left() != 0)
    {
        // At the first time, and whenever the library has turned from one server to look for the next.
        if (!stands)
        {
            delete comms->pDataPath;
            comms->pDataPath = new ServerPath(input, piece, stands);
        }
        unsigned int const values[kCounters] = {1, 2};
        nplCountersUpdate(comms, values);
        if (stands)
            nplSendMark(comms, "mark", 4);
        if (stands)
            TakeChanges(comms);
    }
    nplShutdown(comms);
    return 0;
}
