// Queries, which a replay only makes to compare their outputs with the recorded ones.
#include "player/arguments.h"
#include "player/gl_functions.h"
#include "player/gl_player.h"
#include "player/pixels.h"
#include "trace/print.h"
#include <cstring>

namespace nebtrace::player
{
namespace
{
// No query writes more than this into an output whose size it is not told; where it is, it is told this.
constexpr size_t kOutputSize = 64 * 1024;

bool IsSizeArgument(std::string const& name)
{
    for (char const* const known : {"bufSize", "maxCount", "size", "groupsSize", "counterSize", "count"})
        if (name == known)
            return true;
    return name.rfind("max", 0) == 0;
}

// Whether what an integer query answers is the name of an object, and of which class.
char const* ClassOfBinding(uint32_t name)
{
    switch (name)
    {
    case GL_TEXTURE_BINDING_2D:
    case GL_TEXTURE_BINDING_CUBE_MAP:
        return "texture";
    case GL_ARRAY_BUFFER_BINDING:
    case GL_ELEMENT_ARRAY_BUFFER_BINDING:
    case GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING:
        return "buffer";
    case GL_FRAMEBUFFER_BINDING:
        return "framebuffer";
    case GL_RENDERBUFFER_BINDING:
        return "renderbuffer";
    case GL_CURRENT_PROGRAM:
        return "program";
    case GL_VERTEX_ARRAY_BINDING_OES:
        return "vertex_array";
    default:
        return nullptr;
    }
}

class Query
{
public:
    Query(GlPlayer& player, Call const& call, GlFunction const& function)
        : m_player(player), m_call(call), m_function(function)
    {
    }

    void Run()
    {
        for (DecodedField const& field : m_call.Decoded().fields)
            if (field.spec->isArgument)
                Add(field);
        if (m_words.size() != m_function.arguments)
            return;
        m_result = m_function.invoke(m_player.GetDriver(), m_words.data());
        Compare();
    }

private:
    void Add(DecodedField const& field);
    uint64_t OutputFor(DecodedField const& field);
    void Compare();
    void CompareOutput(DecodedField const& field, uint8_t const* replayed);
    std::vector<uint8_t> Mapped(DecodedField const& field, uint8_t const* replayed) const;
    bool IsLocation(DecodedField const& field) const { return field.spec->name == "location"; }

