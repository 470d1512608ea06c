// A driver's function called with arguments as they stand in a record: one word of 64 bits each.
#pragma once
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace nebtrace::player
{
template <typename T>
T FromWord(uint64_t word)
{
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<T>(static_cast<uintptr_t>(word));
    else if constexpr (std::is_floating_point_v<T>)
    {
        static_assert(sizeof(T) == 4);
        auto const bits = static_cast<uint32_t>(word);
        T value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    else
        return static_cast<T>(word);
}

template <typename T>
uint64_t ToWord(T value)
{
    if constexpr (std::is_pointer_v<T>)
        return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(value));
    else
        return static_cast<uint64_t>(value);
}

template <typename Result, typename... Arguments, size_t... Index>
uint64_t Invoke(Result (*function)(Arguments...), uint64_t const* words, std::index_sequence<Index...>)
{
    static_cast<void>(words);  // of a function without arguments
    if constexpr (std::is_void_v<Result>)
    {
        function(FromWord<Arguments>(words[Index])...);
        return 0;
    }
    else
        return ToWord(function(FromWord<Arguments>(words[Index])...));
}

template <typename Result, typename... Arguments>
uint64_t Invoke(Result (*function)(Arguments...), uint64_t const* words)
{
    return Invoke(function, words, std::index_sequence_for<Arguments...>());
}

template <typename Result, typename... Arguments>
constexpr size_t ArgumentCount(Result (*)(Arguments...))
{
    return sizeof...(Arguments);
}
}  // namespace nebtrace::player
