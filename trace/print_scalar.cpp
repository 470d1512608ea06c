// Single values as text.
#include "trace/enums.h"
#include "trace/print.h"
#include <charconv>
#include <cmath>
#include <cstring>

namespace nebtrace
{
namespace
{
constexpr double kFixedOne = 65536.0;

std::string Hex(uint64_t value)
{
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(value));
    return text;
}

template <typename T>
std::string Shortest(T value)
{
    char text[32];
    auto const end = std::to_chars(text, text + sizeof text, value);
    return {text, end.ptr};
}

std::string EnumText(EnumGroup const* group, uint32_t value)
{
    char const* const name = EnumName(group, value);
    return name ? name : Hex(value);
}

std::string BoolText(uint64_t value)
{
    return value == 0 ? "GL_FALSE" : value == 1 ? "GL_TRUE" : std::to_string(value);
}

// GL names are small numbers; what stands for a pointer is shown as one.
std::string ObjectText(std::string const& domain, uint64_t value)
{
    bool const handle = domain.compare(0, 3, "EGL") == 0 || domain == "sync";
    return handle ? Hex(value) : std::to_string(value);
}

float AsFloat(uint64_t bits)
{
    uint32_t const word = static_cast<uint32_t>(bits);
    float value;
    std::memcpy(&value, &word, sizeof value);
    return value;
}
}  // namespace

double RealValue(Kind kind, uint64_t bits)
{
    return kind == Kind::Fixed ? static_cast<int32_t>(static_cast<uint32_t>(bits)) / kFixedOne
                               : double{AsFloat(bits)};
}

// A float can hold an enumerant's value, a fixed point number its bits.
char const* NamedValue(FieldSpec const& spec, uint64_t bits)
{
    if (!spec.group)
        return nullptr;
    if (spec.element != Kind::Float)
        return spec.group->Find(static_cast<uint32_t>(bits));
    float const value = AsFloat(bits);
    bool const whole = value >= 0 && value < 65536.0F && value == std::floor(value);
    return whole ? spec.group->Find(static_cast<uint32_t>(value)) : nullptr;
}

static std::string NumberText(Kind kind, uint64_t bits)
{
    switch (kind)
    {
    case Kind::Signed:
        return std::to_string(static_cast<int32_t>(static_cast<uint32_t>(bits)));
    case Kind::Short:
        return std::to_string(static_cast<int16_t>(static_cast<uint16_t>(bits)));
    case Kind::Signed64:
        return std::to_string(static_cast<int64_t>(bits));
    case Kind::Float:
        return Shortest(AsFloat(bits));
    case Kind::Fixed:
        return Shortest(RealValue(kind, bits));
    default:
        return std::to_string(bits);
    }
}

std::string ScalarText(FieldSpec const& spec, uint64_t bits)
{
    switch (spec.element)
    {
    case Kind::Enum:
        return EnumText(spec.group, static_cast<uint32_t>(bits));
    case Kind::Bitmask:
        return BitsText(spec.group, static_cast<uint32_t>(bits));
    case Kind::Bool:
        return BoolText(bits);
    case Kind::Object:
        return ObjectText(spec.domain, bits);
    case Kind::Pointer:
        return bits == 0 ? "NULL" : Hex(bits);
    default:
        break;
    }
    char const* const name = NamedValue(spec, bits);
    return name ? name : NumberText(spec.element, bits);
}

std::string ErrorText(DecodedCall const& call)
{
    char const* const group = call.spec->api == Api::Egl ? "EGLEnum" : "ErrorCode";
    char const* const name = FindEnumGroup(group)->Find(call.error);
    return name ? name : Hex(call.error);
}

std::string AttribValueText(uint32_t key, uint32_t value)
{
    struct
    {
        char const* key;
        char const* group;
        bool bits;
    } const kinds[] = {
        {"EGL_SURFACE_TYPE", "EGLSurfaceType", true},  {"EGL_RENDERABLE_TYPE", "EGLRenderableType", true},
        {"EGL_CONFORMANT", "EGLRenderableType", true}, {"EGL_LOCK_USAGE_HINT_KHR", "EGLLockUsage", true},
        {"EGL_CONFIG_CAVEAT", "EGLEnum", false},       {"EGL_COLOR_BUFFER_TYPE", "EGLEnum", false},
        {"EGL_TRANSPARENT_TYPE", "EGLEnum", false},    {"EGL_TEXTURE_FORMAT", "EGLEnum", false},
        {"EGL_TEXTURE_TARGET", "EGLEnum", false},      {"EGL_RENDER_BUFFER", "EGLEnum", false},
    };
    char const* const name = EnumName("EGLEnum", key);
    for (auto const& kind : kinds)
    {
        if (!name || std::strcmp(name, kind.key) != 0)
            continue;
        EnumGroup const* const group = FindEnumGroup(kind.group);
        return kind.bits ? BitsText(group, value) : EnumText(group, value);
    }
    return std::to_string(static_cast<int32_t>(value));
}
}  // namespace nebtrace
