#pragma once

#include "tools/common/udp_packet.h"

#include <QString>

#include <memory>
#include <optional>

namespace cli {

/// One packet of a capture file.
struct CapturedPacket
{
    double seconds = 0;                  ///< when it was captured, since 1970
    std::optional<UdpDatagram> datagram; ///< nothing when it is something else
};

/// Reads a capture file, pcap or pcapng, from its beginning.
class CaptureReader
{
public:
    /// Throws std::runtime_error with a whole sentence when there is no such file, it is no
    /// capture, one of a link that is not known here, or when the program was built without
    /// libpcap.
    explicit CaptureReader(const QString& fileName);
    ~CaptureReader();
    CaptureReader(const CaptureReader&) = delete;
    CaptureReader& operator=(const CaptureReader&) = delete;

    /// The next packet, whose bytes stay until the next call; nothing at the end. Throws as the
    /// constructor does where the file is broken.
    std::optional<CapturedPacket> next();

private:
    struct File;

    std::unique_ptr<File> mFile;
};

} // namespace cli
