#include "player/es2_functions.h"
#include "player/invoke.h"
#include <unordered_map>

namespace nebtrace::player
{
namespace
{
template <auto Member>
Es2Function Describe()
{
    using Function = std::remove_reference_t<decltype(std::declval<Es2Functions&>().*Member)>;
    return {ArgumentCount(Function{}),
            [](Es2Functions const& gl, uint64_t const* words) { return Invoke(gl.*Member, words); },
            [](Es2Functions const& gl) { return gl.*Member != nullptr; }};
}

std::unordered_map<uint16_t, Es2Function> MakeTable()
{
    return {
#define ES2(id, kind, fallback, result, name, parameters, arguments) {id, Describe<&Es2Functions::name>()},
#define ES2_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    {id, Describe<&Es2Functions::name>()},
#include "api/es2.def"
    };
}
}  // namespace

Es2Function const* FindEs2Function(uint16_t id)
{
    static std::unordered_map<uint16_t, Es2Function> const table = MakeTable();
    auto const found = table.find(id);
    return found == table.end() ? nullptr : &found->second;
}
}  // namespace nebtrace::player
