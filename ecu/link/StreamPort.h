#pragma once

#include "orv_decoder/OrvUdpSocket.h"

#include <cstdint>
#include <string>

/// Why a live stream has no port.
struct PortProblem
{
    std::uint16_t port = 0;
    std::string reason; ///< the system's words

    bool operator==(const PortProblem&) const = default;
};

/// The port of one live stream, which nobody else may hold: its address may be reused, and so a
/// second program could bind the same port without an error and silently take the data.
class StreamPort : public orv::OrvUdpSocket
{
public:
    using OrvUdpSocket::OrvUdpSocket;

    /// Also fails, with "Can't bind socket", while somebody else holds the port.
    bool open() override;
};
