// What a traced application sends to the client of a remote recording. The first byte says how small the
// pieces are that the stream comes in: what comes in pieces must be understood as what comes whole.
#include "fuzz/input.h"
#include "tools/remote/packets.h"
#include "tools/remote/trace_stream.h"

using namespace remote;

namespace
{
struct Outcome
{
    std::vector<Packet> packets;
    std::string fault;
    uint64_t repeated = 0;
};

Outcome Understood(std::string const& stream, size_t piece)
{
    Outcome outcome;
    PacketReader reader;
    for (size_t at = 0; at < stream.size(); at += piece)
    {
        reader.Feed(reinterpret_cast<uint8_t const*>(stream.data() + at),
                    std::min(piece, stream.size() - at));
        for (Packet packet; reader.Next(packet);)
            outcome.packets.push_back(packet);
    }
    outcome.fault = reader.Fault();
    outcome.repeated = reader.Repeated();
    return outcome;
}

bool Same(Outcome const& one, Outcome const& other)
{
    auto const same = [](Packet const& a, Packet const& b) {
        return a.kind == b.kind && a.value == b.value && a.payload == b.payload;
    };
    return one.fault == other.fault && one.repeated == other.repeated &&
           std::equal(one.packets.begin(), one.packets.end(), other.packets.begin(), other.packets.end(),
                      same);
}

void Follow(std::vector<Packet> const& packets)
{
    TraceStream trace("");
    for (Packet const& packet : packets)
    {
        StateName(static_cast<State>(packet.value));
        CommandName(static_cast<Command>(packet.value));
        if (packet.kind == Packet::Kind::Data)
            trace.Add(packet.payload);
    }
    fuzz::Require(!trace.LacksBeginning() || !trace.Gap().empty(), "a missing beginning is a gap");
    fuzz::Require(!trace.AtFooter() || trace.Gap().empty(), "no footer behind a gap");
    trace.Close();
}
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    size_t const piece = input.Byte() % 32 + size_t{1};
    std::string const stream = input.Rest();
    Outcome const whole = Understood(stream, stream.size() + 1);
    fuzz::Require(Same(whole, Understood(stream, piece)), "pieces are understood as the whole is");
    Follow(whole.packets);
    return 0;
}
