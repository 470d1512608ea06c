// Objects in shared memory: names, sizes, mutexes, and what a killed run leaves.
#include "profiler/shared_mem.h"
#include "tests/profiler/link.h"
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using SharedMem = InSharedMemory;

constexpr char kCleanedUp[] = "Cleaned up after previous run.\n";

std::string Times(std::string const& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

[[noreturn]] void DieHere()
{
    kill(getpid(), SIGKILL);
    std::abort();
}

// Runs in another process, which is to die without cleaning up.
template <typename Action>
void InKilledProcess(Action action)
{
    pid_t const child = fork();
    if (child == 0)
        action();
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    ASSERT_TRUE(WIFSIGNALED(status));
}

}  // namespace

// The names are what the other process opens; texts are cut at 512 characters, the index at one digit.
TEST_F(SharedMem, NamesAreBuiltFromFiveParts)
{
    EXPECT_STREQ("/NEBPerfServerVsAppLib7U2d", SSharedName("/NEBPerfServerVsAppLib", 7, "U", 2, "d").text);
    EXPECT_STREQ("/b4294967295D3m", SSharedName("/b", 0xFFFFFFFFu, "D", 13, "m").text);
    std::string const longText(600, 'x');
    EXPECT_EQ(std::string(512, 'x') + "0" + std::string(512, 'x') + "0" + std::string(512, 'x'),
              SSharedName(longText.c_str(), 0, longText.c_str(), 0, longText.c_str()).text);
}

// A created object has its size, zeroed, for its owner alone, and goes with its creator.
TEST_F(SharedMem, TheCreatorMakesAndUnlinks)
{
    CSharedMem mem;
    char* data = nullptr;
    ASSERT_TRUE(bufOpenOrCreateMem(mem, data, true, "/object", 256));
    EXPECT_STREQ("/object", mem.pName);
    EXPECT_TRUE(mem.bCreator);
    EXPECT_NE(-1, mem.fd);
    EXPECT_EQ(256u, mem.size);
    EXPECT_EQ(256, sharedmemory::SizeOf("/object"));
    EXPECT_EQ(0600u, sharedmemory::ModeOf("/object"));
    EXPECT_EQ(Bytes(256), sharedmemory::ContentOf("/object", 256));
    bufDestMem(mem, data);
    EXPECT_EQ(-1, mem.fd);
    EXPECT_EQ(nullptr, mem.pName);
    EXPECT_EQ(-1, sharedmemory::SizeOf("/object"));
}

// The other side sees the same bytes, and leaves the object to its creator.
TEST_F(SharedMem, TheOtherSideOpensAndLeaves)
{
    CSharedMem made;
    CSharedMem opened;
    char* madeData = nullptr;
    char* openedData = nullptr;
    EXPECT_FALSE(bufOpenOrCreateMem(opened, openedData, false, "/object", 8));
    bufDestMem(opened, openedData);
    ASSERT_TRUE(bufOpenOrCreateMem(made, madeData, true, "/object", 8));
    ASSERT_TRUE(bufOpenOrCreateMem(opened, openedData, false, "/object", 8));
    madeData[7] = 'x';
    EXPECT_EQ('x', openedData[7]);
    bufDestMem(opened, openedData);
    EXPECT_EQ(8, sharedmemory::SizeOf("/object"));
    bufDestMem(made, madeData);
}

// An object that its creator has not given its size yet would end the application at the first access.
TEST_F(SharedMem, AnObjectThatIsTooSmallIsNotOpened)
{
    int const fd = shm_open("/object", O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(0, ftruncate(fd, 7));
    CSharedMem mem;
    char* data = nullptr;
    EXPECT_FALSE(bufOpenOrCreateMem(mem, data, false, "/object", 8));
    EXPECT_EQ(nullptr, data);
    bufDestMem(mem, data);
    close(fd);
    shm_unlink("/object");
}

// Records without a name, and those that are not open, are closed without harm.
TEST_F(SharedMem, NothingToOpenFails)
{
    CSharedMem mem;
    char* data = nullptr;
    EXPECT_FALSE(bufOpenOrCreateMem(mem, data, true, nullptr, 8));
    bufDestMem(mem, data);
    CMutex mutex;
    EXPECT_FALSE(bufLockMutex(mutex, true));
    EXPECT_FALSE(bufUnlockMutex(mutex));
    bufDestMutex(mutex);
}

// A mutex object is as large as the platform's mutex, and holds across both mappings.
TEST_F(SharedMem, MutexesAreShared)
{
    CMutex made;
    CMutex opened;
    ASSERT_TRUE(bufOpenOrCreateMutex(made, true, "/mutex"));
    EXPECT_EQ(static_cast<long>(sizeof(pthread_mutex_t)), sharedmemory::SizeOf("/mutex"));
    ASSERT_TRUE(bufOpenOrCreateMutex(opened, false, "/mutex"));
    EXPECT_TRUE(bufLockMutex(made, true));
    EXPECT_FALSE(bufLockMutex(opened, false));
    EXPECT_TRUE(bufUnlockMutex(made));
    EXPECT_TRUE(bufLockMutex(opened, false));
    EXPECT_TRUE(bufUnlockMutex(opened));
    bufDestMutex(opened);
    bufDestMutex(made);
}

// A run that was killed leaves its objects; the next one takes their place and says so, once for each.
TEST_F(SharedMem, ServersCleanUpAfterAKilledOne)
{
    InKilledProcess([] {
        CDataPathHerdSharedMem2 herd(nullptr);
        herd.initialise("/NEBPerfServerVsAppLib");
        DieHere();
    });
    EXPECT_EQ((std::vector<std::string>{Named("0N0d"), Named("0N0m")}), sharedmemory::Objects());
    CDataPathHerdSharedMem2 herd(nullptr);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    EXPECT_EQ(Times(kCleanedUp, 2), testing::internal::GetCapturedStdout());
}

// Likewise for an application, which has made six buffers and their mutexes. Its locks are not in the way.
TEST_F(SharedMem, ClientsCleanUpAfterAKilledOne)
{
    CDataPathHerdSharedMem2 herd(nullptr);
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    InKilledProcess([] {
        CDataPathSharedMem client(nullptr);
        client.DataOpenClient("/NEBPerfServerVsAppLib");
        client.DataOpenClientTryAccept();
        DieHere();
    });
    EXPECT_EQ(14u, sharedmemory::Objects().size());
    herd.shutdown();
    CDataPathHerdSharedMem2 next(nullptr);
    ASSERT_TRUE(next.initialise("/NEBPerfServerVsAppLib"));
    CDataPathSharedMem client(nullptr);
    client.DataOpenClient("/NEBPerfServerVsAppLib");
    testing::internal::CaptureStdout();
    EXPECT_EQ(1, client.DataOpenClientTryAccept());
    EXPECT_EQ(Times(kCleanedUp, 12), testing::internal::GetCapturedStdout());
}
