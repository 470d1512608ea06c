// The dispatcher of EGL calls: which context and surfaces each recorded thread has current.
#pragma once
#include "player/device.h"
#include "player/report.h"

namespace nebtrace::player
{
class EglPlayer
{
public:
    EglPlayer(Driver const& driver, Survey const& survey, bool window, Reporter report);

    void Play(Call const& call, uint64_t thread);

    // The context that a thread has current, made current in truth. Where the trace has made none, the thread
    // gets one: a recording can begin behind the calls that made it.
    std::shared_ptr<Context> Current(uint64_t thread);
    Surface const* CurrentDraw(uint64_t thread);

    EGLImageKHR OwnImage(uint32_t recorded) const { return m_images.Find(recorded, nullptr); }

private:
    struct Binding
    {
        std::shared_ptr<Context> context;
        std::shared_ptr<Surface> draw;
        std::shared_ptr<Surface> read;
    };
    using Handler = void (EglPlayer::*)(Call const&);
    struct Entry
    {
        char const* name;
        Handler handler;
    };
    static Entry const kEntries[];

    void CreateContext(Call const& call);
    void CreateWindowSurface(Call const& call);
    void CreatePbufferSurface(Call const& call);
    void CreateOtherSurface(Call const& call);
    void DestroyContext(Call const& call);
    void DestroySurface(Call const& call);
    void MakeCurrent(Call const& call);
    void ReleaseThread(Call const& call);
    void SwapBuffers(Call const& call);
    void CreateImage(Call const& call);
    void DestroyImage(Call const& call);
    void TexImage(Call const& call);

    std::shared_ptr<Context> FindContext(uint32_t recorded, Attributes const& config);
    std::shared_ptr<Context> MakeContextOnDemand(Attributes const& config) const;
    std::shared_ptr<Surface> MakeSurface(uint32_t recorded, Attributes const& config, Size size);
    std::shared_ptr<Surface> FindSurface(uint32_t recorded, Attributes const& config);
    Size SizeOf(uint32_t surface, Size known) const;
    void SwitchTo(Binding const& binding);

    EglFunctions const& m_egl;
    Survey const& m_survey;
    Reporter m_report;
    Device m_device;
    ObjectMap<std::shared_ptr<Context>> m_contexts;
    // Made for calls ahead of any eglMakeCurrent: the first handle that no record has made stands for it.
    std::shared_ptr<Context> m_nameless;
    ObjectMap<std::shared_ptr<Surface>> m_surfaces;
    ObjectMap<EGLImageKHR> m_images;
    std::map<uint64_t, Binding> m_threads;
    Binding m_current;  // in truth
    uint64_t m_thread = 0;
};
}  // namespace nebtrace::player
