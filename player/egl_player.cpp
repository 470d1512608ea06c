#include "player/egl_player.h"

namespace nebtrace::player
{
namespace
{
constexpr Size kUsualSize = {640, 480};

// The pairs up to the terminator. A list of odd length has lost its terminator and keeps its whole pairs.
Attributes AttributesOf(Call const& call, char const* name)
{
    Attributes attributes;
    DecodedField const* const field = call.Find(name);
    if (!field || !field->hasData)
        return attributes;
    for (size_t i = 0; i + 1 < field->count; i += 2)
    {
        auto const key = static_cast<EGLint>(ValueAt(*field, i));
        if (key == EGL_NONE)
            break;
        attributes[key] = static_cast<EGLint>(ValueAt(*field, i + 1));
    }
    return attributes;
}

// What a record says of its config. IDs are small; handles are pointers, cut to their low half.
Attributes ConfigOf(Call const& call, char const* list)
{
    constexpr EGLint kMostIds = 0x10000;
    Attributes config = AttributesOf(call, list);
    DecodedField const* const field = call.Find("config");
    if (config.empty() && field && field->value != 0 && field->value < kMostIds)
        config[EGL_CONFIG_ID] = static_cast<EGLint>(field->value);
    return config;
}

EGLint ValueOf(Attributes const& attributes, EGLint key)
{
    auto const found = attributes.find(key);
    return found == attributes.end() ? 0 : found->second;
}

int Field(Call const& call, char const* name)
{
    DecodedField const* const field = call.Find(name);
    return field ? static_cast<int>(field->value) : 0;
}

Size Limited(int64_t width, int64_t height)
{
    Size size;
    size.Include(width, height);
    return size;
}
}  // namespace

// The rest of EGL only asks, waits, or shows itself in no picture.
EglPlayer::Entry const EglPlayer::kEntries[] = {
    {"eglCreateContext", &EglPlayer::CreateContext},
    {"eglCreateWindowSurface", &EglPlayer::CreateWindowSurface},
    {"eglCreatePbufferSurface", &EglPlayer::CreatePbufferSurface},
    {"eglCreatePixmapSurface", &EglPlayer::CreateOtherSurface},
    {"eglCreatePbufferFromClientBuffer", &EglPlayer::CreateOtherSurface},
    {"eglDestroyContext", &EglPlayer::DestroyContext},
    {"eglDestroySurface", &EglPlayer::DestroySurface},
    {"eglMakeCurrent", &EglPlayer::MakeCurrent},
    {"eglReleaseThread", &EglPlayer::ReleaseThread},
    {"eglSwapBuffers", &EglPlayer::SwapBuffers},
    {"eglCreateImageKHR", &EglPlayer::CreateImage},
    {"eglDestroyImageKHR", &EglPlayer::DestroyImage},
    {"eglBindTexImage", &EglPlayer::TexImage},
    {"eglReleaseTexImage", &EglPlayer::TexImage},
};

EglPlayer::EglPlayer(Driver const& driver, Survey const& survey, bool window, Reporter report)
    : m_egl(driver.egl), m_survey(survey), m_report(std::move(report)),
      m_device(driver, window, survey.Version())
{
}

// What failed when it was recorded made nothing.
void EglPlayer::Play(Call const& call, uint64_t thread)
{
    if (call.Failed() || (call.Decoded().Result() && call.Result() == 0))
        return;
    m_thread = thread;
    for (Entry const& entry : kEntries)
        if (call.Name() == entry.name)
            return (this->*entry.handler)(call);
}

Size EglPlayer::SizeOf(uint32_t surface, Size known) const
{
    auto const recorded = m_survey.surfaces.find(surface);
    if (recorded != m_survey.surfaces.end() && !recorded->second.Empty())
        known.Include(recorded->second.width, recorded->second.height);
    for (Size const& size : {known, m_survey.frame, m_survey.viewport})
        if (!size.Empty())
            return size;
    return kUsualSize;
}

void EglPlayer::CreateContext(Call const& call)
{
    auto context = std::make_shared<Context>();
    context->config = ConfigOf(call, "config_attribs");
    EGLint const version = ValueOf(AttributesOf(call, "attrib_list"), EGL_CONTEXT_CLIENT_VERSION);
    context->version = version < 2 ? 1 : version == 2 ? 2 : 3;
    context->sharedWith = m_contexts.Find(call.Word("share_context"), nullptr);
    if (context->sharedWith)
        context->shared = context->sharedWith->shared;
    m_contexts.Set(call.Result(), context);
}

void EglPlayer::CreateWindowSurface(Call const& call)
{
    // A state that was captured carries the config as it was when the window was made.
    Attributes config = AttributesOf(call, "saved_config_attribs");
    if (config.empty())
        config = AttributesOf(call, "config_attribs");
    Size const window = Limited(Field(call, "window_width"), Field(call, "window_height"));
    m_surfaces.Set(call.Result(), m_device.MakeWindow(config, SizeOf(call.Result(), window)));
}

void EglPlayer::CreatePbufferSurface(Call const& call)
{
    Attributes const attributes = AttributesOf(call, "attrib_list");
    Size const size = Limited(ValueOf(attributes, EGL_WIDTH), ValueOf(attributes, EGL_HEIGHT));
    // Of the attributes, those that make a texture of the pbuffer matter later.
    Attributes own;
    for (EGLint const key : {EGL_TEXTURE_FORMAT, EGL_TEXTURE_TARGET, EGL_MIPMAP_TEXTURE})
        if (attributes.count(key) != 0)
            own[key] = ValueOf(attributes, key);
    Attributes const config = AttributesOf(call, "config_attribs");
    if (own.empty())
        m_surfaces.Set(call.Result(), MakeSurface(call.Result(), config, size));
    else
        m_surfaces.Set(call.Result(), m_device.MakePbuffer(config, own, SizeOf(call.Result(), size)));
}

// A program that needs no window swaps on another surface, and is to be seen all the same where windows are
// shown.
std::shared_ptr<Surface> EglPlayer::MakeSurface(uint32_t recorded, Attributes const& config, Size size)
{
    Size const known = SizeOf(recorded, size);
    bool const seen = m_survey.swapped.count(recorded) != 0;
    return seen ? m_device.MakeWindow(config, known) : m_device.MakePbuffer(config, {}, known);
}

// There is no pixmap and no client buffer here: a pbuffer takes their place.
void EglPlayer::CreateOtherSurface(Call const& call)
{
    m_surfaces.Set(call.Result(), MakeSurface(call.Result(), AttributesOf(call, "config_attribs"), {}));
}

void EglPlayer::DestroyContext(Call const& call) { m_contexts.Forget(call.Word("ctx")); }

void EglPlayer::DestroySurface(Call const& call) { m_surfaces.Forget(call.Word("surface")); }

std::shared_ptr<Context> EglPlayer::MakeContextOnDemand(Attributes const& config) const
{
    auto context = std::make_shared<Context>();
    context->config = config;
    context->version = m_survey.Version();
    return context;
}

std::shared_ptr<Context> EglPlayer::FindContext(uint32_t recorded, Attributes const& config)
{
    if (recorded != 0 && !m_contexts.Has(recorded))
        m_contexts.Set(recorded, m_nameless ? std::move(m_nameless) : MakeContextOnDemand(config));
    return m_contexts.Find(recorded, nullptr);
}

std::shared_ptr<Surface> EglPlayer::FindSurface(uint32_t recorded, Attributes const& config)
{
    if (recorded != 0 && !m_surfaces.Has(recorded))
        m_surfaces.Set(recorded, MakeSurface(recorded, config, {}));
    return m_surfaces.Find(recorded, nullptr);
}

void EglPlayer::MakeCurrent(Call const& call)
{
    Binding binding;
    Attributes const recorded = ConfigOf(call, "config_attribs");
    binding.context = FindContext(call.Word("ctx"), recorded);
    if (!binding.context)
    {
        m_threads.erase(m_thread);
        return;
    }
    // A context whose config is not described takes that of the surface that it is to draw on.
    Attributes& config = binding.context->config;
    std::shared_ptr<Surface> const known = m_surfaces.Find(call.Word("draw"), nullptr);
    if (!IsDescribed(config) && known && IsDescribed(known->config))
        config = known->config;
    if (!IsDescribed(config) && !recorded.empty())
        config = recorded;
    binding.draw = FindSurface(call.Word("draw"), config);
    binding.read = FindSurface(call.Word("read"), config);
    m_threads[m_thread] = binding;
    SwitchTo(binding);
}

void EglPlayer::ReleaseThread(Call const&) { m_threads.erase(m_thread); }

void EglPlayer::SwitchTo(Binding const& binding)
{
    if (binding.context == m_current.context && binding.draw == m_current.draw &&
        binding.read == m_current.read)
        return;
    if (binding.context)
        m_device.Realize(*binding.context);
    m_device.MakeCurrent(binding.draw.get(), binding.read.get(), binding.context.get());
    m_current = binding;
}

std::shared_ptr<Context> EglPlayer::Current(uint64_t thread)
{
    Binding& binding = m_threads[thread];
    if (!binding.context)
    {
        // A snapshot is written under the context that was current then, or under none: any will do.
        if (m_contexts.Empty() && !m_nameless)
            m_nameless = MakeContextOnDemand({});
        binding.context = m_nameless ? m_nameless : m_contexts.begin()->second;
        binding.draw = binding.read = m_device.MakePbuffer(binding.context->config, {}, SizeOf(0, {}));
    }
    SwitchTo(binding);
    return binding.context;
}

Surface const* EglPlayer::CurrentDraw(uint64_t thread) { return m_threads[thread].draw.get(); }

void EglPlayer::SwapBuffers(Call const& call)
{
    Current(m_thread);
    if (std::shared_ptr<Surface> const surface = m_surfaces.Find(call.Word("surface"), nullptr))
        m_device.Swap(*surface);
}

void EglPlayer::CreateImage(Call const& call)
{
    std::shared_ptr<Context> const context = Current(m_thread);
    auto const target = static_cast<EGLenum>(call.Word("target"));
    uint32_t const source = call.Word("buffer");
    GLuint own = kNoSuchName;
    if (target == EGL_GL_RENDERBUFFER_KHR)
        own = context->shared->renderbuffers.Find(source, kNoSuchName);
    else if (target >= EGL_GL_TEXTURE_2D_KHR && target <= EGL_GL_TEXTURE_CUBE_MAP_NEGATIVE_Z_KHR)
        own = context->shared->textures.Find(source, kNoSuchName);
    if (own == kNoSuchName || !m_egl.eglCreateImageKHR)
        return m_report(Problem::NotReplayed, call, "its source is not in the trace");
    EGLint const attributes[] = {EGL_GL_TEXTURE_LEVEL_KHR,
                                 ValueOf(AttributesOf(call, "attrib_list"), EGL_GL_TEXTURE_LEVEL_KHR),
                                 EGL_NONE};
    bool const isTexture = target != EGL_GL_RENDERBUFFER_KHR;
    auto const buffer = reinterpret_cast<EGLClientBuffer>(static_cast<uintptr_t>(own));
    EGLImageKHR const image = m_egl.eglCreateImageKHR(m_device.Display(), context->own, target, buffer,
                                                      isTexture ? attributes : nullptr);
    if (!image)
        return m_report(Problem::NotReplayed, call, "the driver makes no such image");
    m_images.Set(call.Result(), image);
}

void EglPlayer::DestroyImage(Call const& call)
{
    EGLImageKHR const image = m_images.Find(call.Word("image"), nullptr);
    if (image && m_egl.eglDestroyImageKHR)
        m_egl.eglDestroyImageKHR(m_device.Display(), image);
    m_images.Forget(call.Word("image"));
}

void EglPlayer::TexImage(Call const& call)
{
    Current(m_thread);
    std::shared_ptr<Surface> const surface = m_surfaces.Find(call.Word("surface"), nullptr);
    if (!surface)
        return m_report(Problem::NotReplayed, call, "its surface is not in the trace");
    auto const function = call.Name() == "eglBindTexImage" ? m_egl.eglBindTexImage : m_egl.eglReleaseTexImage;
    if (!function(m_device.Display(), surface->own, static_cast<EGLint>(call.Word("buffer"))))
        m_report(Problem::NotReplayed, call, "the driver refuses it");
}
}  // namespace nebtrace::player
