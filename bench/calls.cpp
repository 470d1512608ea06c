// What single calls cost. The same program is run natively and under the tracer in its modes by run.py, which
// compares the numbers. The driver should draw nothing (GALLIUM_NOOP=true), or its work hides the tracer's.
//
//   --objects=N   so many objects live beside those that are measured
//   --share=N     makes only one of N calls
//   --grown=FILE  swaps until FILE has begun to grow: a recording that another process asks for takes its
//   time
#include "gles.h"
#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr GLsizei kTextureSize = 256;

bench::Context s_context;
using Vertices = std::array<GLfloat, bench::kVertices * bench::kFloatsPerVertex>;
Vertices s_vertices{};

constexpr std::size_t kTextureBytes = std::size_t{kTextureSize} * kTextureSize * 4;

uint32_t NextRandom(uint32_t& state) { return state = state * 1664525u + 1013904223u; }

// As different as those of the objects in a scene: together more than a compressor looks back.
std::vector<Vertices> Meshes()
{
    std::vector<Vertices> meshes(128);
    uint32_t random = 1;
    for (Vertices& mesh : meshes)
        for (GLfloat& value : mesh)
            value = static_cast<GLfloat>(NextRandom(random) >> 8) / 8388608.0f - 1.0f;
    return meshes;
}

// Neither plain nor noise, and takes a tracer that compresses some time.
std::vector<GLubyte> Picture()
{
    std::vector<GLubyte> pixels(kTextureBytes);
    uint32_t noise = 1;
    for (std::size_t i = 0; i < pixels.size(); ++i)
    {
        bool const grain = NextRandom(noise) >> 29 == 0;
        pixels[i] = static_cast<GLubyte>((i / 4 % kTextureSize) / 4 + i % 4 * 32 + (grain ? noise >> 24 : 0));
    }
    return pixels;
}

// A third each of textures, buffers and programs, which the shadow state keeps.
void MakeObjects(int count)
{
    for (int i = 0; i < count; ++i)
    {
        GLuint name = 0;
        if (i % 3 == 0)
        {
            glGenTextures(1, &name);
            glBindTexture(GL_TEXTURE_2D, name);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, s_vertices.data());
        }
        else if (i % 3 == 1)
        {
            glGenBuffers(1, &name);
            glBindBuffer(GL_ARRAY_BUFFER, name);
            glBufferData(GL_ARRAY_BUFFER, 64, s_vertices.data(), GL_STATIC_DRAW);
        }
        else
            bench::MakeProgram();
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void ScalarCall(benchmark::State& state)
{
    for (auto _ : state)
        glDepthFunc(GL_LESS);
}

void UniformArray(benchmark::State& state)
{
    GLint const location = bench::MakeProgram();
    std::array<GLfloat, bench::kUniforms * 4> const values{};
    for (auto _ : state)
        glUniform4fv(location, bench::kUniforms, values.data());
}

void Bind(benchmark::State& state)
{
    GLuint textures[2] = {};
    glGenTextures(2, textures);
    unsigned at = 0;
    for (auto _ : state)
        glBindTexture(GL_TEXTURE_2D, textures[++at & 1]);
    glDeleteTextures(2, textures);
}

void DrawFromBuffers(benchmark::State& state)
{
    bench::MakeProgram();
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof s_vertices, s_vertices.data(), GL_STATIC_DRAW);
    bench::SetArrays(nullptr);
    for (auto _ : state)
        glDrawArrays(GL_TRIANGLE_STRIP, 0, bench::kVertices);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void DrawFromClientArrays(benchmark::State& state)
{
    bench::MakeProgram();
    bench::SetArrays(s_vertices.data());
    std::vector<Vertices> const meshes = Meshes();
    std::size_t next = 0;
    for (auto _ : state)
    {
        s_vertices = meshes[next++ % meshes.size()];
        glDrawArrays(GL_TRIANGLE_STRIP, 0, bench::kVertices);
    }
}

// What compresses best and in no time: zeros, and the same in each draw.
void PlainDrawFromClientArrays(benchmark::State& state)
{
    bench::MakeProgram();
    s_vertices.fill(0);
    bench::SetArrays(s_vertices.data());
    for (auto _ : state)
        glDrawArrays(GL_TRIANGLE_STRIP, 0, bench::kVertices);
}

void UpdateTexture(benchmark::State& state, std::vector<GLubyte> const& pixels)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kTextureSize, kTextureSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 nullptr);
    for (auto _ : state)
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, kTextureSize, kTextureSize, GL_RGBA, GL_UNSIGNED_BYTE,
                        pixels.data());
    glDeleteTextures(1, &texture);
}

void TextureUpdate(benchmark::State& state) { UpdateTexture(state, Picture()); }

void PlainTextureUpdate(benchmark::State& state)
{
    UpdateTexture(state, std::vector<GLubyte>(kTextureBytes));
}

void Swap(benchmark::State& state)
{
    for (auto _ : state)
        bench::SwapBuffers(s_context);
}

// The iterations bound what a recording grows to, to a quarter of a gigabyte.
struct Call
{
    char const* name;
    void (*run)(benchmark::State&);
    int iterations;
};

constexpr Call kCalls[] = {
    {"ScalarCall", ScalarCall, 100000},
    {"UniformArray", UniformArray, 50000},
    {"Bind", Bind, 100000},
    {"DrawFromBuffers", DrawFromBuffers, 50000},
    {"DrawFromClientArrays", DrawFromClientArrays, 20000},
    {"PlainDrawFromClientArrays", PlainDrawFromClientArrays, 20000},
    {"TextureUpdate", TextureUpdate, 300},
    {"PlainTextureUpdate", PlainTextureUpdate, 300},
    {"Swap", Swap, 20000},
};

bool HasGrown(std::string const& file)
{
    struct stat status = {};
    constexpr off_t kMoreThanAHeader = 512;
    return file.empty() || (stat(file.c_str(), &status) == 0 && status.st_size > kMoreThanAHeader);
}

// The frames that a configuration may record or capture before the measurement begins, and those that pass
// until a recording is on that is asked for from elsewhere.
void SwapUntilReady(std::string const& grown)
{
    for (int i = 0; i < 3; ++i)
        bench::SwapBuffers(s_context);
    while (!HasGrown(grown))
    {
        usleep(1000);
        bench::SwapBuffers(s_context);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    int objects = 10;
    int share = 1;
    std::string grown;
    for (int i = 1; i < argc; ++i)
    {
        objects = bench::NumberOption(argv[i], "--objects", objects);
        share = bench::NumberOption(argv[i], "--share", share);
        if (std::strncmp(argv[i], "--grown=", 8) == 0)
            grown = argv[i] + 8;
    }
    for (Call const& call : kCalls)
        benchmark::RegisterBenchmark(call.name, call.run)
            ->Iterations(std::max(call.iterations / std::max(share, 1), 1));
    for (std::size_t i = 0; i < s_vertices.size(); ++i)
        s_vertices[i] = static_cast<GLfloat>(i) / static_cast<GLfloat>(s_vertices.size());
    s_context = bench::MakeContext();
    MakeObjects(objects);
    SwapUntilReady(grown);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
