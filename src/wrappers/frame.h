// The frame that every wrapper shares.
//
//     CFrame frame(Calls::glBindBuffer, target, buffer);   // decide, clear the error word
//     frame.CallHost();                                    // host, error check, profiler hooks
//     if (frame.Succeeded())                               // tracking, as plain code
//         Track::BindBuffer(target, buffer);
//     frame.Record(target, buffer);                        // the call record
//
// A wrapper that adds nothing of its own says all of it at once:
//
//     return Trace(Calls::glIsTexture, texture);
//
// No std::tuple and no virtual calls in here: the frame is instantiated for every signature, keeps only the
// addresses of the wrapper's own parameters, and never tests an ID.
#pragma once
#include "core/config.h"
#include "host/call_kind.h"
#include "wrappers/record_forms.h"
#include <cstddef>
#include <utility>

// What differs between Egl, Es1 and Es2.
struct SApi
{
    unsigned int& error;
    unsigned int noError;
    void (*ClearError)();
    void (*CheckHostError)();
    uint8_t extensionByte;  // stands behind the error word of an extension's record; 0: none does
};

// The table and the SApi that belong to a host table's type; specialised in calls.h.
template <typename Host>
struct SHostOf;

struct SCallInfo
{
    uint16_t id;
    ECallKind kind;
    uint8_t defaultResult;  // what the wrapper returns when the host is not called
};

// One API function: its facts and its entry in the host table.
template <typename Host, typename Function>
struct SCall;
template <typename Host, typename R, typename... Args>
struct SCall<Host, R(Args...)> : SCallInfo
{
    using Entry = R (*Host::*)(Args...);
    Entry entry;
    constexpr SCall(Entry hostEntry, SCallInfo info) : SCallInfo(info), entry(hostEntry) {}
};
template <typename Host, typename R, typename... Args>
SCall(R (*Host::*)(Args...), SCallInfo) -> SCall<Host, R(Args...)>;

// The part of the frame that does not depend on the function's signature.
class CFrameCore
{
public:
    CFrameCore(CFrameCore const&) = delete;
    CFrameCore& operator=(CFrameCore const&) = delete;

    uint16_t Id() const { return m_call.id; }
    bool IsTimed() const { return m_config.pStopwatch != nullptr; }
    bool IsRecording() const { return m_config.bSaveCall; }
    bool RecordsData() const { return m_config.bRecordData; }
    bool SavesFrameBuffer() const { return m_config.bSaveFrameBuffer; }
    bool HostRan() const { return m_bHostRan; }
    CProfiler* Profiler() const { return m_config.pProfiler; }

    // When a wrapper may track. Each of these implies the one above it.
    bool HostChecked() const { return m_bHostRan && m_config.bGetErrors; }
    bool Succeeded() const { return HostChecked() && m_api.error == m_api.noError; }
    bool MayTrack() const { return Succeeded() && m_config.bUpdateRenderState; }
    bool MayTrackData() const { return MayTrack() && m_config.bRecordData; }
    // Contents are kept, in the range of recorded frames too.
    bool SucceededWithData() const { return Succeeded() && m_config.bRecordData; }

    // The output gate is Succeeded(): a missing extension leaves it shut although bCallHost is set.
    SRecordState RecordState() const { return {m_config.bRecordData, Succeeded()}; }
    // Somebody will read what the call's pointers point at.
    bool UsesData() const { return m_config.bRecordData && (m_config.bSaveCall || MayTrack()); }
    // The record of this call holds what the host stored; second questions are asked only then.
    bool RecordsOutput() const { return IsRecording() && RecordsData() && Succeeded(); }
    // Error word, and the API byte of a GL extension.
    void AppendHead(CTraceBlock& block) const;

protected:
    CFrameCore(SApi const& api, SCallInfo const& call) : m_call(call), m_api(api) {}

    bool IsExtension() const { return (m_call.kind & kExtension) != 0; }
    bool WantsHost() const { return m_config.bCallHost; }
    void Decide(void const* const* args)
    {
        STraceConfig::GetFunctionConfig(m_call.id, m_config, args);
        m_api.ClearError();
    }
    void BeforeHost()
    {
        m_bHostRan = true;
        if (m_config.pProfiler && (m_call.kind & kDraw))
            m_config.pProfiler->PreDrawCall();
        if (m_config.pStopwatch)
            m_config.pStopwatch->Start();
    }
    void AfterHost()
    {
        if (m_config.pStopwatch)
            ReportTime();
    }
    void CheckHost(void const* const* args, void* result)
    {
        if (m_config.bGetErrors)
            m_api.CheckHostError();
        if (m_config.pProfiler)
            ReportCall(args, result);
    }

