// The performance server's end of the link, as a small language for tests.
#pragma once
#include "profiler/comms_blocks.h"
#include "tests/profiler/link.h"
#include <cstring>
#include <memory>

// A block as the server reads it.
struct Block
{
    uint32_t identifier;
    Bytes payload;
};

// The server's end, which waits for what the other end writes.
class Server
{
public:
    bool Listen() { return m_herd.initialise("/NEBPerfServerVsAppLib"); }
    // Waits for a client; `meanwhile` makes it go on where it runs on this very thread.
    template <typename Action>
    void Accept(Action meanwhile)
    {
        while (!m_path)
        {
            meanwhile();
            m_path.reset(m_herd.poll());
        }
        while (m_path->DataOpenServerTryAccept() != 1)
            meanwhile();
    }
    CDataPath& Path() { return *m_path; }

    Bytes Read(size_t size)
    {
        Bytes all;
        while (all.size() < size)
        {
            Bytes const some = Receive(*m_path, static_cast<unsigned int>(size - all.size())).second;
            all.insert(all.end(), some.begin(), some.end());
        }
        return all;
    }
    uint32_t ReadWord()
    {
        Bytes const bytes = Read(4);
        uint32_t word = 0;
        std::memcpy(&word, bytes.data(), 4);
        return word;
    }
    Block ReadBlock()
    {
        uint32_t const description = ReadWord();
        return {DataPathBlockDescriptionUnpackID(description),
                Read(DataPathBlockDescriptionUnpackInfo(description))};
    }
    // Everything that lies there, without waiting.
    Bytes ReadRest() { return Receive(*m_path, 1 << 20).second; }
    void AskForDescription() { DataPathSendBlockDescription(Path(), eRcSendDescription, 0); }
    bool Change(uint32_t item, std::string const& value)
    {
        return DataPathSend1uintNbytes(Path(), eRcChangeItem, item, value.data(),
                                       static_cast<unsigned int>(value.size()));
    }

private:
    CDataPathHerdSharedMem2 m_herd{nullptr};
    std::unique_ptr<CDataPath> m_path;
};
