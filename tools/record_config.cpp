// Makes, places and takes away the recorder's configuration file.
#include "commands.h"
#include "record.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace record
{
namespace
{
// The recorder reads lines of at most this many bytes; a longer one would count as several.
constexpr std::size_t kLongestLine = 498;
// What the file grows by, in MiB, and is mapped of it at a time.
constexpr char kFileWindow[] = "8";
constexpr char kBlanks[] = " \t\r\n\f\v";

std::string Stripped(std::string const& text)
{
    std::size_t const first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// A configuration as its lines, so that a base file keeps its order and comments.
class Config
{
public:
    explicit Config(std::istream& base)
    {
        for (std::string line; std::getline(base, line);)
            m_lines.push_back(line);
    }

    static std::string KeyOf(std::string const& line)
    {
        std::string const stripped = Stripped(line);
        std::size_t const equals = stripped.find('=');
        bool const other = stripped.empty() || std::strchr("'#[", stripped[0]) || equals == std::string::npos;
        return other ? std::string() : Stripped(stripped.substr(0, equals));
    }

    std::optional<std::string> Get(std::string_view key) const
    {
        std::optional<std::string> value;
        for (std::string const& line : m_lines)
            if (KeyOf(line) == key)
                value = Stripped(line.substr(line.find('=') + 1));
        return value;
    }

    void Remove(std::string_view key)
    {
        std::vector<std::string> kept;
        for (std::string const& line : m_lines)
            if (KeyOf(line) != key)
                kept.push_back(line);
        m_lines = kept;
    }

    void Set(std::string const& key, std::string const& value)
    {
        std::string const line = key + " = " + value;
        bool const carried = Stripped(value) == value && value.find('\n') == std::string::npos;
        if (!carried || line.size() > kLongestLine)
            throw CommandFailed("a configuration cannot carry this path, which is too long, or has blanks at "
                                "an end or a line break: " +
                                value);
        Remove(key);
        m_lines.push_back(line);
    }

    void Set(std::string const& key, int value) { Set(key, std::to_string(value)); }

    void SetIfMissing(std::string const& key, std::string const& value)
    {
        if (!Get(key))
            Set(key, value);
    }

    std::string Text() const
    {
        std::string text;
        for (std::string const& line : m_lines)
            text += line + "\n";
        return text;
    }

private:
    std::vector<std::string> m_lines;
};

Config BaseConfig(std::string const& file)
{
    if (file.empty())
    {
        // What a recording is without options: every frame, with the contents of arrays, and no chatter. The
        // mere presence of RecordData turns the contents on; leaving it out is the only way to say no.
        std::istringstream text(
            "# Written by nebtrace record, which takes it away again at the end.\n[record]\n"
            "RecordData = 1\nStartFrame = 0\nEndFrame = " +
            std::to_string(kLastFrame) + "\nDebugInfo = 0\n");
        return Config(text);
    }
    std::ifstream stream(file);
    if (!stream)
        throw CommandFailed("cannot read " + file + ": " + std::strerror(errno));
    return Config(stream);
}

// The other keys of the network count only behind the first. A file here is written if one was asked for.
void SetNetwork(Config& config, Options const& options)
{
    config.Set("Network", 1);
    config.Set("NetworkSendData", 1);
    if (options.networkWait)
        config.Set("NetworkWait", 1);
    if (options.output.empty())
        config.Set("SaveFileToDisk", 0);
    // Over the network the state is cut down unless it is said otherwise.
    if (!options.optimize)
        config.SetIfMissing("OptimizeRS", "0");
}

void PlaceHost(Config& config, char const* key, std::string const& given, std::string const& found)
{
    if (!given.empty())
        config.Set(key, found);
    else
        config.SetIfMissing(key, found);
}
}  // namespace

std::string ConfigText(Options const& options, HostLibraries const& host)
{
    Config config = BaseConfig(options.config);
    PlaceHost(config, "EglLibraryPath", options.host.egl, host.egl);
    PlaceHost(config, "Es1LibraryPath", options.host.es1, host.es1);
    if (!options.host.es2.empty())
        config.Remove("Es3LibraryPath");
    // The longer key names the same library, and wins where it stands.
    if (config.Get("Es3LibraryPath").value_or("").size() <= 2)
        PlaceHost(config, "Es2LibraryPath", options.host.es2, host.es2);
    std::string const output =
        !options.output.empty() ? options.output : config.Get("TraceFile").value_or("trace.nebt");
    // In full, so that an application that changes its folder first still records to the same place.
    config.Set("TraceFile", fs::absolute(output).string());
    if (options.frames)
    {
        config.Set("StartFrame", options.frames->first);
        config.Set("EndFrame", options.frames->last);
    }
    if (options.noData)
        config.Remove("RecordData");
    if (options.saveFrames)
        config.Set("SaveFrameBuffer", 1);
    if (options.optimize)
        config.Set("OptimizeRS", 1);
    if (options.flushEachWrite)
        config.Set("FileWindow", 0);
    else
        config.SetIfMissing("FileWindow", kFileWindow);
    if (options.profile)
        config.Set("Profile", 1);
    if (options.network)
        SetNetwork(config, options);
    if (options.verbosity > 0)
        config.Set("DebugInfo", options.verbosity);
    return config.Text();
}

std::optional<std::string> ConfigValue(std::string const& text, std::string_view key)
{
    std::istringstream stream(text);
    return Config(stream).Get(key);
}

PlacedConfig::PlacedConfig(fs::path path, std::string const& text, bool force) : m_path(std::move(path))
{
    bool const exists = fs::symlink_status(m_path).type() != fs::file_type::not_found;
    if (exists && !force)
        throw CommandFailed(m_path.string() + " exists: --force sets it aside for the run");
    if (exists)
        SetAside();
    try
    {
        Write(text);
    } catch (...)
    {
        if (exists)
            fs::rename(m_aside, m_path);
        throw;
    }
}

PlacedConfig::~PlacedConfig()
{
    std::error_code error;
    if (m_aside.empty())
        fs::remove(m_path, error);
    else
        fs::rename(m_aside, m_path, error);
    if (error)
        std::cerr << "nebtrace: cannot put " << m_path.string() << " back: " << error.message() << "\n";
}

void PlacedConfig::SetAside()
{
    m_aside = m_path.string() + ".saved-" + std::to_string(getpid());
    std::error_code error;
    fs::rename(m_path, m_aside, error);
    if (error)
        throw CommandFailed("cannot set " + m_path.string() + " aside: " + error.message());
}

// Only ever a new file: one that somebody else puts there in this moment stays whole.
void PlacedConfig::Write(std::string const& text) const
{
    int const file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0)
        throw CommandFailed("cannot write " + m_path.string() + ": " + std::strerror(errno) +
                            "; start nebtrace record in a folder that you may write to");
    ssize_t const written = write(file, text.data(), text.size());
    if (close(file) == 0 && written == static_cast<ssize_t>(text.size()))
        return;
    fs::remove(m_path);
    throw CommandFailed("cannot write " + m_path.string() + ": there is no room for it");
}
}  // namespace record