    GlPlayer& m_player;
    Call const& m_call;
    GlFunction const& m_function;
    std::vector<uint64_t> m_words;
    std::vector<std::pair<DecodedField const*, std::unique_ptr<Copy>>> m_outputs;
    uint64_t m_result = 0;
};

void Query::Add(DecodedField const& field)
{
    std::string const& name = field.spec->name;
    if (IsComposite(field.spec->kind))
        m_words.push_back(OutputFor(field));
    else if (field.spec->element == Kind::Object)
        m_words.push_back(m_player.OwnName(field.spec->domain, static_cast<uint32_t>(field.value)));
    else if (IsSizeArgument(name))
        m_words.push_back(std::min<uint64_t>(field.value, kOutputSize / sizeof(uint32_t)));
    else if (IsLocation(field))
    {
        auto const& uniforms = m_player.Shared().programState[m_call.Word("program")].uniforms;
        auto const found = uniforms.find(static_cast<int32_t>(field.value));
        m_words.push_back(found == uniforms.end() ? WordOf(field)
                                                  : static_cast<uint64_t>(int64_t{found->second.own}));
    }
    else
        m_words.push_back(WordOf(field));
}

// A null pointer stays one: its output was not wanted.
uint64_t Query::OutputFor(DecodedField const& field)
{
    if (field.value == 0)
        return 0;
    m_outputs.emplace_back(&field, std::make_unique<Copy>(Bytes{}, kOutputSize + field.bytes.size));
    return reinterpret_cast<uintptr_t>(m_outputs.back().second->Data());
}

// Names as the recording has them.
std::vector<uint8_t> Query::Mapped(DecodedField const& field, uint8_t const* replayed) const
{
    std::vector<uint8_t> bytes(replayed, replayed + field.bytes.size);
    DecodedField const* const pname = m_call.Find("pname");
    char const* kind = pname ? ClassOfBinding(static_cast<uint32_t>(pname->value)) : nullptr;
    if (field.spec->element == Kind::Object)
        kind = field.spec->domain.c_str();
    ObjectMap<GLuint> const* const names = kind ? m_player.Names(kind) : nullptr;
    if (!names || ScalarSize(field.spec->element) != sizeof(uint32_t))
        return bytes;
    for (size_t at = 0; at + sizeof(uint32_t) <= bytes.size(); at += sizeof(uint32_t))
    {
        uint32_t const own = LoadU32(bytes.data() + at);
        uint32_t const recorded = own == 0 ? 0 : names->Recorded(own);
        std::memcpy(bytes.data() + at, &recorded, sizeof recorded);
    }
    return bytes;
}

void Query::CompareOutput(DecodedField const& field, uint8_t const* replayed)
{
    if (!field.hasData || field.bytes.empty())
        return;
    std::vector<uint8_t> const bytes = Mapped(field, replayed);
    if (std::memcmp(bytes.data(), field.bytes.data, field.bytes.size) == 0)
        return;
    DecodedField other = field;
    other.bytes = {bytes.data(), bytes.size()};
    m_player.QueryDiffers(m_call, field.spec->name + " is " + FieldText(m_call.Decoded(), other) + ", not " +
                                      FieldText(m_call.Decoded(), field));
}

void Query::Compare()
{
    for (auto const& [field, copy] : m_outputs)
        CompareOutput(*field, copy->Begin());
    DecodedField const* const result = m_call.Decoded().Result();
    if (!result || IsComposite(result->spec->kind) || result->value == m_result)
        return;
    m_player.QueryDiffers(m_call, "the answer is " + ScalarText(*result->spec, m_result) + ", not " +
                                      ScalarText(*result->spec, result->value));
}

// The texts that drivers give out about themselves.
void CompareString(GlPlayer& player, Call const& call)
{
    auto const* const own =
        reinterpret_cast<char const*>(player.Gl().glGetString(static_cast<GLenum>(call.Word("name"))));
    std::string const recorded = Call::Text(*call.Decoded().Result());
    if (recorded != (own ? own : ""))
        player.QueryDiffers(call, "the text is " + QuotedText(own ? own : "", 80) + ", not " +
                                      QuotedText(recorded, 80));
}

void CompareAttribLocation(GlPlayer& player, Call const& call)
{
    GLuint const program = player.OwnName("program", call.Word("program"));
    GLint const own = player.Gl().glGetAttribLocation(program, call.Text("name").c_str());
    auto const recorded = static_cast<GLint>(call.Result());
    if (own != recorded)
        player.QueryDiffers(call,
                            "the location is " + std::to_string(own) + ", not " + std::to_string(recorded));
}

void ComparePixels(GlPlayer& player, Call const& call)
{
    ImageShape const shape{call.Int("width"), call.Int("height"), 1,
                           PixelSize(call.Word("format"), call.Word("type"))};
    DecodedField const& field = call.Field("pixels");
    if (!field.hasData || field.bytes.empty())
        return;
    // The widest rows that there are: the player's own alignment may be another than the recorded one.
    uint64_t const needed = ImageSize(shape, 8);
    if (needed == 0 || needed > field.bytes.size + uint64_t{8} * static_cast<uint64_t>(shape.height))
        return player.NotReplayed(call, "its pixels are of an unknown size");
    Copy read(field.bytes, static_cast<size_t>(needed));
    player.Gl().glReadPixels(call.Int("x"), call.Int("y"), shape.width, shape.height, call.Word("format"),
                             call.Word("type"), read.Data());
    if (std::memcmp(read.Begin(), field.bytes.data, field.bytes.size) != 0)
        player.QueryDiffers(call, "the pixels differ");
}
}  // namespace

void GlPlayer::PlayQuery(Call const& call)
{
    // A query that failed has no outputs to compare.
    if (!m_options.checkQueries || call.Failed())
        return;
    GlFunction const* const function = FindGlFunction(m_api, call.Id());
    std::string const name = call.Name();
    if (name == "glGetString")
        CompareString(*this, call);
    else if (name == "glGetAttribLocation")
        CompareAttribLocation(*this, call);
    else if (name == "glReadPixels")
        ComparePixels(*this, call);
    else if (call.Id() < kFirstSharedId && function && function->present(m_driver))
        Query(*this, call, *function).Run();
}
}  // namespace nebtrace::player
