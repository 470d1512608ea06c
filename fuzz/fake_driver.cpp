// The driver that a fuzzed replay finds: it makes objects, answers queries, and reads all that a call says it
// may read, so that a call with too little behind a pointer is seen.
#include "fuzz/input.h"
#include "player/call.h"
#include "player/driver.h"
#include <cstring>

namespace nebtrace::player
{
namespace
{
// Larger surfaces, buffers and uploads only cost time.
constexpr EGLint kLargestSurface = 64;
constexpr GLsizeiptr kLargestBuffer = 1 << 24;
constexpr int64_t kLargestRead = 1 << 22;

GLuint g_lastName = 0;
GLuint g_elementBuffer = 0;
GLint g_alignment = 4;
volatile uint8_t g_sum = 0;

void Read(void const* from, int64_t size)
{
    auto const* const bytes = static_cast<uint8_t const*>(from);
    for (int64_t i = 0; bytes && i < std::min(size, kLargestRead); ++i)
        g_sum = static_cast<uint8_t>(g_sum + bytes[i]);
}

// Any function does nothing, and returns nothing.
template <typename Result, typename... Arguments>
Result Nothing(Arguments... /*arguments*/)
{
    return Result();
}

template <typename Result, typename... Arguments>
void SetNothing(Result (*&function)(Arguments...))
{
    function = &Nothing<Result, Arguments...>;
}

void Generate(GLsizei count, GLuint* names)
{
    for (GLsizei i = 0; i < count; ++i)
        names[i] = ++g_lastName;
}

void Delete(GLsizei count, GLuint const* names) { Read(names, int64_t{count} * 4); }

template <int Components, typename Value>
void Uniform(GLint /*location*/, GLsizei count, Value const* values)
{
    Read(values, int64_t{count} * Components * 4);
}

template <int Components>
void Matrix(GLint /*location*/, GLsizei count, GLboolean /*transpose*/, GLfloat const* values)
{
    Read(values, int64_t{count} * Components * 4);
}

int64_t IndexSize(GLenum type) { return type == GL_UNSIGNED_BYTE ? 1 : type == GL_UNSIGNED_SHORT ? 2 : 4; }

void DrawElements(GLenum /*mode*/, GLsizei count, GLenum type, void const* indices)
{
    if (g_elementBuffer == 0)
        Read(indices, count * IndexSize(type));
}

void BindBuffer(GLenum target, GLuint buffer)
{
    if (target == GL_ELEMENT_ARRAY_BUFFER)
        g_elementBuffer = buffer;
}

void BufferData(GLenum /*target*/, GLsizeiptr size, void const* data, GLenum /*usage*/)
{
    if (size > kLargestBuffer)
        throw DriverFailure("there is no memory for a buffer");
    Read(data, size);
}

void BufferSubData(GLenum /*target*/, GLintptr /*offset*/, GLsizeiptr size, void const* data)
{
    Read(data, size);
}

void CompressedTexImage2D(GLenum, GLint, GLenum, GLsizei, GLsizei, GLint, GLsizei size, void const* data)
{
    Read(data, size);
}

int64_t ValuesOf(GLenum format)
{
    return format == GL_RGBA              ? 4
           : format == GL_RGB             ? 3
           : format == GL_LUMINANCE_ALPHA ? 2
           : format == GL_ALPHA           ? 1
                                          : 0;
}

void PixelStore(GLenum name, GLint value)
{
    if (name == GL_UNPACK_ALIGNMENT && (value == 1 || value == 2 || value == 4 || value == 8))
        g_alignment = value;
}

// Of formats that have a byte for each value.
void TexImage2D(GLenum, GLint, GLint, GLsizei width, GLsizei height, GLint, GLenum format, GLenum type,
                void const* pixels)
{
    if (type != GL_UNSIGNED_BYTE || width <= 0 || height <= 0 || width > kLargestRead ||
        height > kLargestRead)
        return;
    int64_t const tight = width * ValuesOf(format);
    int64_t const row = (tight + g_alignment - 1) / g_alignment * g_alignment;
    Read(pixels, row * (height - 1) + tight);
}

void TexSubImage2D(GLenum target, GLint level, GLint, GLint, GLsizei width, GLsizei height, GLenum format,
                   GLenum type, void const* pixels)
{
    TexImage2D(target, level, 0, width, height, 0, format, type, pixels);
}

void ShaderSource(GLuint /*shader*/, GLsizei count, GLchar const* const* texts, GLint const* lengths)
{
    Read(lengths, lengths ? int64_t{count} * 4 : 0);
    for (GLsizei i = 0; i < count; ++i)
        Read(texts[i], lengths && lengths[i] >= 0 ? lengths[i] : static_cast<int64_t>(std::strlen(texts[i])));
}

void OneInteger(GLenum /*name*/, GLint* value) { *value = 1; }

void OneIntegerOf(GLuint /*object*/, GLenum /*name*/, GLint* value) { *value = 1; }

GLint Location(GLuint /*program*/, GLchar const* name) { return static_cast<GLint>(std::strlen(name) % 16); }

void ActiveVariable(GLuint, GLuint, GLsizei room, GLsizei* length, GLint* size, GLenum* type, GLchar* name)
{
    if (length)
        *length = room > 1 ? 1 : 0;
    *size = 2;
    *type = GL_FLOAT_MAT4;
    if (room > 0)
        std::snprintf(name, static_cast<size_t>(room), "a");
}

void SetGl(GlFunctions& gl)
{
#define ES2(id, kind, fallback, result, name, parameters, arguments) SetNothing(gl.name);
#define ES2_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    SetNothing(gl.name);
#include "api/es2.def"
    gl.glGenTextures = gl.glGenBuffers = gl.glGenFramebuffers = gl.glGenRenderbuffers = Generate;
    gl.glGenVertexArraysOES = gl.glGenQueriesEXT = Generate;
    gl.glDeleteTextures = gl.glDeleteBuffers = gl.glDeleteFramebuffers = gl.glDeleteRenderbuffers = Delete;
    gl.glCreateShader = [](GLenum) { return ++g_lastName; };
    gl.glCreateProgram = [] { return ++g_lastName; };
    gl.glUniform1fv = Uniform<1, GLfloat>;
    gl.glUniform2fv = Uniform<2, GLfloat>;
    gl.glUniform3fv = Uniform<3, GLfloat>;
    gl.glUniform4fv = Uniform<4, GLfloat>;
    gl.glUniform1iv = Uniform<1, GLint>;
    gl.glUniform2iv = Uniform<2, GLint>;
    gl.glUniform3iv = Uniform<3, GLint>;
    gl.glUniform4iv = Uniform<4, GLint>;
    gl.glUniformMatrix2fv = Matrix<4>;
    gl.glUniformMatrix3fv = Matrix<9>;
    gl.glUniformMatrix4fv = Matrix<16>;
    gl.glDrawElements = DrawElements;
    gl.glBindBuffer = BindBuffer;
    gl.glBufferData = BufferData;
    gl.glBufferSubData = BufferSubData;
    gl.glCompressedTexImage2D = CompressedTexImage2D;
    gl.glPixelStorei = PixelStore;
    gl.glTexImage2D = TexImage2D;
    gl.glTexSubImage2D = TexSubImage2D;
    gl.glShaderSource = ShaderSource;
    gl.glGetIntegerv = OneInteger;
    gl.glGetProgramiv = gl.glGetShaderiv = OneIntegerOf;
    gl.glGetAttribLocation = gl.glGetUniformLocation = Location;
    gl.glGetActiveAttrib = gl.glGetActiveUniform = ActiveVariable;
}

void SetEs1(Es1Functions& es1)
{
#define ES1(id, kind, fallback, result, name, parameters, arguments) SetNothing(es1.name);
#include "api/es1.def"
    es1.glGenTextures = es1.glGenBuffers = Generate;
    es1.glDeleteTextures = es1.glDeleteBuffers = Delete;
    es1.glDrawElements = DrawElements;
    es1.glBindBuffer = BindBuffer;
    es1.glBufferData = BufferData;
    es1.glBufferSubData = BufferSubData;
    es1.glPixelStorei = PixelStore;
    es1.glTexImage2D = TexImage2D;
    es1.glTexSubImage2D = TexSubImage2D;
    es1.glGetIntegerv = OneInteger;
}

// Those of ES 1 that the player calls for both APIs.
void Share(Driver& driver)
{
    driver.sharedEs1 = driver.es2;
    driver.sharedEs1.glGetIntegerv = OneInteger;
}

EGLSurface MakeSurface(EGLDisplay, EGLConfig, EGLint const* attributes)
{
    for (EGLint const* key = attributes; *key != EGL_NONE; key += 2)
        if ((*key == EGL_WIDTH || *key == EGL_HEIGHT) && key[1] > kLargestSurface)
            return EGL_NO_SURFACE;
    return reinterpret_cast<EGLSurface>(uintptr_t{2});
}

void SetEgl(EglFunctions& egl)
{
#define EGL(id, kind, fallback, result, name, parameters, arguments) SetNothing(egl.name);
#define EGL_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    SetNothing(egl.name);
#include "api/egl.def"
    egl.eglGetDisplay = [](auto) { return reinterpret_cast<EGLDisplay>(uintptr_t{1}); };
    egl.eglInitialize = [](EGLDisplay, EGLint*, EGLint*) -> EGLBoolean { return EGL_TRUE; };
    egl.eglGetConfigs = [](EGLDisplay, EGLConfig* configs, EGLint, EGLint* count) -> EGLBoolean {
        *count = 1;
        if (configs)
            *configs = reinterpret_cast<EGLConfig>(uintptr_t{3});
        return EGL_TRUE;
    };
    egl.eglGetConfigAttrib = [](EGLDisplay, EGLConfig, EGLint, EGLint* value) -> EGLBoolean {
        *value = 0xFF;
        return EGL_TRUE;
    };
    egl.eglCreatePbufferSurface = MakeSurface;
    egl.eglCreateContext = [](EGLDisplay, EGLConfig, EGLContext, EGLint const*) {
        return reinterpret_cast<EGLContext>(uintptr_t{4});
    };
    egl.eglMakeCurrent = [](EGLDisplay, EGLSurface, EGLSurface, EGLContext) -> EGLBoolean {
        return EGL_TRUE;
    };
}
}  // namespace

// Stands in for the machine's driver.
std::unique_ptr<Driver> Driver::Open(std::string& /*error*/)
{
    static Driver const driver = [] {
        Driver made;
        SetEgl(made.egl);
        SetGl(made.es2);
        SetEs1(made.es1);
        Share(made);
        return made;
    }();
    g_lastName = 0;
    g_elementBuffer = 0;
    g_alignment = 4;
    return std::make_unique<Driver>(driver);
}
}  // namespace nebtrace::player
