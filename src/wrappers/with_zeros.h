// Calls a wrapper that takes more arguments than the API's function.
#pragma once
#include <type_traits>

// Converts to the zero of whatever type is asked for.
struct Zero
{
    template <class Type>
    operator Type() const
    {
        return Type{};
    }
};

// A wrapper that takes more arguments than the API's function: called with the application's arguments and 0
// for each of the others, which only a snapshot fills in. A config list that is not null would be used as
// one.
template <class Wrapper>
struct WithZeros
{
    Wrapper wrapper;

    template <class... Arguments>
    auto operator()(Arguments... arguments) const
    {
        if constexpr (std::is_invocable_v<Wrapper, Arguments...>)
            return wrapper(arguments...);
        else
            return (*this)(arguments..., Zero{});
    }
};
template <class Wrapper>
WithZeros(Wrapper) -> WithZeros<Wrapper>;
