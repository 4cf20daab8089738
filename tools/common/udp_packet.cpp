#include "tools/common/udp_packet.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>

namespace cli {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kIpHeaderSize = 20;
constexpr std::size_t kUdpHeaderSize = 8;
constexpr std::size_t kMaxPayload = 65535 - kIpHeaderSize - kUdpHeaderSize;
constexpr std::uint8_t kUdpProtocol = 17;
constexpr std::uint8_t kTimeToLive = 64;
constexpr std::uint16_t kDontFragment = 0x4000;
constexpr std::uint16_t kFragmentBits = 0x3FFF; // "more follow" and the offset

constexpr std::size_t kChecksumInIp = 10;
constexpr std::size_t kAddressesInIp = 12;
constexpr std::size_t kChecksumInUdp = kIpHeaderSize + 6;

constexpr std::uint16_t kIpv4EtherType = 0x0800;
constexpr std::uint16_t kVlanEtherType = 0x8100;
constexpr std::uint16_t kOuterVlanEtherType = 0x88A8;
constexpr std::size_t kVlanTagSize = 4;
constexpr std::uint32_t kInternetFamily = 2;

/// Writes as the network does, the highest byte first.
class NetworkWriter
{
public:
    void u8(std::uint8_t value) { mBytes.push_back(value); }
    void u16(std::size_t value)
    {
        u8(static_cast<std::uint8_t>(value >> 8));
        u8(static_cast<std::uint8_t>(value));
    }
    void block(Bytes block) { mBytes.insert(mBytes.end(), block.begin(), block.end()); }
    void address(std::uint32_t inNetworkOrder)
    {
        block(std::bit_cast<std::array<std::uint8_t, 4>>(inNetworkOrder));
    }
    std::vector<std::uint8_t> take() { return std::move(mBytes); }

private:
    std::vector<std::uint8_t> mBytes;
};

std::uint16_t u16At(Bytes bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

std::uint32_t addressAt(Bytes bytes, std::size_t at)
{
    std::array<std::uint8_t, 4> octets{};
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), octets.size(), octets.begin());
    return std::bit_cast<std::uint32_t>(octets);
}

// The sum that the checksums of IP and UDP are made of; an odd byte counts as the higher one.
std::uint32_t sumOf(Bytes bytes)
{
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at)
        sum += at % 2 == 0 ? std::uint32_t{bytes[at]} << 8 : bytes[at];
    return sum;
}

std::uint16_t checksumOf(std::uint32_t sum)
{
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum);
}

void put(std::vector<std::uint8_t>& packet, std::size_t at, std::uint16_t value)
{
    packet[at] = static_cast<std::uint8_t>(value >> 8);
    packet[at + 1] = static_cast<std::uint8_t>(value);
}

void writeIpHeader(NetworkWriter& writer, const UdpDatagram& datagram, std::size_t payloadSize)
{
    writer.u8(0x45); // version 4, header of five words
    writer.u8(0);
    writer.u16(kIpHeaderSize + kUdpHeaderSize + payloadSize);
    writer.u16(0);
    writer.u16(kDontFragment);
    writer.u8(kTimeToLive);
    writer.u8(kUdpProtocol);
    writer.u16(0); // the checksum, later
    writer.address(datagram.source.address);
    writer.address(datagram.destination.address);
}

void putChecksums(std::vector<std::uint8_t>& packet)
{
    const Bytes bytes(packet);
    const Bytes ipHeader = bytes.first(kIpHeaderSize);
    const Bytes udp = bytes.subspan(kIpHeaderSize);
    const std::uint16_t ofIp = checksumOf(sumOf(ipHeader));
    const std::uint16_t ofUdp = checksumOf(sumOf(ipHeader.subspan(kAddressesInIp)) + kUdpProtocol +
                                           static_cast<std::uint32_t>(udp.size()) + sumOf(udp));
    put(packet, kChecksumInIp, ofIp);
    // 0 would mean that there is none.
    put(packet, kChecksumInUdp, ofUdp == 0 ? std::uint16_t{0xFFFF} : ofUdp);
}

