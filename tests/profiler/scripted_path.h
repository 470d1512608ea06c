// A path whose other end is the test: what is to be read lies ready, and what was sent is kept.
#pragma once
#include "profiler/data_path.h"
#include <algorithm>
#include <cstdint>
#include <vector>

using Bytes = std::vector<uint8_t>;

class ScriptedPath : public CDataPath
{
public:
    // With `alive`, tells there whether it still stands.
    explicit ScriptedPath(bool* alive = nullptr) : CDataPath(nullptr), m_pAlive(alive) { Tell(true); }
    ~ScriptedPath() override { Tell(false); }

    int DataOpenServerTryAccept() override { return 0; }
    int DataOpenClientTryAccept() override { return accept; }
    int DataOpenServer(char const* /*name*/, unsigned int /*id*/) override { return 0; }
    int DataOpenClient(char const* /*name*/) override { return 0; }
    int DataSendBytes(char const* data, unsigned int length) override
    {
        if (sent.size() + length > sendRoom)
            return 0;
        sent.insert(sent.end(), data, data + length);
        return 1;
    }
    int DataSendFlush() override { return ++flushes > 0; }
    int DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount) override
    {
        size_t const count = std::min({size_t{length}, toRead.size(), piece});
        std::copy_n(toRead.begin(), count, buffer);
        toRead.erase(toRead.begin(), toRead.begin() + static_cast<long>(count));
        bytesReceived += static_cast<uint32_t>(count);
        if (count != 0)
            reads.push_back(length);
        if (pCount)
            *pCount = static_cast<unsigned int>(count);
        if (broken)
            return 0;
        return count != 0 ? 2 : 1;
    }

    void Say(Bytes const& bytes) { toRead.insert(toRead.end(), bytes.begin(), bytes.end()); }
    Bytes TakeSent()
    {
        Bytes taken;
        taken.swap(sent);
        return taken;
    }

    int accept = 2;
    bool broken = false;
    size_t piece = SIZE_MAX;     // the most that one read finds
    size_t sendRoom = SIZE_MAX;  // a write past this fails
    Bytes toRead;
    Bytes sent;
    std::vector<unsigned int> reads;  // what was asked of each read that found anything
    int flushes = 0;

private:
    void Tell(bool alive) const
    {
        if (m_pAlive)
            *m_pAlive = alive;
    }

    bool* m_pAlive;
};
