// The dispatcher of OpenGL ES calls, of either API. Calls of plain values, names and sized arrays are handed
// to the driver as the layouts describe them; those that need more have a handler in the file of their family
// (gl_*.cpp of both APIs, es1_*.cpp and es2_*.cpp of one).
#pragma once
#include "player/driver.h"
#include "player/egl_player.h"
#include "player/report.h"
#include "player/state.h"
#include "player/survey.h"
#include <vector>

namespace nebtrace::player
{
class GlPlayer;

using GlHandler = void (*)(GlPlayer&, Call const&);

struct GlEntry
{
    char const* name;
    GlHandler handler;
};

// How the arrays of an API are reached by their numbers: vertex attributes, or the fixed arrays of ES 1.
struct ArrayCalls
{
    void (*point)(GlPlayer&, uint32_t index, Attribute const&, void const* pointer);
    void (*enable)(GlPlayer&, uint32_t index, bool enabled);
};

class GlPlayer
{
public:
    struct Options
    {
        bool checkErrors = true;
        bool checkQueries = false;
    };

    GlPlayer(Driver const& driver, Survey const& survey, EglPlayer& egl, Options options, Reporter report);
    ~GlPlayer();

    // `part`: of the file, where the record stands; `inState`: between the markers of a captured state.
    void Play(Call const& call, uint64_t thread, Part part, bool inState);

    // Hands the call to the driver as it is; returns the result.
    uint64_t PlayPlain(Call const& call);
    // Compares a query with the recording, if that was asked for.
    void PlayQuery(Call const& call);

    // The player's own name of an object; objects that come into being at their first use are made.
    GLuint OwnName(std::string const& kind, uint32_t recorded);
    // Where the names of a class are kept; null if the class has no names.
    ObjectMap<GLuint>* Names(std::string const& kind);

    void NotReplayed(Call const& call, std::string const& why) { m_report(Problem::NotReplayed, call, why); }
    void QueryDiffers(Call const& call, std::string const& how)
    {
        m_report(Problem::QueryDiffers, call, how);
    }

    // Of the API of the call that is played.
    GlFunctions const& Gl() const { return *m_gl; }
    Es1Functions const& Es1() const { return m_driver.es1; }
    Driver const& GetDriver() const { return m_driver; }
    bool IsEs1() const { return m_api == Api::Es1; }
    ArrayCalls const& Arrays() const;
    Context& Now() { return *m_context; }
    ShareGroup& Shared() { return *m_context->shared; }
    EglPlayer const& Egl() const { return m_egl; }
    Survey const& GetSurvey() const { return m_survey; }
    Part CurrentPart() const { return m_part; }
    bool InState() const { return m_inState; }

    // A captured state asks for a cube map's mipmaps behind its first face: they are made once all faces are
    // there, ahead of the first call that is no image.
    void OweCubeMipmaps() { m_owesCubeMipmaps = true; }
    void PayCubeMipmaps();

private:
    void CheckErrors(Call const& call);

    void SwitchTo(Api api);

    Driver const& m_driver;
    GlFunctions const* m_gl;
    Api m_api = Api::Es2;
    Survey const& m_survey;
    EglPlayer& m_egl;
    Options m_options;
    Reporter m_report;
    std::shared_ptr<Context> m_context;
    Part m_part = Part::Frames;
    bool m_inState = false;
    bool m_owesCubeMipmaps = false;
};

// The families' handlers.
std::vector<GlEntry> GlObjectHandlers();
std::vector<GlEntry> GlTextureHandlers();
std::vector<GlEntry> GlBufferHandlers();
std::vector<GlEntry> Es2ProgramHandlers();
std::vector<GlEntry> Es2UniformHandlers();
std::vector<GlEntry> Es1ArrayHandlers();
std::vector<GlEntry> Es2ArrayHandlers();
std::vector<GlEntry> GlDrawHandlers();
std::vector<GlEntry> GlSkippedHandlers();

extern ArrayCalls const kEs1Arrays;
extern ArrayCalls const kEs2Arrays;
}  // namespace nebtrace::player
