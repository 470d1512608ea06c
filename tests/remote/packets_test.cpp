// What a client makes of the bytes that come over a connection.
#include "tools/remote/packets.h"
#include <gtest/gtest.h>

namespace
{
using remote::Packet;
using remote::PacketReader;
using Bytes = std::vector<uint8_t>;

void Feed(PacketReader& reader, Bytes const& bytes) { reader.Feed(bytes.data(), bytes.size()); }

Bytes DataPacket(Bytes const& payload)
{
    Bytes packet = {0x08, 0x44, 0x31, static_cast<uint8_t>(payload.size()),
                    static_cast<uint8_t>(payload.size() >> 8)};
    for (uint8_t const byte : payload)
        packet.push_back(byte);
    packet.push_back(0x25);
    return packet;
}

Bytes Counting(size_t size)
{
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

void ExpectOnlyPacket(PacketReader& reader, Bytes const& payload)
{
    Packet packet;
    ASSERT_TRUE(reader.Next(packet)) << reader.Fault();
    EXPECT_EQ(Packet::Kind::Data, packet.kind);
    EXPECT_EQ(payload, packet.payload);
    EXPECT_FALSE(reader.Next(packet));
    EXPECT_EQ("", reader.Fault());
}

// The payload is what lies between the five bytes of the head and the closing one, at every size that there
// is.
TEST(Packets, PayloadsOfAllSizesComeOutWhole)
{
    for (size_t const size : {1U, 1023U, 1024U, 65535U, 65536U})
    {
        SCOPED_TRACE(size);
        PacketReader reader;
        Feed(reader, DataPacket(Counting(size)));
        ExpectOnlyPacket(reader, Counting(size));
    }
}

// A payload of 65,536 bytes has 0 for its length, and is not taken for an empty one.
TEST(Packets, LengthZeroIsTheLargestPacket)
{
    PacketReader reader;
    Feed(reader, {0x08, 0x44, 0x31, 0x00, 0x00});
    Feed(reader, Bytes(65535, 0xAB));
    Packet packet;
    EXPECT_FALSE(reader.Next(packet));
    Feed(reader, {0xAB, 0x25});
    ASSERT_TRUE(reader.Next(packet));
    EXPECT_EQ(Bytes(65536, 0xAB), packet.payload);
}

// Status and acknowledgement stand between data packets.
TEST(Packets, KindsAreToldApart)
{
    PacketReader reader;
    Feed(reader, {0x08, 0x44, 0x32, 0x51, 0x01, 0x00});
    Feed(reader, DataPacket({1, 2, 3}));
    Feed(reader, {0x08, 0x44, 0x21, 0x40, 0x01, 0x00});
    Packet packet;
    ASSERT_TRUE(reader.Next(packet));
    EXPECT_EQ(Packet::Kind::Status, packet.kind);
    EXPECT_EQ(0x51, packet.value);
    ASSERT_TRUE(reader.Next(packet));
    EXPECT_EQ((Bytes{1, 2, 3}), packet.payload);
    ASSERT_TRUE(reader.Next(packet));
    EXPECT_EQ(Packet::Kind::Acknowledge, packet.kind);
    EXPECT_EQ(0x40, packet.value);
    EXPECT_FALSE(reader.Next(packet));
}

// TCP cuts where it likes.
TEST(Packets, BytesThatComeOneByOneMakeTheSamePackets)
{
    Bytes stream = DataPacket(Counting(300));
    for (int const byte : {0x08, 0x44, 0x32, 0x52, 0x01, 0x00})
        stream.push_back(static_cast<uint8_t>(byte));
    PacketReader reader;
    std::vector<Packet> packets;
    for (uint8_t const byte : stream)
    {
        reader.Feed(&byte, 1);
        for (Packet packet; reader.Next(packet);)
            packets.push_back(packet);
    }
    ASSERT_EQ(2u, packets.size());
    EXPECT_EQ(Counting(300), packets[0].payload);
    EXPECT_EQ(0x52, packets[1].value);
}

// A sender that could not finish a packet sends it again whole: wherever it broke off, nothing is lost or
// doubled.
TEST(Packets, APacketThatBrokeOffAnywhereIsTakenOnce)
{
    Bytes const packet = DataPacket(Counting(40));
    for (size_t sent = 1; sent < packet.size(); ++sent)
    {
        SCOPED_TRACE(sent);
        PacketReader reader;
        reader.Feed(packet.data(), sent);
        Feed(reader, packet);
        ExpectOnlyPacket(reader, Counting(40));
        EXPECT_EQ(1u, reader.Repeated());
    }
}

// How much of it has come yet makes no difference: a packet that broke off behind its second byte looks like
// one of an unknown kind until the byte behind the sixth is there.
TEST(Packets, APacketThatBrokeOffIsTakenOnceAlsoByteForByte)
{
    Bytes const packet = DataPacket(Counting(40));
    for (size_t sent = 1; sent < packet.size(); ++sent)
    {
        SCOPED_TRACE(sent);
        Bytes stream(packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(sent));
        stream.insert(stream.end(), packet.begin(), packet.end());
        PacketReader reader;
        Packet taken;
        for (size_t at = 0; at + 1 < stream.size(); ++at)
        {
            reader.Feed(&stream[at], 1);
            ASSERT_FALSE(reader.Next(taken)) << at;
            ASSERT_EQ("", reader.Fault()) << at;
        }
        reader.Feed(&stream.back(), 1);
        ExpectOnlyPacket(reader, Counting(40));
        EXPECT_EQ(1u, reader.Repeated());
    }
}

// The second attempt can break off as well.
TEST(Packets, APacketThatBrokeOffTwiceIsTakenOnce)
{
    Bytes const packet = DataPacket(Counting(2000));
    PacketReader reader;
    reader.Feed(packet.data(), 1500);
    reader.Feed(packet.data(), 700);
    Feed(reader, packet);
    ExpectOnlyPacket(reader, Counting(2000));
    EXPECT_EQ(2u, reader.Repeated());
}

// Both attempts can break off within the head, and nothing may follow that would make the reader look again.
TEST(Packets, APacketThatBrokeOffTwiceWithinItsHeadIsTakenOnce)
{
    PacketReader reader;
    Feed(reader, {0x08,                                        // broken off
                  0x08, 0x44, 0x31,                            // broken off again
                  0x08, 0x44, 0x31, 0x02, 0x00, 7, 9, 0x25});  // whole
    ExpectOnlyPacket(reader, {7, 9});
    EXPECT_EQ(2u, reader.Repeated());
}

// What is no packet is named, and nothing behind it is believed.
TEST(Packets, BytesThatAreNoPacketEndTheReading)
{
    struct Case
    {
        Bytes bytes;
        char const* fault;
    };
    Bytes badEnd = DataPacket({9, 9, 9});
    badEnd.back() = 0x26;
    Case const cases[] = {
        {{0x47, 0x45, 0x54, 0x20, 0x2F, 0x20}, "no packet begins with 0x47 0x45"},
        {{0x08, 0x44, 0x33, 0x00, 0x00, 0x00}, "there is no packet of kind 0x33"},
        {badEnd, "a packet of data ends with 0x26"},
    };
    for (Case const& each : cases)
    {
        PacketReader reader;
        Feed(reader, each.bytes);
        Feed(reader, DataPacket({1}));
        Packet packet;
        EXPECT_FALSE(reader.Next(packet));
        EXPECT_EQ(each.fault, reader.Fault());
        EXPECT_FALSE(reader.Next(packet));
    }
}
}  // namespace
