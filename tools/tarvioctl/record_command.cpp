#include "tools/tarvioctl/record_command.h"

#include "tools/common/CaptureWriter.h"
#include "tools/common/OptionReader.h"
#include "tools/common/StreamPorts.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/LiveReception.h"

#include <string>

namespace tarvioctl {

namespace {

/// Writes what a reception receives and counts it.
class Recorder
{
public:
    Recorder(const QString& fileName, Console& console)
        : mFileName(fileName), mWriter(fileName), mConsole(console)
    {}

    // A socket does not tell which of this computer's addresses a datagram was sent to.
    void take(const LiveDatagram& datagram)
    {
        mWriter.write(datagram.arrival,
                      {.source = datagram.sender,
                       .destination = orv::ipv4Endpoint(cli::kThisHost, datagram.port),
                       .payload = datagram.bytes});
        ++(datagram.kind == cli::StreamKind::Measurements ? mMeasurements : mFreespaces);
        mConsole.progress(counts());
    }

    bool hasAny() const { return mMeasurements + mFreespaces != 0; }

    QString summary() const
    {
        return QStringLiteral("%1 recorded into %2.").arg(counts(), mFileName);
    }

private:
    QString counts() const
    {
        return QStringLiteral("%1 measurement and %2 freespace datagrams")
            .arg(mMeasurements)
            .arg(mFreespaces);
    }

    QString mFileName;
    cli::CaptureWriter mWriter;
    Console& mConsole;
    std::uint64_t mMeasurements = 0;
    std::uint64_t mFreespaces = 0;
};

ExitStatus runRecord(const Invocation& invocation)
{
    const QString fileName = invocation.arguments.constFirst();
    if (!fileName.endsWith(QStringLiteral(".pcap"), Qt::CaseInsensitive))
        throw std::invalid_argument(
            QStringLiteral("Captures are written in the format pcap, which Wireshark opens as it "
                           "does pcapng: name the file NAME.pcap, not \"%1\".")
                .arg(fileName)
                .toStdString());
    const auto seconds = runningTime(cli::OptionReader(invocation.options));
    // The ports first: a recording that cannot begin leaves a former one alone.
    LiveReception reception(invocation.ecu.streamPorts());
    Recorder recorder(fileName, invocation.console);
    reception.run(seconds, [&recorder](const LiveDatagram& datagram) { recorder.take(datagram); });
    invocation.console.tell(recorder.summary());
    if (!recorder.hasAny())
        throw Refusal(nothingArrived());
    return ExitStatus::Done;
}

} // namespace

Command recordCommand()
{
    return {.name = QStringLiteral("record"),
            .arguments = QStringLiteral("FILE.pcap"),
            .summary = QStringLiteral("Records both live streams into a capture for Wireshark."),
            .minArguments = 1,
            .maxArguments = 1,
            .options = {runningTimeOption()},
            .run = runRecord};
}

} // namespace tarvioctl
