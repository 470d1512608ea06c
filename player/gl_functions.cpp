#include "player/gl_functions.h"
#include "player/invoke.h"
#include <unordered_map>

namespace nebtrace::player
{
namespace
{
using Table = std::unordered_map<uint16_t, GlFunction>;

template <auto Functions, auto Member>
GlFunction Describe()
{
    using Function = std::remove_reference_t<decltype((std::declval<Driver&>().*Functions).*Member)>;
    return {ArgumentCount(Function{}),
            [](Driver const& driver, uint64_t const* words) {
                return Invoke((driver.*Functions).*Member, words);
            },
            [](Driver const& driver) { return (driver.*Functions).*Member != nullptr; }};
}

Table MakeEs1Table()
{
    return {
#define ES1(id, kind, fallback, result, name, parameters, arguments)                                         \
    {id, Describe<&Driver::es1, &Es1Functions::name>()},
#include "api/es1.def"
    };
}

Table MakeEs2Table()
{
    return {
#define ES2(id, kind, fallback, result, name, parameters, arguments)                                         \
    {id, Describe<&Driver::es2, &GlFunctions::name>()},
#define ES2_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    {id, Describe<&Driver::es2, &GlFunctions::name>()},
#include "api/es2.def"
    };
}
}  // namespace

GlFunction const* FindGlFunction(Api api, uint16_t id)
{
    static Table const es1 = MakeEs1Table();
    static Table const es2 = MakeEs2Table();
    Table const& table = api == Api::Es1 ? es1 : es2;
    auto const found = table.find(id);
    return found == table.end() ? nullptr : &found->second;
}
}  // namespace nebtrace::player
