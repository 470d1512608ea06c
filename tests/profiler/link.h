// A server and a client that meet in shared memory, as a small language for tests.
#pragma once
#include "profiler/data_path_herd.h"
#include "tests/profiler/shared_memory.h"
#include <gtest/gtest.h>
#include <memory>
#include <string>

// What the tests call the objects of the first connection: "U0d" is the first buffer to the server.
inline std::string Named(char const* rest) { return std::string("/NEBPerfServerVsAppLib") + rest; }
inline std::string OfFirst(char const* part) { return Named("1") + part; }

using Bytes = std::vector<uint8_t>;

// A test in shared memory, at whose end nothing may be left there.
class InSharedMemory : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(std::vector<std::string>(), sharedmemory::Objects()); }
    ~InSharedMemory() override { sharedmemory::Clear(); }
};

class Link : public InSharedMemory
{
protected:
    void TearDown() override
    {
        server.reset();
        client.reset();
        herd.shutdown();
        InSharedMemory::TearDown();
    }

    // The server listens, and the client has taken its ticket and made the rings.
    void Knock()
    {
        ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
        ASSERT_EQ(1, client->DataOpenClient("/NEBPerfServerVsAppLib"));
        ASSERT_EQ(1, client->DataOpenClientTryAccept());
    }
    // The server has found it.
    void Meet()
    {
        Knock();
        server.reset(herd.poll());
        ASSERT_TRUE(server);
    }
    void Connect()
    {
        Meet();
        ASSERT_EQ(1, server->DataOpenServerTryAccept());
        ASSERT_EQ(2, client->DataOpenClientTryAccept());
    }

    Messages messages;
    CDataPathHerdSharedMem2 herd{&messages};
    std::unique_ptr<CDataPath> client = std::make_unique<CDataPathSharedMem>(&messages);
    std::unique_ptr<CDataPath> server;
};

inline int Send(CDataPath& path, Bytes const& bytes)
{
    return path.DataSendBytes(reinterpret_cast<char const*>(bytes.data()),
                              static_cast<unsigned int>(bytes.size()));
}

// What one pass of a receive finds, up to `room` bytes.
inline std::pair<int, Bytes> Receive(CDataPath& path, unsigned int room)
{
    Bytes bytes(room);
    unsigned int count = 0xFFFF;
    int const result = path.DataReceiveBytes(reinterpret_cast<char*>(bytes.data()), room, &count);
    bytes.resize(count);
    return {result, bytes};
}

// Bytes that tell where they stand.
inline Bytes Pattern(size_t size, unsigned int seed = 0)
{
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>((i + seed) * 31 >> 3);
    return bytes;
}
