// write_random_datagrams FILE.pcap: writes datagrams of all flows, right and wrong ones, into a
// capture and prints what the decoder of this project says of each, a JSON object a line. The same
// bytes each time.
#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/constants.h"
#include "tests/tools/wireshark/RandomExchange.h"
#include "tests/tools/wireshark/RandomRecords.h"
#include "tests/tools/wireshark/decoder_readings.h"
#include "tools/common/CaptureWriter.h"

#include <QJsonDocument>
#include <QString>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace {

constexpr std::uint16_t kControlPort = 50002;
constexpr std::uint16_t kReceivePort = 50001;
constexpr std::uint16_t kFreespacePort = 50003;
constexpr std::uint16_t kFirstClientPort = 20000;
constexpr std::uint16_t kPortOfNobody = 45000;
constexpr std::uint16_t kPortOfNoise = 46000;

const orv::Ipv4Endpoint kStreamSource = orv::ipv4Endpoint("192.168.1.3", 40000);
const orv::Ipv4Endpoint kControl = orv::ipv4Endpoint("192.168.1.3", kControlPort);

orv::Ipv4Endpoint onHost(std::uint16_t port)
{
    return orv::ipv4Endpoint("192.168.1.2", port);
}

/// The capture, and the lines about it.
class Output
{
public:
    explicit Output(const QString& fileName) : mWriter(fileName) {}

    /// `reading` gets the time in microseconds at which the datagram came.
    void write(const orv::Ipv4Endpoint& from, const orv::Ipv4Endpoint& to, const Bytes& datagram,
               const QString& flow, QJsonObject reading, std::uint32_t pauseUs = 1000)
    {
        mTime += std::chrono::microseconds(pauseUs);
        mWriter.write(std::chrono::system_clock::time_point(mTime),
                      {.source = from, .destination = to, .payload = datagram});
        reading["flow"] = flow;
        reading["timeUs"] = qint64{mTime.count()};
        reading["size"] = qint64(datagram.size());
        std::puts(QJsonDocument(reading).toJson(QJsonDocument::Compact).constData());
    }

private:
    cli::CaptureWriter mWriter;
    std::chrono::microseconds mTime{1'500'000'000'000'000};
};

// What the sockets of both sides read of a datagram.
std::span<const std::uint8_t> readPart(const Bytes& datagram)
{
    return std::span(datagram).first(std::min(datagram.size(), orv::kMaxDatagramSize));
}

Bytes orDamaged(Bytes datagram, RandomRecords& records)
{
    if (records.chance(0.4))
        datagram = records.damaged(std::move(datagram));
    if (datagram.empty() || records.chance(0.02))
        datagram = records.bytes(1 + records.below(100));
    return datagram;
}

void writeMeasurement(RandomRecords& records, Output& output)
{
    const Bytes datagram = orDamaged(records.measurement(), records);
    output.write(kStreamSource, onHost(kReceivePort), datagram, "measurement",
                 readingOfMeasurement(readPart(datagram)));
}

void writeFreespace(RandomRecords& records, Output& output)
{
    const Bytes datagram = orDamaged(records.freespace(), records);
    // Also from the control port: where it goes counts.
    const auto from = records.chance(0.5) ? kStreamSource : kControl;
    output.write(from, onHost(kFreespacePort), datagram, "freespace",
                 readingOfFreespace(readPart(datagram)));
}

void writeReplies(const ExchangeReading& exchange, const orv::Ipv4Endpoint& client,
                  RandomRecords& records, Output& output)
{
    for (const ReplyReading& reply : exchange.replies)
        output.write(kControl, client, reply.datagram, reply.isUnasked ? "unasked" : "reply",
                     {{"error", QString::fromStdString(reply.error)},
                      {"stray", reply.isStray},
                      {"record", reply.record}},
                     records.below(300000));
}

void writeExchange(int number, RandomRecords& records, Output& output)
{
    const ExchangeReading exchange = randomExchange(records);
    const auto client = onHost(static_cast<std::uint16_t>(kFirstClientPort + number % 100));
    output.write(client, kControl, exchange.request, "request", readingOfRequest(exchange.request));
    writeReplies(exchange, client, records, output);
}

Bytes withRightChecksum(Bytes frame)
{
    frame.pop_back();
    return orv::encodeRequest(static_cast<orv::ControlCommand>(frame.front()),
                              std::span(frame).subspan(1));
}

// The byte behind the access or the last one: a sensor, a count, a scale.
Bytes withAnyValue(Bytes request, RandomRecords& records)
{
    const std::size_t last = request.size() - 2; // the checksum stands behind it
    if (records.chance(0.5))
        request[last] = records.around(orv::kThresholdScaleLimit);
    else
        request[std::min<std::size_t>(last, 2)] = records.around(orv::kSensorCount);
    return request;
}

// A request that no client sends, with a checksum that often fits.
void writeRequest(int number, RandomRecords& records, Output& output)
{
    Bytes request = randomRequest(records);
    request = records.chance(0.3) ? withAnyValue(request, records)
                                  : orDamaged(std::move(request), records);
    if (request.size() > 1 && records.chance(0.7))
        request = withRightChecksum(std::move(request));
    const auto client = onHost(static_cast<std::uint16_t>(kFirstClientPort + number % 100));
    output.write(client, kControl, request, "request", readingOfRequest(readPart(request)));
}

QJsonObject readingOfFrame(std::span<const std::uint8_t> frame)
{
    const auto code = static_cast<orv::ControlCommand>(frame.front());
    return {{"error", QString::fromStdString(orv::decodeReply(code, frame).error)}};
}

void writeUnasked(RandomRecords& records, Output& output)
{
    Bytes reply = orv::encodeReply(static_cast<std::uint8_t>(records.below(8)),
                                   records.bytes(records.below(20)), records.chance(0.8) ? 0 : 9);
    reply = orDamaged(std::move(reply), records);
    output.write(kControl, onHost(kPortOfNobody), reply, "unasked", readingOfFrame(reply));
}

// Requests and replies without sense: nothing is said of them, they only have to be survived.
void writeNoise(RandomRecords& records, Output& output)
{
    Bytes bytes = orDamaged(randomRequest(records), records);
    bytes[0] = static_cast<std::uint8_t>(records.below(7));
    if (bytes.size() > 1)
        bytes = withRightChecksum(std::move(bytes));
    if (records.chance(0.5))
        output.write(onHost(kPortOfNoise), kControl, bytes, "noise", {});
    else
        output.write(kControl, onHost(kPortOfNoise), bytes, "noise", {});
}

void writeAll(const QString& fileName)
{
    RandomRecords records(20240229);
    Output output(fileName);
    for (int i = 0; i < 2000; ++i) {
        writeMeasurement(records, output);
        writeFreespace(records, output);
        writeExchange(i, records, output);
        if (i % 2 == 0)
            writeRequest(i, records, output);
        if (i % 4 == 0)
            writeUnasked(records, output);
        if (i % 4 == 1)
            writeNoise(records, output);
    }
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc != 2)
        throw std::runtime_error("usage: write_random_datagrams FILE.pcap");
    writeAll(QString::fromLocal8Bit(argv[1]));
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
