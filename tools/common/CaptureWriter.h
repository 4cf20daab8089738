#pragma once

#include "tools/common/udp_packet.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>

namespace cli {

/// Writes datagrams into a capture file in the format pcap, as packets of raw IPv4. Each one is in
/// the file when write() returns.
class CaptureWriter
{
public:
    /// Replaces a file of this name. Throws std::runtime_error with a whole sentence when it cannot
    /// be made, or when the program was built without libpcap.
    explicit CaptureWriter(const QString& fileName);
    ~CaptureWriter();
    CaptureWriter(const CaptureWriter&) = delete;
    CaptureWriter& operator=(const CaptureWriter&) = delete;

    /// Throws as the constructor does when the file cannot take the packet, and ends the file
    /// behind the one before.
    void write(std::chrono::system_clock::time_point arrival, const UdpDatagram& datagram);

private:
    struct File;

    std::unique_ptr<File> mFile;
};

} // namespace cli
