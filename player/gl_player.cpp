#include "player/gl_player.h"
#include "player/arguments.h"
#include "player/gl_functions.h"
#include "trace/enums.h"
#include <unordered_map>

namespace nebtrace::player
{
namespace
{
using Table = std::unordered_map<std::string, GlHandler>;

Table MakeTable(std::initializer_list<std::vector<GlEntry>> families)
{
    Table table;
    for (std::vector<GlEntry> const& family : families)
        for (GlEntry const& entry : family)
            table.emplace(entry.name, entry.handler);
    return table;
}

GlHandler FindHandler(Api api, std::string const& name)
{
    static Table const es1 = MakeTable({GlObjectHandlers(), GlTextureHandlers(), GlBufferHandlers(),
                                        Es1ArrayHandlers(), GlDrawHandlers(), GlSkippedHandlers()});
    static Table const es2 =
        MakeTable({GlObjectHandlers(), GlTextureHandlers(), GlBufferHandlers(), Es2ProgramHandlers(),
                   Es2UniformHandlers(), Es2ArrayHandlers(), GlDrawHandlers(), GlSkippedHandlers()});
    Table const& table = api == Api::Es1 ? es1 : es2;
    auto const found = table.find(name);
    return found == table.end() ? nullptr : found->second;
}

bool BeginsWith(std::string const& name, char const* start) { return name.rfind(start, 0) == 0; }

bool IsQuery(std::string const& name)
{
    for (char const* const start :
         {"glGet", "glIs", "glRead", "glCheck", "glExtGet", "glExtIs", "glTest", "glQueryMatrix"})
        if (BeginsWith(name, start))
            return !BeginsWith(name, "glReadBuffer");
    return false;
}

bool HasBarePointer(Call const& call)
{
    for (DecodedField const& field : call.Decoded().fields)
        if (field.spec->isArgument && field.spec->kind == Kind::Pointer)
            return true;
    return false;
}

std::string ErrorName(GLenum error)
{
    char const* const name = EnumName("ErrorCode", error);
    return name ? name : "error " + std::to_string(error);
}
}  // namespace

GlPlayer::GlPlayer(Driver const& driver, Survey const& survey, EglPlayer& egl, Options options,
                   Reporter report)
    : m_driver(driver), m_gl(&driver.es2), m_survey(survey), m_egl(egl), m_options(options),
      m_report(std::move(report))
{
}

GlPlayer::~GlPlayer() = default;

void GlPlayer::SwitchTo(Api api)
{
    if (api == Api::Es1 && !m_driver.HasEs1())
        throw DriverFailure("libGLESv1_CM.so.1 cannot be opened, or is no OpenGL ES 1 library; install "
                            "libgles1 (so Debian calls the package)");
    m_api = api;
    m_gl = api == Api::Es1 ? &m_driver.sharedEs1 : &m_driver.es2;
}

ArrayCalls const& GlPlayer::Arrays() const { return IsEs1() ? kEs1Arrays : kEs2Arrays; }

void GlPlayer::Play(Call const& call, uint64_t thread, Part part, bool inState)
{
    SwitchTo(call.Decoded().GetApi());
    m_context = m_egl.Current(thread);
    m_inState = inState;
    if (part != m_part)
        for (auto& program : Shared().programState)
            program.second.links = 0;
    m_part = part;
    std::string const name = call.Name();
    if (name != "glTexImage2D" && name != "glCompressedTexImage2D")
        PayCubeMipmaps();
    if (GlHandler const handler = FindHandler(m_api, name))
        handler(*this, call);
    else if (IsQuery(name))
        PlayQuery(call);
    else if (HasBarePointer(call))
        NotReplayed(call, "what it points at is not in the record");
    else
        PlayPlain(call);
    if (m_options.checkErrors)
        CheckErrors(call);
}

void GlPlayer::PayCubeMipmaps()
{
    if (m_owesCubeMipmaps)
        m_gl->glGenerateMipmap(GL_TEXTURE_CUBE_MAP);
    m_owesCubeMipmaps = false;
}

uint64_t GlPlayer::PlayPlain(Call const& call)
{
    GlFunction const* const function = FindGlFunction(m_api, call.Id());
    if (!function || !function->present(m_driver))
    {
        NotReplayed(call, "the driver has no such function");
        return 0;
    }
    auto const translate = [this](std::string const& kind, uint32_t recorded) {
        return OwnName(kind, recorded);
    };
    Arguments const arguments(call, translate);
    if (arguments.Count() != function->arguments)
        throw BadRecord("it has the wrong number of arguments");
    return function->invoke(m_driver, arguments.Words());
}

// A context that was lost answers with an error for ever.
void GlPlayer::CheckErrors(Call const& call)
{
    constexpr int kMost = 8;
    for (int i = 0; i < kMost; ++i)
    {
        GLenum const error = m_gl->glGetError();
        if (error == GL_NO_ERROR)
            return;
        if (!call.Failed())
            m_report(Problem::GlError, call, ErrorName(error));
    }
}

ObjectMap<GLuint>* GlPlayer::Names(std::string const& kind)
{
    struct Class
    {
        char const* name;
        ObjectMap<GLuint>* names;
    };
    Context& context = *m_context;
    ShareGroup& shared = *context.shared;
    Class const classes[] = {{"texture", &shared.textures},
                             {"buffer", &shared.buffers},
                             {"program", &shared.programs},
                             {"shader", &shared.shaders},
                             {"framebuffer", &context.framebuffers},
                             {"renderbuffer", &shared.renderbuffers},
                             {"vertex_array", &context.vertexArrays},
                             {"fence", &shared.fences},
                             {"query", &context.queries},
                             {"program_pipeline", &context.pipelines}};
    for (Class const& each : classes)
        if (kind == each.name)
            return each.names;
    return nullptr;
}

GLuint GlPlayer::OwnName(std::string const& kind, uint32_t recorded)
{
    ObjectMap<GLuint>* const names = Names(kind);
    if (!names)
        return recorded;
    if (recorded == 0 || names->Has(recorded))
        return names->Find(recorded, kNoSuchName);
    GLuint own = kNoSuchName;
    if (kind == "texture")
        m_gl->glGenTextures(1, &own);
    else if (kind == "buffer")
        m_gl->glGenBuffers(1, &own);
    else if (kind == "framebuffer")
        m_gl->glGenFramebuffers(1, &own);
    else if (kind == "renderbuffer")
        m_gl->glGenRenderbuffers(1, &own);
    else if (kind == "vertex_array" && m_gl->glGenVertexArraysOES)
        m_gl->glGenVertexArraysOES(1, &own);
    else
        return kNoSuchName;
    names->Set(recorded, own);
    return own;
}
}  // namespace nebtrace::player
