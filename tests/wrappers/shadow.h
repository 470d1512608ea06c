// A recorder whose live GLES2 shadow a test looks into. It starts ahead of the recorded frames, where the
// shadow follows the calls.
#pragma once
#include "state/es2_context_state.h"
#include "tests/wrappers/recorder.h"
#include <map>

class Shadow : public Recorder
{
protected:
    Shadow() { Play(); }

    static CEs2ContextState& State() { return *CTraceRecordManager::m_Es2FileState; }

    // From the first recorded frame on: calls are recorded, and most are followed no more.
    void RecordFromHere()
    {
        Record();
        STraceConfig::m_writeRenderState = false;  // no snapshot
    }

    // What the host answers to glGetIntegerv: 0 to any other name.
    static void HostAnswers(std::map<GLenum, GLint> const& answers)
    {
        Fake().On("glGetIntegerv", [answers](Call const& call) {
            auto const found = answers.find(call.Argument<GLenum>(0));
            *call.Pointer<GLint>(1) = found == answers.end() ? 0 : found->second;
        });
    }
    // The names that `action` makes the library ask glGetIntegerv for.
    template <typename Action>
    static std::vector<GLenum> AskedBy(Action action)
    {
        Fake().Forget();
        action();
        std::vector<GLenum> names;
        for (Call const& call : Fake().Calls("glGetIntegerv"))
            names.push_back(call.Argument<GLenum>(0));
        return names;
    }

    // Runs a call while the host refuses it.
    template <typename Action>
    void Refused(Action action)
    {
        HostFails(GL_INVALID_OPERATION);
        Printed(action);
    }
    template <typename Action>
    void WithoutErrors(Action action)
    {
        STraceConfig::m_getErrors = false;
        action();
        STraceConfig::m_getErrors = true;
    }
    template <typename Action>
    void WithoutHost(Action action)
    {
        STraceConfig::m_bDoNativeCall = false;
        action();
        STraceConfig::m_bDoNativeCall = true;
    }
    template <typename Action>
    void WithoutData(Action action)
    {
        STraceConfig::m_bRecordData = false;
        action();
        STraceConfig::m_bRecordData = true;
    }

    // A call that is followed when the host ran it without error and the shadow is live.
    template <typename Action, typename IsTracked>
    void ExpectPlainGate(Action action, IsTracked isTracked)
    {
        RecordFromHere();
        action();
        EXPECT_FALSE(isTracked()) << "in the recorded frames";
        Play();
        ExpectClosedFor(action, isTracked);
        WithoutData(action);
        EXPECT_TRUE(isTracked()) << "contents are of no account";
    }
    // A call that carries contents: these must be wanted, too.
    template <typename Action, typename IsTracked>
    void ExpectDataGate(Action action, IsTracked isTracked)
    {
        RecordFromHere();
        action();
        EXPECT_FALSE(isTracked()) << "in the recorded frames";
        Play();
        WithoutData(action);
        EXPECT_FALSE(isTracked()) << "without contents";
        ExpectClosedFor(action, isTracked);
        action();
        EXPECT_TRUE(isTracked());
    }
    // A call that is followed in the recorded frames as well.
    template <typename Action, typename IsTracked>
    void ExpectSuccessGate(Action action, IsTracked isTracked)
    {
        RecordFromHere();
        ExpectClosedFor(action, isTracked);
        action();
        EXPECT_TRUE(isTracked());
    }
    // A call that is followed whatever the host said of it, as long as it was asked.
    template <typename Action, typename IsTracked>
    void ExpectAskedGate(Action action, IsTracked isTracked)
    {
        RecordFromHere();
        WithoutErrors(action);
        EXPECT_FALSE(isTracked()) << "with errors off";
        WithoutHost(action);
        EXPECT_FALSE(isTracked()) << "with the host off";
        Refused(action);
        EXPECT_TRUE(isTracked());
    }

private:
    template <typename Action, typename IsTracked>
    void ExpectClosedFor(Action action, IsTracked isTracked)
    {
        Refused(action);
        EXPECT_FALSE(isTracked()) << "refused by the host";
        WithoutErrors(action);
        EXPECT_FALSE(isTracked()) << "with errors off";
        WithoutHost(action);
        EXPECT_FALSE(isTracked()) << "with the host off";
    }
};
