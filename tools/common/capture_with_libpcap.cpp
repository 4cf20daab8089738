#include "tools/common/CaptureReader.h"
#include "tools/common/CaptureWriter.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <pcap/pcap.h>
#include <stdexcept>
#include <system_error>

namespace cli {

namespace {

// Longer than any IPv4 packet.
constexpr int kSnapshotLength = 65535;

struct Closer
{
    void operator()(std::FILE* file) const { std::fclose(file); }
    void operator()(pcap_t* capture) const { pcap_close(capture); }
    void operator()(pcap_dumper_t* dumper) const { pcap_dump_close(dumper); }
};

using FileHandle = std::unique_ptr<std::FILE, Closer>;
using Capture = std::unique_ptr<pcap_t, Closer>;
using Dumper = std::unique_ptr<pcap_dumper_t, Closer>;

std::runtime_error failure(const QString& sentence)
{
    return std::runtime_error(sentence.toStdString());
}

QString systemReason()
{
    return QString::fromStdString(std::system_category().message(errno));
}

std::runtime_error unreadable(const QString& fileName, const QString& reason)
{
    return failure(QStringLiteral("%1 cannot be played (%2): give a capture file, pcap or pcapng.")
                       .arg(fileName, reason));
}

std::runtime_error unwritable(const QString& fileName, const QString& reason)
{
    return failure(
        QStringLiteral("%1 takes no more (%2): what was recorded before is in it; make room or "
                       "record elsewhere.")
            .arg(fileName, reason));
}

FileHandle openFile(const QString& fileName, const char* mode)
{
    return FileHandle(std::fopen(QFile::encodeName(fileName).constData(), mode));
}

// The library has a number of its own for raw IP.
LinkType linkTypeOf(pcap_t* capture)
{
    const int type = pcap_datalink(capture);
    return type == DLT_RAW ? LinkType::RawIp : static_cast<LinkType>(type);
}

bool isKnown(LinkType type)
{
    static constexpr std::array kKnown = {
        LinkType::Null,        LinkType::Ethernet, LinkType::RawIp,       LinkType::Loop,
        LinkType::LinuxCooked, LinkType::Ipv4,     LinkType::LinuxCooked2};
    return std::ranges::find(kKnown, type) != kKnown.end();
}

pcap_pkthdr headerOf(std::chrono::system_clock::time_point arrival, std::size_t size)
{
    using namespace std::chrono;
    const auto sinceEpoch = duration_cast<microseconds>(arrival.time_since_epoch());
    const auto whole = duration_cast<seconds>(sinceEpoch);
    pcap_pkthdr header{};
    header.ts.tv_sec = whole.count();
    header.ts.tv_usec = (sinceEpoch - whole).count();
    header.caplen = static_cast<bpf_u_int32>(size);
    header.len = header.caplen;
    return header;
}

} // namespace

struct CaptureWriter::File
{
    QString name;
    Capture format;
    Dumper dumper;
    std::int64_t wholeSize = -1; // up to the last whole packet; -1 where it cannot be told

    bool flush()
    {
        if (pcap_dump_flush(dumper.get()) != 0 || std::ferror(pcap_dump_file(dumper.get())) != 0)
            return false;
        wholeSize = pcap_dump_ftell64(dumper.get());
        return true;
    }

    // Closing may write a part of what did not fit.
    void closeWhole()
    {
        dumper.reset();
        std::error_code ignored; // the reason why we are here is told already
        if (wholeSize >= 0)
            std::filesystem::resize_file(QFile::encodeName(name).toStdString(),
                                         static_cast<std::uintmax_t>(wholeSize), ignored);
    }
};

CaptureWriter::CaptureWriter(const QString& fileName) : mFile(std::make_unique<File>())
{
    mFile->name = fileName;
    mFile->format.reset(pcap_open_dead(DLT_RAW, kSnapshotLength));
    FileHandle handle = openFile(fileName, "wb");
    if (!handle)
        throw failure(QStringLiteral("%1 cannot be written (%2): record elsewhere.")
                          .arg(fileName, systemReason()));
    mFile->dumper.reset(pcap_dump_fopen(mFile->format.get(), handle.get()));
    if (!mFile->dumper)
        throw unwritable(fileName, QString::fromLocal8Bit(pcap_geterr(mFile->format.get())));
    static_cast<void>(handle.release()); // the dumper's now
    if (!mFile->flush())
        throw unwritable(fileName, systemReason());
}

CaptureWriter::~CaptureWriter() = default;

void CaptureWriter::write(std::chrono::system_clock::time_point arrival,
                          const UdpDatagram& datagram)
{
    const std::vector<std::uint8_t> packet = ipv4Packet(datagram);
    const pcap_pkthdr header = headerOf(arrival, packet.size());
    pcap_dump(reinterpret_cast<u_char*>(mFile->dumper.get()), &header, packet.data());
    if (mFile->flush())
        return;
    const QString reason = systemReason();
    mFile->closeWhole();
    throw unwritable(mFile->name, reason);
}

struct CaptureReader::File
{
    QString name;
    Capture capture;
    LinkType linkType = LinkType::RawIp;
};

CaptureReader::CaptureReader(const QString& fileName) : mFile(std::make_unique<File>())
{
    mFile->name = fileName;
    FileHandle handle = openFile(fileName, "rb");
    if (!handle)
        throw unreadable(fileName, systemReason());
    std::array<char, PCAP_ERRBUF_SIZE> reason{};
    mFile->capture.reset(pcap_fopen_offline(handle.get(), reason.data()));
    if (!mFile->capture)
        throw unreadable(fileName, QString::fromLocal8Bit(reason.data()));
    static_cast<void>(handle.release()); // the capture's now
    mFile->linkType = linkTypeOf(mFile->capture.get());
    if (!isKnown(mFile->linkType))
        throw failure(QStringLiteral("%1 was captured on a link of the unknown type %2: capture "
                                     "Ethernet, loopback, \"any\" or raw IP.")
                          .arg(fileName)
                          .arg(static_cast<int>(mFile->linkType)));
}

CaptureReader::~CaptureReader() = default;

std::optional<CapturedPacket> CaptureReader::next()
{
    pcap_pkthdr* header = nullptr;
    const u_char* bytes = nullptr;
    const int result = pcap_next_ex(mFile->capture.get(), &header, &bytes);
    if (result == PCAP_ERROR_BREAK)
        return std::nullopt;
    if (result != 1)
        throw failure(
            QStringLiteral("%1 is broken (%2): what stands before was played; capture it "
                           "anew.")
                .arg(mFile->name, QString::fromLocal8Bit(pcap_geterr(mFile->capture.get()))));
    CapturedPacket packet{.seconds = static_cast<double>(header->ts.tv_sec) +
                                     static_cast<double>(header->ts.tv_usec) / 1e6,
                          .datagram = std::nullopt};
    if (const auto inFrame = ipv4PacketIn(mFile->linkType, {bytes, header->caplen}))
        packet.datagram = udpDatagramIn(*inFrame);
    return packet;
}

} // namespace cli
