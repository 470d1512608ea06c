// Names: objects that are made, deleted and bound.
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
struct NamedClass
{
    char const* kind;
    void (*GlFunctions::*generate)(GLsizei, GLuint*);
    void (*GlFunctions::*remove)(GLsizei, GLuint const*);
    char const* argument;  // of the array in the records
};

constexpr NamedClass kTextures = {"texture", &GlFunctions::glGenTextures, &GlFunctions::glDeleteTextures,
                                  "textures"};
constexpr NamedClass kBuffers = {"buffer", &GlFunctions::glGenBuffers, &GlFunctions::glDeleteBuffers,
                                 "buffers"};
constexpr NamedClass kFramebuffers = {"framebuffer", &GlFunctions::glGenFramebuffers,
                                      &GlFunctions::glDeleteFramebuffers, "framebuffers"};
constexpr NamedClass kRenderbuffers = {"renderbuffer", &GlFunctions::glGenRenderbuffers,
                                       &GlFunctions::glDeleteRenderbuffers, "renderbuffers"};
constexpr NamedClass kVertexArrays = {"vertex_array", &GlFunctions::glGenVertexArraysOES,
                                      &GlFunctions::glDeleteVertexArraysOES, "arrays"};
constexpr NamedClass kFences = {"fence", &GlFunctions::glGenFencesNV, &GlFunctions::glDeleteFencesNV,
                                "fences"};
constexpr NamedClass kQueries = {"query", &GlFunctions::glGenQueriesEXT, &GlFunctions::glDeleteQueriesEXT,
                                 "ids"};
constexpr NamedClass kPipelines = {"program_pipeline", &GlFunctions::glGenProgramPipelinesEXT,
                                   &GlFunctions::glDeleteProgramPipelinesEXT, "pipelines"};

template <NamedClass const& Class>
void Generate(GlPlayer& player, Call const& call)
{
    auto const generate = player.Gl().*Class.generate;
    if (call.Failed())
        return;
    if (!generate)
        return player.NotReplayed(call, "the driver has no such function");
    for (uint32_t const recorded : call.Words(Class.argument))
    {
        GLuint own = kNoSuchName;
        generate(1, &own);
        player.Names(Class.kind)->Set(recorded, own);
    }
}

void ForgetBuffer(GlPlayer& player, uint32_t recorded)
{
    Context& context = player.Now();
    context.shared->bufferContents.erase(recorded);
    if (context.arrayBuffer == recorded)
        context.arrayBuffer = 0;
    VertexArray& array = context.BoundVertexArray();
    if (array.elementBuffer == recorded)
        array.elementBuffer = 0;
    // What points into a deleted buffer points at nothing, and not at client memory: such an attribute is
    // never read again.
    for (auto& [index, attribute] : array.attributes)
        if (attribute.buffer == recorded)
            attribute = Attribute{attribute.enabled, 4, GL_FLOAT, GL_FALSE, 0, 0, 0, attribute.divisor};
}

void ForgetVertexArray(GlPlayer& player, uint32_t recorded)
{
    player.Now().vertexArrayState.erase(recorded);
    if (player.Now().vertexArray == recorded)
        player.Now().vertexArray = 0;
}

void Forget(GlPlayer& player, std::string const& kind, uint32_t recorded)
{
    player.Names(kind)->Forget(recorded);
    if (kind == "buffer")
        ForgetBuffer(player, recorded);
    else if (kind == "vertex_array")
        ForgetVertexArray(player, recorded);
}

template <NamedClass const& Class>
void Delete(GlPlayer& player, Call const& call)
{
    auto const remove = player.Gl().*Class.remove;
    if (call.Failed() || !remove)
        return;
    for (uint32_t const recorded : call.Words(Class.argument))
    {
        if (recorded == 0 || !player.Names(Class.kind)->Has(recorded))
            continue;
        GLuint const own = player.Names(Class.kind)->Find(recorded, 0);
        remove(1, &own);
        Forget(player, Class.kind, recorded);
    }
}

// A captured state binds none even where the driver has no such objects.
void BindVertexArray(GlPlayer& player, Call const& call)
{
    if (player.InState() && call.Word("array") == 0 && player.Now().vertexArray == 0)
        return;
    player.PlayPlain(call);
    if (!call.Failed())
        player.Now().vertexArray = call.Word("array");
}

void BindBuffer(GlPlayer& player, Call const& call)
{
    player.PlayPlain(call);
    if (call.Failed())
        return;
    if (call.Word("target") == GL_ARRAY_BUFFER)
        player.Now().arrayBuffer = call.Word("buffer");
    else if (call.Word("target") == GL_ELEMENT_ARRAY_BUFFER)
        player.Now().BoundVertexArray().elementBuffer = call.Word("buffer");
}
}  // namespace

std::vector<GlEntry> GlObjectHandlers()
{
    return {{"glGenTextures", Generate<kTextures>},
            {"glGenBuffers", Generate<kBuffers>},
            {"glGenFramebuffers", Generate<kFramebuffers>},
            {"glGenRenderbuffers", Generate<kRenderbuffers>},
            {"glGenFramebuffersOES", Generate<kFramebuffers>},
            {"glGenRenderbuffersOES", Generate<kRenderbuffers>},
            {"glGenVertexArraysOES", Generate<kVertexArrays>},
            {"glGenFencesNV", Generate<kFences>},
            {"glGenQueriesEXT", Generate<kQueries>},
            {"glGenProgramPipelinesEXT", Generate<kPipelines>},
            {"glDeleteTextures", Delete<kTextures>},
            {"glDeleteBuffers", Delete<kBuffers>},
            {"glDeleteFramebuffers", Delete<kFramebuffers>},
            {"glDeleteRenderbuffers", Delete<kRenderbuffers>},
            {"glDeleteFramebuffersOES", Delete<kFramebuffers>},
            {"glDeleteRenderbuffersOES", Delete<kRenderbuffers>},
            {"glDeleteVertexArraysOES", Delete<kVertexArrays>},
            {"glDeleteFencesNV", Delete<kFences>},
            {"glDeleteQueriesEXT", Delete<kQueries>},
            {"glDeleteProgramPipelinesEXT", Delete<kPipelines>},
            {"glBindVertexArrayOES", BindVertexArray},
            {"glBindBuffer", BindBuffer}};
}
}  // namespace nebtrace::player
