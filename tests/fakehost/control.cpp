#include "tests/fakehost/control.h"

namespace fakehost
{

namespace
{

uint32_t const kNoEglError = 0x3000;

}  // namespace

// Never destroyed: hosts are called until the very end of a process.
Control& Fake()
{
    static Control* const control = new Control;
    return *control;
}

void Control::Reset()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_results.clear();
    m_actions.clear();
    m_offers.clear();
    m_missing.clear();
    m_calls.clear();
    m_error = 0;
}

void Control::On(std::string const& name, Action action)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_actions[name] = std::make_shared<Action>(std::move(action));
}

void Control::HostFails(uint32_t error)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_error = error;
}

void Control::Missing(std::string const& name)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_missing.insert(name);
}

void Control::Offers(std::string const& name, AnyFunction function)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_offers[name] = function;
}

std::vector<Call> Control::Calls() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_calls;
}

std::vector<Call> Control::Calls(std::string const& name) const
{
    std::vector<Call> calls;
    for (Call const& call : Calls())
        if (call.name == name)
            calls.push_back(call);
    return calls;
}

std::vector<std::string> Control::Names() const
{
    std::vector<std::string> names;
    for (Call const& call : Calls())
        names.push_back(call.name);
    return names;
}

void Control::Forget()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_calls.clear();
}

AnyFunction Control::Entry(std::string const& api, std::string const& name) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const entries = m_entries.find(api);
    if (entries == m_entries.end())
        return nullptr;
    auto const entry = entries->second.find(name);
    return entry == entries->second.end() ? nullptr : entry->second;
}

void Control::Register(char const* api, char const* name, AnyFunction function)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_entries[api][name] = function;
}

void Control::SetResult(std::string const& name, Word value)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_results[name] = value;
}

uint32_t Control::TakeError()
{
    uint32_t const error = m_error;
    m_error = 0;
    return error;
}

Word Control::ResultOf(Call const& call, Word defaultResult)
{
    auto const scripted = m_results.find(call.name);
    if (scripted != m_results.end())
        return scripted->second;
    if (call.name == "glGetError")
        return TakeError();
    if (call.name == "eglGetError")
    {
        uint32_t const error = TakeError();
        return error ? error : kNoEglError;
    }
    return defaultResult;
}

Word Control::Answer(Call call, Word defaultResult)
{
    std::shared_ptr<Action> action;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_calls.push_back(call);
        auto const found = m_actions.find(call.name);
        if (found != m_actions.end())
            action = found->second;
    }
    // Outside the lock: an action may script what comes next.
    if (action)
        (*action)(call);
    if (call.name == "eglGetProcAddress")
        defaultResult = AsWord(ProcAddress(call.Pointer<char const>(0)));
    std::lock_guard<std::mutex> const lock(m_mutex);
    return ResultOf(call, defaultResult);
}

AnyFunction Control::ProcAddress(std::string const& name) const
{
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (m_missing.count(name))
            return nullptr;
        auto const offer = m_offers.find(name);
        if (offer != m_offers.end())
            return offer->second;
    }
    for (char const* api : {"es2", "es1", "egl"})
        if (AnyFunction const entry = Entry(api, name))
            return entry;
    return nullptr;
}

}  // namespace fakehost
