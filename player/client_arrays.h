// The attributes of one draw: client arrays handed to the driver from the draw's record, and a check that no
// attribute is read past its end.
#pragma once
#include "player/arguments.h"
#include "player/gl_player.h"
#include <map>

namespace nebtrace::player
{
struct DrawExtent
{
    uint64_t vertices = 0;  // one more than the highest that is read
    uint64_t instances = 1;
    // The recorder keeps less than such a draw reads: what is missing is zero, as far as kMostPadding, and
    // not a fault of the record.
    bool shortArrays = false;
};

// An attribute's values lie in a buffer that ends before the draw does.
struct PastBuffer
{
    uint32_t index;
};

class ClientArrays
{
public:
    // Throws BadRecord for an array that is shorter than the draw reads.
    ClientArrays(GlPlayer& player, Call const& call, DrawExtent const& extent);
    ~ClientArrays();
    ClientArrays(ClientArrays const&) = delete;
    ClientArrays& operator=(ClientArrays const&) = delete;

    bool WasPadded() const { return m_padded; }
    // Whether any attribute has an array: a draw without one is bounded by nothing but its own count.
    bool Any() const { return m_any; }

private:
    void ReadEntries(Call const& call);
    void Use(uint32_t index, Attribute const& attribute, DrawExtent const& extent);

    GlPlayer& m_player;
    std::map<uint32_t, Bytes> m_entries;
    std::vector<std::unique_ptr<Copy>> m_copies;
    std::vector<uint32_t> m_disabled;
    GLint m_arrayBuffer = 0;
    bool m_padded = false;
    bool m_any = false;
};

// The first attribute that the current program reads past the end of its buffer.
std::vector<PastBuffer> FindPastBuffer(GlPlayer& player, DrawExtent const& extent);
}  // namespace nebtrace::player
