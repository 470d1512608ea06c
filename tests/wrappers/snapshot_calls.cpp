#include "tests/wrappers/snapshot_calls.h"
#include "trace/decode.h"
#include "trace/print.h"
#include <algorithm>

namespace
{

constexpr uint16_t kThreadChange = 1;
constexpr uint16_t kLastReservedId = 4;
constexpr size_t kHeadSize = 6;

std::string LineOf(uint16_t id, nebtrace::Bytes payload, nebtrace::Api hint)
{
    if (id <= kLastReservedId)
        return "-- " + std::to_string(id);
    nebtrace::DecodedCall call;
    return nebtrace::Decode(id, hint, payload, call) ? nebtrace::CallText(call) : "?? " + std::to_string(id);
}

}  // namespace

Lines CallsIn(Bytes const& written, nebtrace::Api hint)
{
    Lines lines;
    size_t at = 0;
    while (at + kHeadSize <= written.size())
    {
        uint32_t const length = nebtrace::LoadU32(written.data() + at);
        uint16_t const id = nebtrace::LoadU16(written.data() + at + 4);
        if (id != kThreadChange)
            lines.push_back(LineOf(id, {written.data() + at + kHeadSize, length}, hint));
        at += kHeadSize + length;
    }
    EXPECT_EQ(written.size(), at);
    return lines;
}

Lines NamesOf(Lines const& lines)
{
    Lines names;
    for (std::string const& line : lines)
        names.push_back(line.substr(0, line.find('(')));
    return names;
}

Lines Only(Lines const& lines, std::vector<std::string> const& names)
{
    Lines only;
    for (std::string const& line : lines)
        if (std::find(names.begin(), names.end(), line.substr(0, line.find('('))) != names.end())
            only.push_back(line);
    return only;
}

Snapshot::Snapshot(nebtrace::Api api) : m_api(api)
{
    CTraceRecordManager::m_EglFileStateLastGet = CEglRenderState();
    CTraceRecordManager::m_Es2FileStateLastGet = CEs2ContextState();
    CTraceRecordManager::m_Es1FileStateLastGet = CEs1ContextState();
    HostAnswers(GL_ACTIVE_TEXTURE, GL_TEXTURE0);
    HostAnswers(GL_MAX_TEXTURE_IMAGE_UNITS, 2);
    Fake().On("glGetIntegerv", [this](Call const& call) {
        for (auto const& [name, value] : m_integers)
            if (call.Argument<GLenum>(0) == name)
                *call.Pointer<GLint>(1) = value;
    });
    Play();
    STraceConfig::m_bEGLUsed = false;
    STraceConfig::m_bES1Used = api == nebtrace::Api::Es1;
    STraceConfig::m_bES2Used = api == nebtrace::Api::Es2;
    CTraceRecordManager::m_EglFileState->m_iClientVersion = 2;
}

void Snapshot::HostAnswers(GLenum name, GLint value)
{
    m_integers.erase(std::remove_if(m_integers.begin(), m_integers.end(),
                                    [&](auto const& answer) { return answer.first == name; }),
                     m_integers.end());
    m_integers.emplace_back(name, value);
}

void Snapshot::Capture()
{
    Written();
    CTraceRecordManager::saveRenderStatePhase1();
}

Lines Snapshot::Write(bool optimize)
{
    STraceConfig::m_optimizationRS = optimize;
    STraceConfig::m_bDoNativeCall = false;
    Printed([] { CTraceRecordManager::saveRenderStatePhase2(false, false); });
    STraceConfig::m_bDoNativeCall = true;
    return CallsIn(Written(), m_api);
}

Lines Snapshot::Taken(bool optimize)
{
    Capture();
    return Write(optimize);
}
