#include "probe.h"
#include "../aside.h"
#include "../record.h"
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

namespace player = nebtrace::player;

namespace doctor
{
namespace
{
void Hush()
{
    int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0)
        return;
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
}

// One fact a line: name, '=', value.
std::string Lines(Facts const& facts)
{
    std::string text;
    for (auto const& [name, value] : facts)
        text += name + "=" + value.substr(0, value.find('\n')) + "\n";
    return text;
}

Facts FactsOf(std::string const& lines)
{
    Facts facts;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);)
        if (size_t const equals = line.find('='); equals != std::string::npos)
            facts[line.substr(0, equals)] = line.substr(equals + 1);
    return facts;
}
}  // namespace

Facts Probe(Facts (*look)(player::Driver const& driver))
{
    Aside const aside = RunAside([look] {
        setenv(record::kAsleep, "1", 1);
        Hush();
        std::string error;
        std::unique_ptr<player::Driver> const driver = player::Driver::Open(error);
        return Lines(driver ? look(*driver) : Facts{{kFailure, error}});
    });
    Facts facts = FactsOf(aside.answer);
    if (!aside.fault.empty())
        facts[kFailure] = aside.fault;
    return facts;
}

std::string ErrorText(player::EglFunctions const& egl)
{
    char text[32];
    std::snprintf(text, sizeof text, "EGL error 0x%x", static_cast<unsigned>(egl.eglGetError()));
    return text;
}

std::string Text(void const* text) { return text ? static_cast<char const*>(text) : ""; }
}  // namespace doctor
