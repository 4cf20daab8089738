#pragma once

#include "orv_decoder/DatagramSocket.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace cli {

/// A UDP datagram over IPv4; the payload is borrowed.
struct UdpDatagram
{
    orv::Ipv4Endpoint source;
    orv::Ipv4Endpoint destination;
    std::span<const std::uint8_t> payload;
};

/// How the packets of a capture file are wrapped, by the registered number of the link type.
enum class LinkType : int {
    Null = 0, ///< four bytes with the address family of the system that captured
    Ethernet = 1,
    RawIp = 101,
    Loop = 108, ///< as Null, highest byte first
    LinuxCooked = 113,
    Ipv4 = 228,
    LinuxCooked2 = 276,
};

/// The IPv4 packet around a datagram, checksums included; a payload that fits in no packet is cut.
std::vector<std::uint8_t> ipv4Packet(const UdpDatagram& datagram);

/// The datagram in an IPv4 packet, which may be padded. Nothing for other protocols, fragments, and
/// packets that are damaged or not whole. Checksums are not looked at: many senders leave them to
/// the network card, behind the capture.
std::optional<UdpDatagram> udpDatagramIn(std::span<const std::uint8_t> packet);

/// The IPv4 packet in a frame; nothing for other protocols and unknown link types.
std::optional<std::span<const std::uint8_t>> ipv4PacketIn(LinkType type,
                                                          std::span<const std::uint8_t> frame);

} // namespace cli
