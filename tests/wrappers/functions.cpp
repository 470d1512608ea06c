#include "tests/wrappers/functions.h"
#include "host/hosts.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"
#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

namespace
{

uint32_t const kEglNone = 0x3038;

template <typename T>
inline constexpr bool kIsChar = std::is_same_v<std::remove_cv_t<T>, char>;

template <typename T>
Word DistinctPointer(Buffers& buffers, size_t index)
{
    using Pointee = std::remove_cv_t<std::remove_pointer_t<T>>;
    void* memory = nullptr;
    if constexpr (kIsChar<Pointee>)
        memory = buffers.Text(index);
    else if constexpr (std::is_pointer_v<Pointee>)
        memory = buffers.Pointers(index);
    else if constexpr (std::is_same_v<Pointee, float>)
        memory = buffers.Floats(index);
    else if constexpr (std::is_integral_v<Pointee>)
        memory = sizeof(Pointee) == 4 ? buffers.Words(index) : buffers.Pattern(index);
    else
        memory = buffers.Pattern(index);
    return fakehost::AsWord(memory);
}

// Numbers are small enough to be counts and sizes; what could be an enumerant is one that no table knows.
template <typename T>
Word Distinct(Buffers& buffers, size_t index)
{
    if constexpr (std::is_pointer_v<T>)
        return DistinctPointer<T>(buffers, index);
    else if constexpr (std::is_floating_point_v<T>)
        return fakehost::AsWord(static_cast<T>(1.5) + static_cast<T>(index));
    else if constexpr (sizeof(T) == 1)
        return fakehost::AsWord(static_cast<T>(0xA1 + index));
    else if constexpr (sizeof(T) == 8 && std::is_unsigned_v<T>)
        return 0x1122334455667700u + index;
    else if constexpr (std::is_unsigned_v<T>)
        return fakehost::AsWord(static_cast<T>(20 + index));
    else
        return fakehost::AsWord(static_cast<T>(2 + index));
}

template <typename T>
Argument Describe(std::string name)
{
    Argument argument{std::move(name), sizeof(T), std::is_pointer_v<T>, false, false};
    if constexpr (std::is_pointer_v<T>)
    {
        argument.pointsToConst = std::is_const_v<std::remove_pointer_t<T>>;
        argument.pointsToPointer = std::is_pointer_v<std::remove_pointer_t<T>>;
    }
    return argument;
}

// "(program, index)" as its names.
std::vector<std::string> SplitNames(std::string const& list)
{
    std::vector<std::string> names;
    std::string name;
    for (char const c : list)
    {
        if (c == ',' || c == ')')
        {
            if (!name.empty())
                names.push_back(name);
            name.clear();
        }
        else if (c != '(' && c != ' ')
            name += c;
    }
    return names;
}

template <typename F>
struct Signature;
template <typename R, typename... Args>
struct Signature<R(Args...)>
{
    static std::vector<Word> Make(Buffers& buffers)
    {
        return Make(buffers, std::index_sequence_for<Args...>());
    }
    static Word Invoke(AnyFunction wrapper, std::vector<Word> const& words)
    {
        return Invoke(reinterpret_cast<R (*)(Args...)>(wrapper), words, std::index_sequence_for<Args...>());
    }
    static std::vector<Argument> Arguments(std::string const& list)
    {
        std::vector<std::string> names = SplitNames(list);
        names.resize(sizeof...(Args));
        return Arguments(names, std::index_sequence_for<Args...>());
    }
    static constexpr ResultKind Kind()
    {
        if (std::is_void_v<R>)
            return ResultKind::None;
        if (std::is_same_v<R, char const*> || std::is_same_v<R, GLubyte const*>)
            return ResultKind::Text;
        return std::is_pointer_v<R> ? ResultKind::Pointer : ResultKind::Number;
    }
    static constexpr size_t ResultSize()
    {
        if constexpr (std::is_void_v<R>)
            return 0;
        else
            return sizeof(R);
    }

private:
    template <size_t... I>
    static std::vector<Word> Make([[maybe_unused]] Buffers& buffers, std::index_sequence<I...>)
    {
        return {Distinct<Args>(buffers, I)...};
    }
    template <size_t... I>
    static std::vector<Argument> Arguments([[maybe_unused]] std::vector<std::string> const& names,
                                           std::index_sequence<I...>)
    {
        return {Describe<Args>(names[I])...};
    }
    template <size_t... I>
    static Word Invoke(R (*wrapper)(Args...), [[maybe_unused]] std::vector<Word> const& words,
                       std::index_sequence<I...>)
    {
        if constexpr (std::is_void_v<R>)
        {
            wrapper(fakehost::FromWord<Args>(words[I])...);
            return 0;
        }
        else
            return fakehost::AsWord(wrapper(fakehost::FromWord<Args>(words[I])...));
    }
};

template <typename F>
Function Make(nebtrace::Api api, char const* library, uint16_t id, char const* name, ECallKind kind,
              unsigned int defaultResult, char const* arguments, F* wrapper, void (*setEntry)(AnyFunction))
{
    using S = Signature<F>;
    return {api,
            library,
            id,
            name,
            kind,
            defaultResult,
            S::Kind(),
            S::ResultSize(),
            S::Arguments(arguments),
            reinterpret_cast<AnyFunction>(wrapper),
            &S::Make,
            &S::Invoke,
            setEntry};
}

#define SET_ENTRY(host, name)                                                                                \
    [](AnyFunction entry) { host()->name = reinterpret_cast<decltype(host()->name)>(entry); }

void AddEgl(std::vector<Function>& functions)
{
#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    functions.push_back(Make(nebtrace::Api::Egl, "egl", id, #name, kind, defaultResult, #arguments,          \
                             &Egl::_##name, SET_ENTRY(EglHost, name)));
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    EGL(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/egl.def"
}

void AddEs1(std::vector<Function>& functions)
{
#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    functions.push_back(Make(nebtrace::Api::Es1, "es1", id, #name, kind, defaultResult, #arguments,          \
                             &Es1::_##name, SET_ENTRY(Es1Host, name)));
#include "api/es1.def"
}

void AddEs2(std::vector<Function>& functions)
{
#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    functions.push_back(Make(nebtrace::Api::Es2, "es2", id, #name, kind, defaultResult, #arguments,          \
                             &Es2::_##name, SET_ENTRY(Es2Host, name)));
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    ES2(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/es2.def"
}

#undef SET_ENTRY

}  // namespace

Buffers::Buffers()
    : m_buffers(kCount, std::vector<uint8_t>(kSize)), m_texts(kCount, std::vector<uint8_t>(kSize))
{
}

void* Buffers::Pattern(size_t index)
{
    std::vector<uint8_t>& buffer = m_buffers.at(index);
    for (size_t i = 0; i < kSize; ++i)
        buffer[i] = static_cast<uint8_t>(i * 7 + index * 31 + 1);
    std::memcpy(buffer.data() + 16, &kEglNone, sizeof kEglNone);  // it may be taken for an attribute list
    return buffer.data();
}

void* Buffers::Words(size_t index)
{
    auto* const words = reinterpret_cast<uint32_t*>(m_buffers.at(index).data());
    for (size_t i = 0; i < kSize / 4; ++i)
        words[i] = static_cast<uint32_t>(3 + (index + i) % 9);
    words[2] = kEglNone;
    return words;
}

void* Buffers::Floats(size_t index)
{
    auto* const floats = reinterpret_cast<float*>(m_buffers.at(index).data());
    for (size_t i = 0; i < kSize / 4; ++i)
        floats[i] = static_cast<float>(100 * index + i) + 0.25f;
    return floats;
}

char* Buffers::Text(size_t index)
{
    std::vector<uint8_t>& buffer = m_texts.at(index);
    std::fill(buffer.begin(), buffer.end(), uint8_t('z'));
    std::string const text = "text" + std::to_string(index);
    std::copy(text.begin(), text.end(), buffer.begin());
    buffer[text.size()] = 0;
    return reinterpret_cast<char*>(buffer.data());
}

void* Buffers::Pointers(size_t index)
{
    auto* const pointers = reinterpret_cast<char**>(m_buffers.at(index).data());
    for (size_t i = 0; i < kSize / sizeof(char*); ++i)
        pointers[i] = i < kCount ? Text(i) : pointers[0];
    return pointers;
}

size_t Function::ApiArguments() const
{
    auto const named = [](Argument const& argument) { return !argument.name.empty(); };
    return static_cast<size_t>(std::count_if(arguments.begin(), arguments.end(), named));
}

std::vector<Function> const& AllFunctions()
{
    static std::vector<Function> const functions = [] {
        std::vector<Function> all;
        AddEgl(all);
        AddEs1(all);
        AddEs2(all);
        return all;
    }();
    return functions;
}
