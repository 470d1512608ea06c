#include "config_lines.h"
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string_view>

namespace doctor
{
namespace
{
// As much of a line as the recorder takes at once; the rest of a longer one is a line of its own to it.
constexpr size_t kMostOfLine = 499;
constexpr char kBlanks[] = " \t\r\n\f\v";

enum class Kind
{
    Flag,
    Number,
    Text,
    Library
};

struct Key
{
    char const* name;
    Kind kind;
};

constexpr Kind KindOf(std::string_view group, std::string_view value)
{
    if (group == "host")
        return Kind::Library;
    return value == "switch" ? Kind::Flag : value == "number" ? Kind::Number : Kind::Text;
}

// Those of the recorder, which knows no others and tells of none that it does not know.
constexpr Key kKeys[] = {
#define CONFIG_KEY(group, name, value, standard, effect) {#name, KindOf(group, value)},
#include "api/config_keys.def"
#undef CONFIG_KEY
};

std::string Stripped(std::string const& text)
{
    size_t const first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsSame(std::string const& a, std::string const& b)
{
    auto const same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

bool IsNumber(std::string const& text)
{
    size_t const sign = !text.empty() && text[0] == '-' ? 1 : 0;
    return text.size() > sign && text.find_first_not_of("0123456789", sign) == std::string::npos;
}

std::string UnknownKey(std::string const& key)
{
    for (Key const& known : kKeys)
        if (IsSame(key, known.name))
            return "no key is called " + key + ", but " + known.name + " is";
    return "no key is called " + key + ", and the line does nothing";
}

class Lines
{
public:
    explicit Lines(ConfigLines& found) : m_found(found) {}

    void Take(std::string const& raw)
    {
        ++m_number;
        if (raw.size() > kMostOfLine)
            Remark("it has more than " + std::to_string(kMostOfLine) +
                   " bytes, and the recorder takes it as several lines");
        std::string const line = Stripped(raw);
        if (line.empty() || std::strchr("'#[", line[0]))
            return;
        size_t const equals = line.find('=');
        if (equals == std::string::npos)
            return Remark("it has no \"=\", and does nothing: " + line);
        TakeSetting(Stripped(line.substr(0, equals)), Stripped(line.substr(equals + 1)));
    }

private:
    void Remark(std::string const& text)
    {
        m_found.remarks.push_back("line " + std::to_string(m_number) + ": " + text);
    }

    void TakeSetting(std::string const& key, std::string const& value)
    {
        auto const same = [&key](Key const& known) { return key == known.name; };
        Key const* const known = std::find_if(std::begin(kKeys), std::end(kKeys), same);
        if (known == std::end(kKeys))
            return Remark(UnknownKey(key));
        CheckValue(*known, value);
        CheckOrder(key);
        m_found.values[key] = value;
    }

    void CheckValue(Key const& key, std::string const& value)
    {
        std::string const name = key.name;
        if (key.kind == Kind::Number && !IsNumber(value))
            Remark(name + " is no whole number: " + value);
        if (key.kind == Kind::Flag && (value.empty() || std::isalpha(static_cast<unsigned char>(value[0]))))
            Remark(name + " = " + value + " means yes: only what begins with 0 means no");
        if (name == "RecordData" && !value.empty() && value[0] == '0')
            Remark("contents are recorded all the same: only leaving RecordData out turns them off");
    }

    // Two keys of the network count only behind the one that turns it on.
    void CheckOrder(std::string const& key)
    {
        if (key != "NetworkBufferSize" && key != "NetworkSendData")
            return;
        auto const network = m_found.values.find("Network");
        if (network == m_found.values.end() || network->second[0] == '0')
            Remark(key + " does nothing ahead of a line that says Network = 1");
    }

    ConfigLines& m_found;
    unsigned m_number = 0;
};
}  // namespace

ConfigLines ReadConfigLines(std::istream& file)
{
    ConfigLines found;
    Lines lines(found);
    for (std::string line; std::getline(file, line);)
        lines.Take(line);
    return found;
}
}  // namespace doctor
