#include "player/client_arrays.h"
#include "player/pixels.h"

namespace nebtrace::player
{
namespace
{
uint64_t ElementSize(Attribute const& attribute)
{
    bool const known = attribute.size >= 1 && attribute.size <= 4;
    return known ? static_cast<uint64_t>(attribute.size) * ComponentSize(attribute.type) : 0;
}

// How many elements of an attribute's array a draw reads.
uint64_t ElementsRead(Attribute const& attribute, DrawExtent const& extent)
{
    if (attribute.divisor == 0)
        return extent.vertices;
    return (extent.instances + attribute.divisor - 1) / attribute.divisor;
}

bool IsPast(GlPlayer& player, Attribute const& attribute, DrawExtent const& extent)
{
    uint64_t const elements = ElementsRead(attribute, extent);
    auto const& contents = player.Shared().bufferContents;
    auto const buffer = contents.find(attribute.buffer);
    uint64_t const size = buffer == contents.end() ? 0 : buffer->second.size;
    uint64_t const element = ElementSize(attribute);
    uint64_t const stride = attribute.stride > 0 ? static_cast<uint64_t>(attribute.stride) : element;
    return elements != 0 && attribute.pointer + stride * (elements - 1) + element > size;
}

// The fixed arrays of ES 1 are all taken to be read; of the attributes, those of the program are.
bool IsRead(GlPlayer& player, uint32_t index)
{
    if (player.IsEs1())
        return true;
    auto const& programs = player.Shared().programState;
    auto const program = programs.find(player.Now().program);
    if (program == programs.end())
        return false;
    for (ActiveAttribute const& attribute : program->second.attributes)
        if (index >= attribute.location && index - attribute.location < attribute.slots)
            return true;
    return false;
}
}  // namespace

ClientArrays::ClientArrays(GlPlayer& player, Call const& call, DrawExtent const& extent) : m_player(player)
{
    ReadEntries(call);
    GlFunctions const& gl = player.Gl();
    gl.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &m_arrayBuffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    for (auto const& [index, attribute] : player.Now().BoundVertexArray().attributes)
        if (attribute.enabled)
            Use(index, attribute, extent);
}

ClientArrays::~ClientArrays()
{
    for (uint32_t const index : m_disabled)
        m_player.Arrays().enable(m_player, index, true);
    m_player.Gl().glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(m_arrayBuffer));
}

void ClientArrays::ReadEntries(Call const& call)
{
    DecodedField const* const field = call.Find("arrays");
    if (!field)
        return;
    ItemReader items(*field);
    for (ItemReader::Item item; items.Next(item);)
        m_entries[item.index] = item.bytes;
}

void ClientArrays::Use(uint32_t index, Attribute const& attribute, DrawExtent const& extent)
{
    m_any = true;
    if (attribute.buffer != 0)
        return;
    auto const entry = m_entries.find(index);
    uint64_t const element = ElementSize(attribute);
    if (entry == m_entries.end() || element == 0)
    {
        // The recording had no array there, so its program read none.
        m_player.Arrays().enable(m_player, index, false);
        m_disabled.push_back(index);
        return;
    }
    uint64_t const needed = ElementsRead(attribute, extent) * element;
    bool const lacks = entry->second.size < needed;
    if (lacks && (!extent.shortArrays || needed - entry->second.size > kMostPadding))
        throw BadRecord("the array of attribute " + std::to_string(index) + " has " +
                        std::to_string(entry->second.size) + " bytes, and the draw reads " +
                        std::to_string(needed));
    m_padded = m_padded || lacks;
    m_copies.push_back(std::make_unique<Copy>(entry->second, static_cast<size_t>(needed)));
    // The entry is as tight as the recorder gathered it, whatever stride the application had.
    Attribute tight = attribute;
    tight.stride = 0;
    m_player.Arrays().point(m_player, index, tight, m_copies.back()->Begin());
}

std::vector<PastBuffer> FindPastBuffer(GlPlayer& player, DrawExtent const& extent)
{
    std::vector<PastBuffer> past;
    for (auto const& [index, attribute] : player.Now().BoundVertexArray().attributes)
        if (attribute.enabled && attribute.buffer != 0 && IsRead(player, index) &&
            IsPast(player, attribute, extent))
            past.push_back({index});
    return past;
}
}  // namespace nebtrace::player
