#include "tools/common/CaptureReader.h"
#include "tools/common/CaptureWriter.h"

#include <stdexcept>

// Stands in where libpcap was not found when the programs were built.

namespace cli {

namespace {

[[noreturn]] void refuse()
{
    throw std::runtime_error("This program was built without libpcap and knows no capture files: "
                             "install libpcap-dev and build it again.");
}

} // namespace

struct CaptureWriter::File
{};

CaptureWriter::CaptureWriter(const QString&)
{
    refuse();
}

CaptureWriter::~CaptureWriter() = default;

void CaptureWriter::write(std::chrono::system_clock::time_point, const UdpDatagram&)
{
    refuse();
}

struct CaptureReader::File
{};

CaptureReader::CaptureReader(const QString&)
{
    refuse();
}

CaptureReader::~CaptureReader() = default;

std::optional<CapturedPacket> CaptureReader::next()
{
    refuse();
}

} // namespace cli
