#include "player/gl_functions.h"
#include "player/invoke.h"
#include <unordered_map>

namespace nebtrace::player
{
namespace
{
template <auto Member>
GlFunction Describe()
{
    using Function = std::remove_reference_t<decltype(std::declval<GlFunctions&>().*Member)>;
    return {ArgumentCount(Function{}),
            [](GlFunctions const& gl, uint64_t const* words) { return Invoke(gl.*Member, words); },
            [](GlFunctions const& gl) { return gl.*Member != nullptr; }};
}

std::unordered_map<uint16_t, GlFunction> MakeTable()
{
    return {
#define ES2(id, kind, fallback, result, name, parameters, arguments) {id, Describe<&GlFunctions::name>()},
#define ES2_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    {id, Describe<&GlFunctions::name>()},
#include "api/es2.def"
    };
}
}  // namespace

GlFunction const* FindGlFunction(uint16_t id)
{
    static std::unordered_map<uint16_t, GlFunction> const table = MakeTable();
    auto const found = table.find(id);
    return found == table.end() ? nullptr : &found->second;
}
}  // namespace nebtrace::player
