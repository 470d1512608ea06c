// The libraries that applications load in place of the machine's, and the recorder behind them.
#include "../aside.h"
#include "../commands.h"
#include "../record.h"
#include "checks.h"
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace doctor
{
namespace
{
constexpr char kRecorder[] = "libNEBTrace.so.1";
constexpr char kInstall[] =
    "install nebtrace again, as a whole: the parts of two versions do not fit together";

// '+' and the path of the recorder that came with the front end, or '-' and why it does not load. Everything
// is bound at once: a recorder that lacks what the front end calls is one of another version.
std::string Load(std::string const& path)
{
    setenv(record::kAsleep, "1", 1);
    if (!dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
        return std::string("-") + dlerror();
    link_map* map = nullptr;
    void* const recorder = dlopen(kRecorder, RTLD_LAZY | RTLD_NOLOAD);
    if (!recorder || dlinfo(recorder, RTLD_DI_LINKMAP, &map) != 0)
        return std::string("-it loads no ") + kRecorder;
    return "+" + fs::canonical(map->l_name).string();
}

// In the build tree and in an installation, as the front ends' run path has it.
bool Belongs(fs::path const& recorder, fs::path const& frontEnds)
{
    std::error_code error;
    for (char const* const folder : {"../src", "../.."})
        if (fs::equivalent(recorder, frontEnds / folder / kRecorder, error))
            return true;
    return false;
}

Finding CheckRecorder(std::string const& recorder, fs::path const& frontEnds)
{
    Finding finding{kRecorder, Verdict::Ok, recorder, {}, {{"path", recorder}}};
    if (Belongs(recorder, frontEnds))
        return finding;
    finding.verdict = Verdict::Problem;
    finding.found = "the front ends load " + recorder + ", which is not the one beside them";
    finding.next = "take its folder out of LD_LIBRARY_PATH";
    return finding;
}
}  // namespace

Findings CheckFrontEnds()
{
    fs::path folder;
    try
    {
        folder = record::FrontEndFolder();
    } catch (CommandFailed const& failed)
    {
        return {{"front ends", Verdict::Problem, failed.what(), kInstall}};
    }
    std::string recorder;
    for (char const* const name : {"libEGL.so.1", "libGLESv1_CM.so.1", "libGLESv2.so.2", "libGLES_CM.so"})
    {
        std::string const path = (folder / name).string();
        Aside const aside = RunAside([&path] { return Load(path); });
        if (!aside.fault.empty() || aside.answer[0] != '+')
        {
            std::string const reason = aside.fault.empty() ? aside.answer.substr(1) : aside.fault;
            return {{"front ends", Verdict::Problem, path + " does not load: " + reason, kInstall}};
        }
        recorder = aside.answer.substr(1);
    }
    return {{"front ends",
             Verdict::Ok,
             folder.string() + "; they load, and find all that they call",
             {},
             {{"folder", folder.string()}}},
            CheckRecorder(recorder, folder)};
}
}  // namespace doctor
