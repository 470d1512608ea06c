// A GLES1 application that has run ahead of the recorded frames, and the host that it runs on: two texture
// units, one clip plane, one light, no matrix palette.
#pragma once
#include "api/es1_enums.h"
#include "host/hosts.h"
#include "state/es1_context_state.h"
#include "tests/wrappers/snapshot_calls.h"
#include <algorithm>
#include <map>

class Es1Snapshot : public Snapshot
{
protected:
    Es1Snapshot() : Snapshot(nebtrace::Api::Es1)
    {
        m_integers = {{Es1Enum::kMaxTextureUnits, {2}},
                      {Es1Enum::kMaxClipPlanes, {1}},
                      {Es1Enum::kMaxLights, {1}},
                      {Es1Enum::kClientActiveTexture, {GL_TEXTURE0}},
                      {Es1Enum::kMatrixMode, {Es1Enum::kModelview}},
                      {GL_ACTIVE_TEXTURE, {GL_TEXTURE0}}};
        for (GLenum hint : {0x0C54u, 0x8192u, 0x0C52u, 0x0C50u, 0x0C51u})
            HostAnswers(hint, GL_DONT_CARE);
        HostLacks("glCurrentPaletteMatrixOES");
        Fake().On("glGetIntegerv", [this](Call const& call) { Answer<GLint>(call, m_integers); });
        Fake().On("glGetFloatv", [this](Call const& call) { Answer<GLfloat>(call, m_floats); });
        Fake().On("glActiveTexture",
                  [this](Call const& call) { m_unit = call.Argument<GLenum>(0) - GL_TEXTURE0; });
    }

    static CEs1ContextState& State() { return *CTraceRecordManager::m_Es1FileState; }

    // Looking at the table of GLES2 leaves a mark that this application would not have.
    void HostLacks(std::string const& name)
    {
        Snapshot::HostLacks(name);
        STraceConfig::m_bES2Used = false;
    }
    // The host's answers to glGetIntegerv and glGetFloatv; any other name has none.
    void HostAnswers(GLenum name, GLint value) { m_integers[name] = {value}; }
    void HostAnswers(GLenum name, std::vector<GLint> const& values) { m_integers[name] = values; }
    void HostAnswersFloats(GLenum name, std::vector<GLfloat> const& values) { m_floats[name] = values; }
    static void HostHasPalette()
    {
        auto& entry = SEs1Host::s_pInstance->glCurrentPaletteMatrixOES;
        entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(
            Fake().Entry("es1", "glCurrentPaletteMatrixOES"));
    }
    // The texture unit that is active on the host.
    GLenum Unit() const { return m_unit; }
    void SetUnit(GLenum unit) { m_unit = unit; }
    // The capabilities and arrays that are on.
    static void HostEnables(std::vector<GLenum> const& names)
    {
        Fake().On("glIsEnabled", [names](Call const& call) {
            bool const on = std::count(names.begin(), names.end(), call.Argument<GLenum>(0)) > 0;
            Fake().Result("glIsEnabled", on ? 1u : 0u);
        });
    }

    // The lines from the first one that begins so to the last one that begins so.
    static Lines From(Lines const& lines, std::string const& from, std::string const& to)
    {
        auto const begins = [](std::string const& with) {
            return [with](std::string const& line) { return line.rfind(with, 0) == 0; };
        };
        auto const first = std::find_if(lines.begin(), lines.end(), begins(from));
        auto const last = std::find_if(lines.rbegin(), lines.rend(), begins(to)).base();
        EXPECT_LT(first, last) << from << " to " << to;
        return first < last ? Lines(first, last) : Lines();
    }

    void BindTexture(GLuint name) { HostAnswers(GL_TEXTURE_BINDING_2D, static_cast<GLint>(name)); }
    // One pixel of an alpha texture.
    static void Image(GLint level, GLubyte pixel)
    {
        Es1::_glTexImage2D(GL_TEXTURE_2D, level, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, &pixel);
    }
    void Buffer(GLenum target, GLuint name, std::vector<GLubyte> const& bytes)
    {
        HostAnswers(target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING,
                    static_cast<GLint>(name));
        Es1::_glBufferData(target, static_cast<GLsizeiptr>(bytes.size()), bytes.data(), GL_STATIC_DRAW);
    }

private:
    template <typename T>
    static void Answer(Call const& call, std::map<GLenum, std::vector<T>> const& answers)
    {
        auto const found = answers.find(call.Argument<GLenum>(0));
        if (found != answers.end())
            std::copy(found->second.begin(), found->second.end(), call.Pointer<T>(1));
    }

    std::map<GLenum, std::vector<GLint>> m_integers;
    std::map<GLenum, std::vector<GLfloat>> m_floats;
    GLenum m_unit = 0;
};
