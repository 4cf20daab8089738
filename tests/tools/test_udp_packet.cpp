#include "tools/common/udp_packet.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace cli;

// From 192.168.1.3:50002 to 127.0.0.1:4001.
const Bytes kPacket = {0x45, 0x00, 0x00, 0x1f, 0x00, 0x00, 0x40, 0x00, 0x40, 0x11, 0xfa,
                       0x21, 0xc0, 0xa8, 0x01, 0x03, 0x7f, 0x00, 0x00, 0x01, 0xc3, 0x52,
                       0x0f, 0xa1, 0x00, 0x0b, 0xe8, 0x35, 0x01, 0x02, 0x03};
const Bytes kPayload = {1, 2, 3};

Bytes changed(std::size_t at, std::uint8_t value)
{
    Bytes packet = kPacket;
    packet.at(at) = value;
    return packet;
}

Bytes behindHeader(Bytes header)
{
    header.insert(header.end(), kPacket.begin(), kPacket.end());
    return header;
}

bool holdsThePacket(LinkType type, const Bytes& frame)
{
    const auto packet = ipv4PacketIn(type, frame);
    return packet && Bytes(packet->begin(), packet->end()) == kPacket;
}

TEST(UdpPacket, isThePacketThatTheNetworkWouldCarry)
{
    EXPECT_EQ(ipv4Packet({.source = orv::ipv4Endpoint("192.168.1.3", 50002),
                          .destination = orv::ipv4Endpoint("127.0.0.1", 4001),
                          .payload = kPayload}),
              kPacket);
}

TEST(UdpPacket, isReadBack)
{
    const auto datagram = udpDatagramIn(kPacket);
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->source.address, orv::ipv4Endpoint("192.168.1.3", 0).address);
    EXPECT_EQ(datagram->source.port, 50002);
    EXPECT_EQ(datagram->destination.address, orv::ipv4Endpoint("127.0.0.1", 0).address);
    EXPECT_EQ(datagram->destination.port, 4001);
    EXPECT_EQ(Bytes(datagram->payload.begin(), datagram->payload.end()), kPayload);
}

TEST(UdpPacket, whatFitsInNoPacketIsCut)
{
    const Bytes packet = ipv4Packet({.source = {}, .destination = {}, .payload = Bytes(70000, 1)});
    EXPECT_EQ(packet.size(), 65535U);
    EXPECT_EQ(udpDatagramIn(packet)->payload.size(), 65507U);
}

TEST(UdpPacket, cutAnywhereItIsNone)
{
    for (std::size_t size = 0; size < kPacket.size(); ++size)
        EXPECT_FALSE(udpDatagramIn({kPacket.data(), size})) << size;
}

TEST(UdpPacket, paddingIsNoPayload)
{
    Bytes padded = kPacket;
    padded.resize(60);
    EXPECT_EQ(udpDatagramIn(padded)->payload.size(), 3U);
}

TEST(UdpPacket, otherPacketsAreNone)
{
    EXPECT_FALSE(udpDatagramIn(changed(0, 0x65))) << "IPv6";
    EXPECT_FALSE(udpDatagramIn(changed(0, 0x44))) << "a header too short";
    EXPECT_FALSE(udpDatagramIn(changed(0, 0x4f))) << "a header longer than the packet";
    EXPECT_FALSE(udpDatagramIn(changed(3, 27))) << "no room for the header of UDP";
    EXPECT_FALSE(udpDatagramIn(changed(3, 32))) << "longer than what was captured";
    EXPECT_FALSE(udpDatagramIn(changed(6, 0x20))) << "the first fragment";
    EXPECT_FALSE(udpDatagramIn(changed(7, 1))) << "a later fragment";
    EXPECT_FALSE(udpDatagramIn(changed(9, 6))) << "TCP";
    EXPECT_FALSE(udpDatagramIn(changed(25, 7))) << "UDP shorter than its header";
    EXPECT_FALSE(udpDatagramIn(changed(25, 12))) << "UDP longer than its packet";
}

TEST(UdpPacket, optionsOfTheHeaderAreSkipped)
{
    Bytes packet = changed(0, 0x46);
    packet[3] = 35;
    packet.insert(packet.begin() + 20, 4, 0);
    const auto datagram = udpDatagramIn(packet);
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->destination.port, 4001);
}

TEST(UdpPacket, isFoundBehindEachKnownLink)
{
    const Bytes addresses(12, 0xAA);
    const auto ethernet = [&](Bytes types) {
        types.insert(types.begin(), addresses.begin(), addresses.end());
        return behindHeader(types);
    };
    Bytes cooked(16);
    cooked[14] = 8;
    Bytes cooked2(20);
    cooked2[0] = 8;
    EXPECT_TRUE(holdsThePacket(LinkType::RawIp, kPacket));
    EXPECT_TRUE(holdsThePacket(LinkType::Ipv4, kPacket));
    EXPECT_TRUE(holdsThePacket(LinkType::Ethernet, ethernet({8, 0})));
    EXPECT_TRUE(holdsThePacket(LinkType::Ethernet, ethernet({0x81, 0, 0, 5, 8, 0})));
    EXPECT_TRUE(
        holdsThePacket(LinkType::Ethernet, ethernet({0x88, 0xA8, 0, 5, 0x81, 0, 0, 6, 8, 0})));
    EXPECT_TRUE(holdsThePacket(LinkType::Null, behindHeader({2, 0, 0, 0})));
    EXPECT_TRUE(holdsThePacket(LinkType::Loop, behindHeader({0, 0, 0, 2})));
    EXPECT_TRUE(holdsThePacket(LinkType::LinuxCooked, behindHeader(cooked)));
    EXPECT_TRUE(holdsThePacket(LinkType::LinuxCooked2, behindHeader(cooked2)));
}

TEST(UdpPacket, otherProtocolsOfALinkAreNone)
{
    Bytes frame(60, 0xAA);
    frame[12] = 0x86; // IPv6
    frame[13] = 0xDD;
    EXPECT_FALSE(ipv4PacketIn(LinkType::Ethernet, frame));
    EXPECT_FALSE(ipv4PacketIn(LinkType::Null, Bytes{24, 0, 0, 0, 0x60}));
    EXPECT_FALSE(ipv4PacketIn(LinkType::LinuxCooked, Bytes(60)));
    EXPECT_FALSE(ipv4PacketIn(LinkType::LinuxCooked2, Bytes(60)));
    EXPECT_FALSE(ipv4PacketIn(static_cast<LinkType>(999), kPacket));
}

TEST(UdpPacket, framesMayEndAnywhere)
{
    const Bytes tags = {0x81, 0, 0, 5, 0x81, 0, 0, 5, 0x81, 0, 0, 5};
    Bytes ethernet(12);
    ethernet.insert(ethernet.end(), tags.begin(), tags.end());
    for (const LinkType type : {LinkType::Null, LinkType::Ethernet, LinkType::Loop,
                                LinkType::LinuxCooked, LinkType::LinuxCooked2})
        for (std::size_t size = 0; size <= ethernet.size(); ++size)
            EXPECT_FALSE(ipv4PacketIn(type, {ethernet.data(), size})) << size;
}

} // namespace
