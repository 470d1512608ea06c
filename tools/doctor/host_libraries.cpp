// The libraries that `nebtrace record` writes into the recorder's configuration.
#include "../commands.h"
#include "../record.h"
#include "checks.h"

namespace fs = std::filesystem;

namespace doctor
{
namespace
{
// Without front ends there is nothing to be told apart from.
fs::path FrontEndsIfAny()
{
    try
    {
        return record::FrontEndFolder();
    } catch (CommandFailed const&)
    {
        return {};
    }
}

// A GLES1 that is missing is missed by applications of GLES1 only.
Finding Check(record::HostLibrary const& library, fs::path const& frontEnds, Verdict ifMissing)
{
    Finding finding{library.names[0]};
    record::FoundLibrary const found = record::FindHostLibrary(library, frontEnds);
    finding.found = found.path;
    finding.details = {{"path", found.path}};
    if (!found.path.empty())
        return finding;
    finding.verdict = ifMissing;
    finding.found = "not found: " + found.reason;
    finding.next = std::string("install ") + library.package +
                   " (so Debian calls the package), or name it with " + library.option;
    finding.details = {{"package", library.package}};
    return finding;
}
}  // namespace

bool FrontEndsAreOnPath()
{
    try
    {
        record::FindHostLibrary(record::kHostEgl, FrontEndsIfAny());
        return false;
    } catch (CommandFailed const&)
    {
        return true;
    }
}

Findings CheckHostLibraries()
{
    fs::path const frontEnds = FrontEndsIfAny();
    if (FrontEndsAreOnPath())
        return {{"library path", Verdict::Problem,
                 "the front ends are on it, in place of the machine's libraries",
                 "take " + frontEnds.string() + " out of LD_LIBRARY_PATH: nebtrace record puts it there"}};
    return {Check(record::kHostEgl, frontEnds, Verdict::Problem),
            Check(record::kHostEs2, frontEnds, Verdict::Problem),
            Check(record::kHostEs1, frontEnds, Verdict::Warning)};
}
}  // namespace doctor
