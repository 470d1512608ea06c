// Names: objects that are made, deleted and bound.
#include "player/es2_player.h"

namespace nebtrace::player
{
namespace
{
struct NamedClass
{
    char const* kind;
    void (*Es2Functions::*generate)(GLsizei, GLuint*);
    void (*Es2Functions::*remove)(GLsizei, GLuint const*);
    char const* argument;  // of the array in the records
};

constexpr NamedClass kTextures = {"texture", &Es2Functions::glGenTextures, &Es2Functions::glDeleteTextures,
                                  "textures"};
constexpr NamedClass kBuffers = {"buffer", &Es2Functions::glGenBuffers, &Es2Functions::glDeleteBuffers,
                                 "buffers"};
constexpr NamedClass kFramebuffers = {"framebuffer", &Es2Functions::glGenFramebuffers,
                                      &Es2Functions::glDeleteFramebuffers, "framebuffers"};
constexpr NamedClass kRenderbuffers = {"renderbuffer", &Es2Functions::glGenRenderbuffers,
                                       &Es2Functions::glDeleteRenderbuffers, "renderbuffers"};
constexpr NamedClass kVertexArrays = {"vertex_array", &Es2Functions::glGenVertexArraysOES,
                                      &Es2Functions::glDeleteVertexArraysOES, "arrays"};
constexpr NamedClass kFences = {"fence", &Es2Functions::glGenFencesNV, &Es2Functions::glDeleteFencesNV,
                                "fences"};
constexpr NamedClass kQueries = {"query", &Es2Functions::glGenQueriesEXT, &Es2Functions::glDeleteQueriesEXT,
                                 "ids"};
constexpr NamedClass kPipelines = {"program_pipeline", &Es2Functions::glGenProgramPipelinesEXT,
                                   &Es2Functions::glDeleteProgramPipelinesEXT, "pipelines"};

template <NamedClass const& Class>
void Generate(Es2Player& player, Call const& call)
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

void ForgetBuffer(Es2Player& player, uint32_t recorded)
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

void ForgetVertexArray(Es2Player& player, uint32_t recorded)
{
    player.Now().vertexArrayState.erase(recorded);
    if (player.Now().vertexArray == recorded)
        player.Now().vertexArray = 0;
}

void Forget(Es2Player& player, std::string const& kind, uint32_t recorded)
{
    player.Names(kind)->Forget(recorded);
    if (kind == "buffer")
        ForgetBuffer(player, recorded);
    else if (kind == "vertex_array")
        ForgetVertexArray(player, recorded);
}

template <NamedClass const& Class>
void Delete(Es2Player& player, Call const& call)
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

void BindVertexArray(Es2Player& player, Call const& call)
{
    player.PlayPlain(call);
    if (!call.Failed())
        player.Now().vertexArray = call.Word("array");
}

void BindBuffer(Es2Player& player, Call const& call)
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

std::vector<Es2Entry> Es2ObjectHandlers()
{
    return {{"glGenTextures", Generate<kTextures>},
            {"glGenBuffers", Generate<kBuffers>},
            {"glGenFramebuffers", Generate<kFramebuffers>},
            {"glGenRenderbuffers", Generate<kRenderbuffers>},
            {"glGenVertexArraysOES", Generate<kVertexArrays>},
            {"glGenFencesNV", Generate<kFences>},
            {"glGenQueriesEXT", Generate<kQueries>},
            {"glGenProgramPipelinesEXT", Generate<kPipelines>},
            {"glDeleteTextures", Delete<kTextures>},
            {"glDeleteBuffers", Delete<kBuffers>},
            {"glDeleteFramebuffers", Delete<kFramebuffers>},
            {"glDeleteRenderbuffers", Delete<kRenderbuffers>},
            {"glDeleteVertexArraysOES", Delete<kVertexArrays>},
            {"glDeleteFencesNV", Delete<kFences>},
            {"glDeleteQueriesEXT", Delete<kQueries>},
            {"glDeleteProgramPipelinesEXT", Delete<kPipelines>},
            {"glBindVertexArrayOES", BindVertexArray},
            {"glBindBuffer", BindBuffer}};
}
}  // namespace nebtrace::player
