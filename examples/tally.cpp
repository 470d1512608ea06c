#include "tally.h"
#include <GLES2/gl2.h>
#include <iostream>

namespace examples
{
void Tally::Draw(unsigned mode, int count)
{
    Add("Non-indexed draw calls", 1);
    AddPrimitives(mode, count);
}

void Tally::DrawIndexed(unsigned mode, int count)
{
    Add("Indexed draw calls", 1);
    AddPrimitives(mode, count);
}

void Tally::AddPrimitives(unsigned mode, int count)
{
    struct Kind
    {
        char const* counter;
        char const* total;
        int vertices;  // of each primitive after the first
        int ahead;     // that the first one needs beyond those
    };
    static std::map<unsigned, Kind> const kinds = {
        {GL_POINTS, {"Points no.", nullptr, 1, 0}},
        {GL_LINES, {"Line no. (list)", "Total line no.", 2, 0}},
        {GL_LINE_LOOP, {"Line no. (loop)", "Total line no.", 1, 0}},
        {GL_LINE_STRIP, {"Line no. (strip)", "Total line no.", 1, 1}},
        {GL_TRIANGLES, {"Triangle no. (list)", "Total triangle no.", 3, 0}},
        {GL_TRIANGLE_STRIP, {"Triangle no. (strip)", "Total triangle no.", 1, 2}},
        {GL_TRIANGLE_FAN, {"Triangle no. (fan)", "Total triangle no.", 1, 2}},
    };
    Kind const& kind = kinds.at(mode);
    long const primitives = (count - kind.ahead) / kind.vertices;
    Add(kind.counter, primitives);
    if (kind.total)
        Add(kind.total, primitives);
}

void Tally::End() const
{
    if (!print)
        return;
    for (auto const& [counter, amount] : m_counts)
        std::cout << "tally " << amount << ' ' << counter << '\n';
    std::cout.flush();
}
}  // namespace examples
