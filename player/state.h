// What the player keeps of the contexts it replays into: names, and as much state as it needs to hand client
// memory to the driver and to know how far a draw reads.
#pragma once
#include "api/types.h"
#include "player/object_map.h"
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nebtrace::player
{
// EGL attributes as pairs, from a record or of the player's own.
using Attributes = std::map<EGLint, EGLint>;

// Whether anything is known of a config but its ID, which means something on the recording machine only.
inline bool IsDescribed(Attributes const& config) { return config.count(EGL_RED_SIZE) != 0; }

// A name that no driver gives out: a call with it fails as a call with a deleted name does.
constexpr GLuint kNoSuchName = 0xFFFFFFFE;

struct Buffer
{
    uint64_t size = 0;
    // The contents, as far as they are known: element buffers are read for the indices in them. Not longer
    // than `size`; what is missing at the end is zero.
    std::vector<uint8_t> bytes;
    uint32_t mappedOffset = 0;  // of the range that the recording has mapped
};

struct Uniform
{
    std::string name;
    GLint own = -1;
};

struct ActiveAttribute
{
    GLuint location = 0;
    GLuint slots = 1;  // matrices and arrays take several
};

struct Program
{
    uint32_t links = 0;  // in this part of the file: which of the survey's link is the current one
    std::map<int32_t, Uniform> uniforms;  // by recorded location
    std::vector<ActiveAttribute> attributes;
};

// The objects that contexts share.
struct ShareGroup
{
    ObjectMap<GLuint> textures;
    ObjectMap<GLuint> buffers;
    ObjectMap<GLuint> renderbuffers;
    ObjectMap<GLuint> shaders;
    ObjectMap<GLuint> programs;
    ObjectMap<GLuint> fences;
    std::map<uint32_t, Buffer> bufferContents;  // by recorded name
    std::map<uint32_t, Program> programState;   // by recorded name
};

struct Attribute
{
    bool enabled = false;
    GLint size = 4;
    GLenum type = GL_FLOAT;
    GLboolean normalized = GL_FALSE;
    GLsizei stride = 0;
    uint32_t pointer = 0;  // an offset, with a buffer
    uint32_t buffer = 0;   // recorded name; 0: client memory
    uint32_t divisor = 0;
};

struct VertexArray
{
    std::map<uint32_t, Attribute> attributes;
    uint32_t elementBuffer = 0;  // recorded name
};

struct Context
{
    EGLContext own = EGL_NO_CONTEXT;  // made when it is first current: only then is its config known for sure
    Attributes config;                // as recorded
    int version = 2;
    std::shared_ptr<Context> sharedWith;
    std::shared_ptr<ShareGroup> shared = std::make_shared<ShareGroup>();
    ObjectMap<GLuint> framebuffers;
    ObjectMap<GLuint> vertexArrays;
    ObjectMap<GLuint> queries;
    ObjectMap<GLuint> pipelines;
    std::map<uint32_t, VertexArray> vertexArrayState;  // by recorded name
    uint32_t vertexArray = 0;                          // bound, as are the two below; all recorded names
    uint32_t arrayBuffer = 0;
    uint32_t program = 0;
    GLint unpackAlignment = 4;
    GLenum clientActiveTexture = GL_TEXTURE0;  // of ES 1

    VertexArray& BoundVertexArray() { return vertexArrayState[vertexArray]; }
};

struct Surface
{
    EGLSurface own = EGL_NO_SURFACE;
    Attributes config;  // as recorded
    int width = 0;
    int height = 0;
};
}  // namespace nebtrace::player