std::optional<Bytes> behind(Bytes frame, std::size_t headerSize)
{
    return frame.size() < headerSize ? std::nullopt : std::optional(frame.subspan(headerSize));
}

// Where a header has a field for the type of what follows.
std::optional<Bytes> behindTyped(Bytes frame, std::size_t typeAt, std::size_t headerSize)
{
    if (frame.size() < headerSize || u16At(frame, typeAt) != kIpv4EtherType)
        return std::nullopt;
    return behind(frame, headerSize);
}

std::optional<Bytes> behindEthernet(Bytes frame)
{
    constexpr std::size_t kTypeAt = 12;
    std::size_t typeAt = kTypeAt;
    while (frame.size() >= typeAt + kVlanTagSize + 2 &&
           (u16At(frame, typeAt) == kVlanEtherType || u16At(frame, typeAt) == kOuterVlanEtherType))
        typeAt += kVlanTagSize;
    return behindTyped(frame, typeAt, typeAt + 2);
}

// Written in the byte order of the system that captured, whichever it was.
std::optional<Bytes> behindFamily(Bytes frame)
{
    constexpr std::size_t kFamilySize = 4;
    if (frame.size() < kFamilySize)
        return std::nullopt;
    const std::uint32_t family = addressAt(frame, 0);
    const bool isInternet = family == kInternetFamily || family == kInternetFamily << 24;
    return isInternet ? behind(frame, kFamilySize) : std::nullopt;
}

} // namespace

std::vector<std::uint8_t> ipv4Packet(const UdpDatagram& datagram)
{
    const Bytes payload = datagram.payload.first(std::min(datagram.payload.size(), kMaxPayload));
    NetworkWriter writer;
    writeIpHeader(writer, datagram, payload.size());
    writer.u16(datagram.source.port);
    writer.u16(datagram.destination.port);
    writer.u16(kUdpHeaderSize + payload.size());
    writer.u16(0); // the checksum, later
    writer.block(payload);
    std::vector<std::uint8_t> packet = writer.take();
    putChecksums(packet);
    return packet;
}

std::optional<UdpDatagram> udpDatagramIn(Bytes packet)
{
    if (packet.size() < kIpHeaderSize || packet[0] >> 4 != 4 || packet[9] != kUdpProtocol ||
        (u16At(packet, 6) & kFragmentBits) != 0)
        return std::nullopt;
    const std::size_t headerSize = std::size_t{packet[0] & 0x0FU} * 4;
    const std::size_t size = u16At(packet, 2);
    if (headerSize < kIpHeaderSize || size < headerSize + kUdpHeaderSize || size > packet.size())
        return std::nullopt;
    const Bytes udp = packet.subspan(headerSize, size - headerSize);
    const std::size_t udpSize = u16At(udp, 4);
    if (udpSize < kUdpHeaderSize || udpSize > udp.size())
        return std::nullopt;
    return UdpDatagram{
        .source = {.address = addressAt(packet, kAddressesInIp), .port = u16At(udp, 0)},
        .destination = {.address = addressAt(packet, kAddressesInIp + 4), .port = u16At(udp, 2)},
        .payload = udp.subspan(kUdpHeaderSize, udpSize - kUdpHeaderSize)};
}

std::optional<Bytes> ipv4PacketIn(LinkType type, Bytes frame)
{
    switch (type) {
    case LinkType::RawIp:
    case LinkType::Ipv4:
        return frame;
    case LinkType::Ethernet:
        return behindEthernet(frame);
    case LinkType::Null:
    case LinkType::Loop:
        return behindFamily(frame);
    case LinkType::LinuxCooked:
        return behindTyped(frame, 14, 16);
    case LinkType::LinuxCooked2:
        return behindTyped(frame, 0, 20);
    }
    return std::nullopt;
}

} // namespace cli
