// The fake host: EGL, GLES1 and GLES2 drivers that log each call and answer what a test scripts.
//
//     Fake().Result("eglInitialize", 1);                           // what a function returns
//     Fake().HostFails(GL_INVALID_VALUE);                          // the error that the next query of it
//     gives Fake().On("glGetIntegerv", [](Call const& call) { *call.Pointer<GLint>(1) = 4; });
//     Fake().Missing("glGenQueriesEXT");                           // eglGetProcAddress answers null for it
//     EXPECT_EQ(1u, Fake().Calls("glFlush").size());
//
// The three libraries share one control, so a test sees the calls of all three in their order.
#pragma once
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace fakehost
{

using Word = uint64_t;
using AnyFunction = void (*)();

// An argument or result as its raw bits, in the low bytes of a word.
template <typename T>
Word AsWord(T value)
{
    static_assert(sizeof(T) <= sizeof(Word), "wider than any argument of the APIs");
    Word word = 0;
    std::memcpy(&word, &value, sizeof value);
    return word;
}
template <typename T>
T FromWord(Word word)
{
    T value;
    std::memcpy(&value, &word, sizeof value);
    return value;
}

struct Call
{
    std::string api;  // "egl", "es1", "es2": the library whose entry ran
    std::string name;
    std::vector<Word> words;
    std::thread::id thread;

    template <typename T>
    T Argument(size_t index) const
    {
        return FromWord<T>(words.at(index));
    }
    template <typename T>
    T* Pointer(size_t index) const
    {
        return Argument<T*>(index);
    }
};

class Control
{
public:
    using Action = std::function<void(Call const&)>;

    // Back to no scripts and an empty log. The registered entries stay.
    void Reset();

    template <typename T>
    void Result(std::string const& name, T value)
    {
        SetResult(name, AsWord(value));
    }
    // Runs inside the host call, after it is logged. A second action for a name replaces the first.
    void On(std::string const& name, Action action);
    // The next glGetError or eglGetError, in whichever library, gives this code; those after it give none.
    void HostFails(uint32_t error);
    // What eglGetProcAddress answers: null for a missing name, the pointer for a name that nobody wraps.
    void Missing(std::string const& name);
    void Offers(std::string const& name, AnyFunction function);

    // The calls so far, all or those of one name, in order.
    std::vector<Call> Calls() const;
    std::vector<Call> Calls(std::string const& name) const;
    std::vector<std::string> Names() const;
    void Forget();

    // The address of a library's own entry; null if there is none.
    AnyFunction Entry(std::string const& api, std::string const& name) const;

    // For the libraries.
    void Register(char const* api, char const* name, AnyFunction function);
    Word Answer(Call call, Word defaultResult);
    AnyFunction ProcAddress(std::string const& name) const;

private:
    void SetResult(std::string const& name, Word value);
    uint32_t TakeError();
    Word ResultOf(Call const& call, Word defaultResult);

    mutable std::mutex m_mutex;
    std::map<std::string, std::map<std::string, AnyFunction>> m_entries;
    std::map<std::string, Word> m_results;
    std::map<std::string, std::shared_ptr<Action>> m_actions;
    std::map<std::string, AnyFunction> m_offers;
    std::set<std::string> m_missing;
    std::vector<Call> m_calls;
    uint32_t m_error = 0;
};

Control& Fake();

}  // namespace fakehost
