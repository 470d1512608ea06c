// A recorder in the test's own process, over the fake host. A test says what is to happen to its calls, calls
// wrappers, and looks at the bytes that they left in the trace file.
//
//     TEST_F(Flush, IsItsErrorWord)
//     {
//         Record();
//         Es2::_glFlush();
//         EXPECT_EQ(Expected(2046, U32(0)), Written());
//     }
#pragma once
#include "core/config.h"
#include "core/trace_block.h"
#include "core/trace_record_manager.h"
#include "tests/fakehost/control.h"
#include "tests/wrappers/expected.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"
#include <gtest/gtest.h>
#include <string>

using fakehost::Call;
using fakehost::Fake;

// The path of a library of the fake host.
std::string FakeLibrary(std::string const& name);

// What `action` prints on standard output.
template <typename Action>
std::string Printed(Action action)
{
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

class Recorder : public testing::Test
{
protected:
    Recorder();
    ~Recorder() override;

    // What happens to the calls from here on.
    void Record();             // host and record, with contents
    void RecordWithoutData();  // host and record, pointers only
    void RecordWithHostOff();  // as a snapshot's calls: record alone
    void Play();               // host alone, ahead of the recorded frames: the shadow state follows

    // What has been written since the recorder was made, or since this was last asked.
    Bytes Written();

    // Makes every extension entry of the host tables the fake host's.
    void HostHasEverything();
    void HostLacks(std::string const& name);

    // The next error query of the host gives this code.
    void HostFails(uint32_t error) { Fake().HostFails(error); }
    // How many times a function of the host has run.
    size_t HostCalls(std::string const& name) { return Fake().Calls(name).size(); }

    std::string const& TracePath() const { return m_path; }

private:
    std::string m_path;
    size_t m_read = 0;
};

// Settings as they are before any configuration is read, recording frame 0 on without end.
void ResetSettings();
// Deletes the host tables: the next call makes them anew.
void ForgetHosts();