    SCallInfo const& m_call;

private:
    void ReportTime();
    void ReportCall(void const* const* args, void* result);

    SApi const& m_api;
    STraceConfig::SFunctionConfig m_config{};
    bool m_bHostRan = false;
};

// A call's result, so that void needs no second frame.
template <typename R>
struct SResult
{
    R value{};

    // A result that is a text stands as pointer, length and bytes in place of the word, in both forms.
    static constexpr bool kIsText = std::is_same_v<R, GLubyte const*> || std::is_same_v<R, char const*>;

    void SetDefault(unsigned int word)
    {
        if constexpr (std::is_arithmetic_v<R>)
            value = static_cast<R>(word);
    }
    void* Address() { return &value; }
    R Get() const { return value; }
    void Append(CTraceBlock& block) const
    {
        if constexpr (kIsText)
            AppendText(block, reinterpret_cast<char const*>(value));
        else
            AppendPlain(block, value);
    }
};
template <>
struct SResult<void>
{
    void SetDefault(unsigned int) {}
    void* Address() { return nullptr; }
    void Get() const {}
    void Append(CTraceBlock&) const {}
};

struct SNoHook
{
    void operator()() const {}
};

template <typename Host, typename Function>
class CFrame;
template <typename Host, typename R, typename... Args>
class CFrame<Host, R(Args...)> : public CFrameCore
{
public:
    // The arguments are the wrapper's own parameters: the frame keeps their addresses.
    CFrame(SCall<Host, R(Args...)> const& call, Args&... arguments)
        : CFrameCore(SHostOf<Host>::api, call), m_entry(call.entry), m_args{&m_argCount, &arguments...}
    {
        Decide(m_args);
        m_result.SetDefault(call.defaultResult);
    }

    // The result when the host is not called, where a trailing argument gives it.
    template <typename T>
    void SetDefault(T result)
    {
        m_result.value = static_cast<R>(result);
    }

    // Fetching it marks the API as used: for a wrapper that has called, or is about to call, the host.
    static Host* Table() { return SHostOf<Host>::Table(); }

    // The host's function is there; asked only when the host is to be called, since fetching a table has
    // side effects.
    bool MayCallHost() const
    {
        return WantsHost() && (!IsExtension() || SHostOf<Host>::Table()->*m_entry != nullptr);
    }

    // `afterHost` runs between the host call and the error check.
    template <typename Hook = SNoHook>
    void CallHost(Hook afterHost = {})
    {
        if (!MayCallHost())
            return;
        BeforeHost();
        InvokeHost(std::index_sequence_for<Args...>());
        AfterHost();
        afterHost();
        CheckHost(m_args, m_result.Address());
    }

    // Error word, API byte, result: what stands ahead of the arguments.
    void AppendHeadAndResult(CTraceBlock& block) const
    {
        AppendHead(block);
        m_result.Append(block);
    }

    template <typename... Fields>
    void Record(Fields const&... fields) const
    {
        if (!IsRecording())
            return;
        CTraceBlock block(m_call.id);
        AppendHeadAndResult(block);
        AppendFields(block, RecordState(), fields...);
    }

    R Result() const { return m_result.Get(); }

private:
    template <std::size_t... I>
    void InvokeHost(std::index_sequence<I...>)
    {
        auto const function = SHostOf<Host>::Table()->*m_entry;
        if constexpr (std::is_void_v<R>)
            function(*static_cast<Args const*>(m_args[1 + I])...);
        else
            m_result.value = function(*static_cast<Args const*>(m_args[1 + I])...);
    }

    typename SCall<Host, R(Args...)>::Entry m_entry;
    SResult<R> m_result;
    int m_argCount = sizeof...(Args);
    void const* m_args[1 + sizeof...(Args)];
};
template <typename Host, typename R, typename... Args>
CFrame(SCall<Host, R(Args...)> const&, Args&...) -> CFrame<Host, R(Args...)>;

// A wrapper that adds nothing: the fields of its record are its arguments, some of them in a form.
template <typename Host, typename R, typename... Args, typename... Fields>
R Trace(SCall<Host, R(Args...)> const& call, Fields... fields)
{
    CFrame<Host, R(Args...)> frame(call, ArgumentOf(fields)...);
    frame.CallHost();
    frame.Record(fields...);
    return frame.Result();
}
