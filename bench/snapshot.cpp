// What the frames of an application cost that a recording begins and ends in. It makes textures, and then
// frames in which each of them is drawn with once. Prints a line for each frame: its number, and nanoseconds
// of its first call and of its longest.
//
//   --textures=N  how many, and --width=N and --height=N of each (RGBA)
//   --frames=N    how many frames
#include "gles.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

std::array<GLfloat, bench::kVertices * bench::kFloatsPerVertex> s_vertices{};

// The time of each call by itself: a pause hides in none of the others.
class Meter
{
public:
    template <typename Call>
    void Time(Call const& call)
    {
        Clock::time_point const begin = Clock::now();
        call();
        int64_t const time =
            std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - begin).count();
        if (m_first == 0)
            m_first = time;
        m_longest = std::max(m_longest, time);
    }
    long long First() const { return m_first; }
    long long Longest() const { return m_longest; }

private:
    int64_t m_first = 0;
    int64_t m_longest = 0;
};

std::vector<GLuint> MakeTextures(int count, GLsizei width, GLsizei height)
{
    std::vector<GLubyte> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    std::vector<GLuint> names(static_cast<std::size_t>(count));
    glGenTextures(count, names.data());
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        std::fill(pixels.begin(), pixels.end(), static_cast<GLubyte>(i));
        glBindTexture(GL_TEXTURE_2D, names[i]);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    }
    return names;
}

void MakeFrame(int number, bench::Context const& context, std::vector<GLuint> const& textures)
{
    Meter meter;
    meter.Time([] { glDisable(GL_DITHER); });
    for (GLuint const texture : textures)
    {
        meter.Time([texture] { glBindTexture(GL_TEXTURE_2D, texture); });
        meter.Time([] { glDrawArrays(GL_TRIANGLE_STRIP, 0, 3); });
    }
    meter.Time([&context] { bench::SwapBuffers(context); });
    std::printf("frame %d: %lld %lld\n", number, meter.First(), meter.Longest());
}

}  // namespace

int main(int argc, char** argv)
{
    int textures = 10;
    int width = 64;
    int height = 64;
    int frames = 6;
    for (int i = 1; i < argc; ++i)
    {
        textures = bench::NumberOption(argv[i], "--textures", textures);
        width = bench::NumberOption(argv[i], "--width", width);
        height = bench::NumberOption(argv[i], "--height", height);
        frames = bench::NumberOption(argv[i], "--frames", frames);
    }
    bench::Context const context = bench::MakeContext();
    bench::MakeProgram();
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof s_vertices, s_vertices.data(), GL_STATIC_DRAW);
    bench::SetArrays(nullptr);
    std::vector<GLuint> const names = MakeTextures(textures, width, height);
    for (int i = 0; i < frames; ++i)
        MakeFrame(i, context, names);
    return 0;
}
