// A profiled application whose records a test looks into, over a host that keeps names, types and locations
// of its objects.
//
//     GLuint const program = Es2::_glCreateProgram(0);   // 1; its alternates are 2 and 3
//     EXPECT_EQ((Texts{"glLinkProgram(1)", "glLinkProgram(2)", ...}), HostCallsOf([&] {
//     Es2::_glLinkProgram(1); }));
#pragma once
#include "tests/wrappers/profiled.h"
#include <set>
#include <utility>

using Texts = std::vector<std::string>;

// A slot without a texture.
inline void ExpectDefaults(CProfiler::STextureBinding const& binding)
{
    EXPECT_EQ(0u, binding.name);
    EXPECT_EQ(0x2702u, binding.minFilter);
    EXPECT_EQ(0x2601u, binding.magFilter);
    EXPECT_FALSE(binding.bIsAttachment);
}

class Tracked : public Profiled
{
protected:
    static constexpr uintptr_t kContext = 0x1000;
    static constexpr GLuint kFirstShader = 51;

    // With one context, that is current.
    Tracked()
    {
        ScriptNames();
        ScriptAnswers();
        Create(kContext);
        MakeCurrent(kContext);
        Fake().Forget();
    }

    ~Tracked() override { Fake().Reset(); }

    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }
    static void Create(uintptr_t context, uintptr_t share = 0)
    {
        Fake().Result("eglCreateContext", Handle(context));
        Egl::_eglCreateContext(Handle(0x11), Handle(0x22), Handle(share), nullptr, nullptr, nullptr);
    }
    static void MakeCurrent(uintptr_t context)
    {
        Egl::_eglMakeCurrent(Handle(0x11), Handle(0x33), Handle(0x33), Handle(context));
    }
    static bool IsKnown(uintptr_t context) { return Profiler().m_Contexts.Find(Handle(context)) != nullptr; }
    static CProfiler::SContext& Context(uintptr_t context = kContext)
    {
        return *Profiler().m_Contexts.Find(Handle(context));
    }

    static CProfiler::STextureBinding& Es2Slot(int unit, int slot) { return Context().textures[unit][slot]; }
    static CProfiler::STextureBinding& Es1Slot(int unit) { return Context().texturesEs1[unit]; }

    // Runs calls that the host refuses.
    template <typename Action>
    void Refused(Action action, uint32_t error = GL_INVALID_OPERATION)
    {
        HostFails(error);
        Printed(action);
    }

    // The host's calls, but for the question after its error: GLES1's with "es1 " ahead. Texts are in
    // quotes, and what is only written to is left out.
    template <typename Action>
    static Texts HostCallsOf(Action action)
    {
        Fake().Forget();
        action();
        Texts texts;
        for (Call const& call : Fake().Calls())
            if (call.name != "glGetError")
                texts.push_back(TextOf(call));
        return texts;
    }

    // The host finds a uniform of a program here; it finds no other.
    void HostFinds(GLuint program, std::string const& uniform, GLint location)
    {
        m_locations[{program, uniform}] = location;
    }

    GLuint m_nextProgram = 1;
    GLuint m_nextShader = kFirstShader;
    std::set<GLuint> m_programs, m_shaders, m_textures;  // what the host knows
    std::map<GLuint, GLenum> m_shaderTypes;
    std::map<GLuint, std::string> m_sources;  // the first string of each shader's last one
    std::map<std::pair<GLenum, GLenum>, GLint> m_textureParameters;

private:
    static std::string TextOf(Call const& call)
    {
        static std::set<std::string> const outputs = {"glGetShaderiv", "glGetTexParameteriv"};
        static std::set<std::string> const texts = {"glGetUniformLocation", "glBindAttribLocation"};
        std::string text = (call.api == "es1" ? "es1 " : "") + call.name + "(";
        size_t const shown = call.words.size() - (outputs.count(call.name) || call.name == "glShaderSource");
        for (size_t i = 0; i < shown; ++i)
        {
            bool const isText = texts.count(call.name) && i + 1 == shown;
            bool const isArray = call.name == "glShaderSource" && i == 2;
            text += i ? ", " : "";
            text += isText    ? '"' + std::string(call.Pointer<char>(i)) + '"'
                    : isArray ? "strings"
                              : std::to_string(static_cast<int32_t>(call.words[i]));
        }
        return text + ")";
    }

    // Programs are named from 1 on, shaders from 51 on.
    void ScriptNames()
    {
        Fake().On("glCreateProgram", [this](Call const&) {
            Fake().Result("glCreateProgram", m_nextProgram);
            m_programs.insert(m_nextProgram++);
        });
        Fake().On("glCreateShader", [this](Call const& call) {
            Fake().Result("glCreateShader", m_nextShader);
            m_shaderTypes[m_nextShader] = call.Argument<GLenum>(0);
            m_shaders.insert(m_nextShader++);
        });
    }
    void ScriptAnswers()
    {
        ScriptIs("glIsProgram", m_programs);
        ScriptIs("glIsShader", m_shaders);
        ScriptIs("glIsTexture", m_textures);
        Fake().On("glGetShaderiv", [this](Call const& call) {
            if (call.Argument<GLenum>(1) == GL_SHADER_TYPE)
                *call.Pointer<GLint>(2) = static_cast<GLint>(m_shaderTypes[call.Argument<GLuint>(0)]);
        });
        Fake().On("glShaderSource", [this](Call const& call) {
            auto const* const lengths = call.Pointer<GLint const>(3);
            auto const* const strings = call.Pointer<char const*>(2);
            char const* const first = strings && call.Argument<GLsizei>(1) > 0 ? strings[0] : nullptr;
            if (first)
                m_sources[call.Argument<GLuint>(0)] =
                    lengths && *lengths >= 0 ? std::string(first, static_cast<size_t>(*lengths)) : first;
        });
        Fake().On("glGetUniformLocation", [this](Call const& call) {
            auto const found = m_locations.find({call.Argument<GLuint>(0), call.Pointer<char>(1)});
            Fake().Result("glGetUniformLocation", found == m_locations.end() ? -1 : found->second);
        });
        Fake().On("glGetTexParameteriv", [this](Call const& call) {
            auto const found = m_textureParameters.find({call.Argument<GLenum>(0), call.Argument<GLenum>(1)});
            if (found != m_textureParameters.end())
                *call.Pointer<GLint>(2) = found->second;
        });
    }
    static void ScriptIs(std::string const& name, std::set<GLuint>& known)
    {
        Fake().On(name, [name, &known](Call const& call) {
            Fake().Result(name, static_cast<GLboolean>(known.count(call.Argument<GLuint>(0))));
        });
    }

    std::map<std::pair<GLuint, std::string>, GLint> m_locations;
};
