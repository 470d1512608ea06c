// Draws of a profiled application, as the calls that reach the host for each of them.
//
//     CProfiler::m_DisableBlending = true;
//     Enables("es2").bBlend = true;
//     EXPECT_EQ(Around("es2", {"es2 glDisable be2"}, {"es2 glEnable be2"}), Drawn("es2"));
#pragma once
#include "host/hosts.h"
#include "tests/wrappers/profiled.h"
#include <sstream>

// A call with its library, its name and its words in hex; an upload has the bytes of its image in place of
// their address.
using Lines = std::vector<std::string>;

template <typename... Args>
std::string Line(std::string const& api, std::string const& name, Args... arguments)
{
    std::ostringstream line;
    line << api << ' ' << name << std::hex;
    ((line << ' ' << fakehost::AsWord(arguments)), ...);
    return line.str();
}

inline std::string ImageBytes(Call const& upload)
{
    static char const digits[] = "0123456789abcdef";
    std::string text;
    auto const size = static_cast<size_t>(upload.Argument<GLsizei>(3) * upload.Argument<GLsizei>(4) * 4);
    for (uint8_t const byte : Raw(upload.Pointer<void>(8), size))
        (text += digits[byte >> 4]) += digits[byte & 15];
    return text;
}

inline std::string Line(Call const& call)
{
    bool const isUpload = call.name == "glTexImage2D";
    std::ostringstream line;
    line << call.api << ' ' << call.name << std::hex;
    for (size_t i = 0; i + (isUpload ? 1 : 0) < call.words.size(); ++i)
        line << ' ' << call.words[i];
    if (isUpload)
        line << ' ' << ImageBytes(call);
    return line.str();
}

inline Lines operator+(Lines first, Lines const& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class Overrides : public Profiled
{
protected:
    Overrides() : m_context(MakeContextCurrent()) {}

    // The process has used one of the GL APIs, or both.
    static void OnlyHas(std::string const& api)
    {
        if (api == "es1")
            SEs2Host::s_pInstance.Reset(nullptr);
        else
        {
            delete SEs1Host::s_pInstance;
            SEs1Host::s_pInstance = nullptr;
        }
    }

    CProfiler::SContext& Context() { return m_context; }
    CProfiler::SEnables& Enables(std::string const& api)
    {
        return api == "es1" ? m_context.enablesEs1 : m_context.enables;
    }
    int32_t* Viewport(std::string const& api)
    {
        return api == "es1" ? m_context.viewportEs1 : m_context.viewport;
    }

    // The host's calls for one draw.
    static Lines Drawn(std::string const& api)
    {
        Fake().Forget();
        api == "es1" ? Es1::_glDrawArrays(GL_TRIANGLES, 0, 3) : Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
        Lines lines;
        for (Call const& call : Fake().Calls())
            lines.push_back(Line(call));
        return lines;
    }

    // That draw, which the host is asked for an error of, between these.
    static Lines Around(std::string const& api, Lines const& before, Lines const& behind)
    {
        return before + Lines{api + " glDrawArrays 4 0 3", api + " glGetError"} + behind;
    }
    static Lines Bare(std::string const& api) { return Around(api, {}, {}); }

private:
    CProfiler::SContext& m_context;
};

// What holds in either API.
class OverridesOfEach : public Overrides, public testing::WithParamInterface<char const*>
{
protected:
    OverridesOfEach() : api(GetParam()) { OnlyHas(api); }

    CProfiler::SEnables& Enables() { return Overrides::Enables(api); }
    Lines Drawn() { return Overrides::Drawn(api); }
    Lines Bare() { return Overrides::Bare(api); }
    Lines Around(Lines const& before, Lines const& behind) { return Overrides::Around(api, before, behind); }
    template <typename... Args>
    std::string Host(char const* name, Args... arguments)
    {
        return Line(api, name, arguments...);
    }

    std::string const api;
};
