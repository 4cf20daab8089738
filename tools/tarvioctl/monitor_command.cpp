#include "tools/tarvioctl/monitor_command.h"

#include "orv_decoder/LiveRecord.h"
#include "tools/common/OptionReader.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/LiveReception.h"
#include "tools/tarvioctl/RecordFormat.h"
#include "tools/tarvioctl/StreamTally.h"

#include <limits>

namespace tarvioctl {

namespace {

using FormatMaker = std::unique_ptr<RecordFormat> (*)();

/// Prints what a reception receives and counts it.
class Monitor
{
public:
    Monitor(LiveReception& reception, const RecordFormat& format, std::optional<int> maxRecords,
            Console& console)
        : mReception(reception), mFormat(format), mMaxRecords(maxRecords), mConsole(console)
    {}

    void take(const LiveDatagram& datagram)
    {
        if (datagram.kind == cli::StreamKind::Measurements)
            takeAs(datagram, mMeasurement, mMeasurements);
        else
            takeAs(datagram, mFreespace, mFreespaces);
    }

    std::uint64_t records() const { return mMeasurements.records() + mFreespaces.records(); }

    void tellSummary(const cli::StreamPorts& ports) const
    {
        if (ports.measurements != 0)
            mConsole.tell(QStringLiteral("Measurements: %1.").arg(mMeasurements.summary()));
        if (ports.freespaces != 0)
            mConsole.tell(QStringLiteral("Freespaces: %1.").arg(mFreespaces.summary()));
        mConsole.tell(QStringLiteral("Datagrams that were lost on the way do not show: the "
                                     "protocol numbers none."));
    }

private:
    template<orv::LiveRecord T>
    void takeAs(const LiveDatagram& datagram, T& record, StreamTally& tally)
    {
        if (!decodeInto(datagram.bytes, record)) {
            tally.addUndecodable();
            return;
        }
        tally.addRecord(datagram.arrival);
        mConsole.print(mFormat.text({.number = records(),
                                     .time = datagram.arrival,
                                     .sender = endpointText(datagram.sender)},
                                    record));
        mConsole.flush();
        if (mMaxRecords && records() >= static_cast<std::uint64_t>(*mMaxRecords))
            mReception.end();
    }

    LiveReception& mReception;
    const RecordFormat& mFormat;
    std::optional<int> mMaxRecords;
    Console& mConsole;
    orv::OrvMeasurementResult mMeasurement;
    orv::OrvFreespacePackage mFreespace;
    StreamTally mMeasurements;
    StreamTally mFreespaces;
};

// Neither option means both streams.
cli::StreamPorts chosenPorts(const Invocation& invocation, const cli::OptionReader& reader)
{
    cli::StreamPorts ports = invocation.ecu.streamPorts();
    const bool wantsMeasurements = reader.isSet("measurements");
    const bool wantsFreespaces = reader.isSet("freespaces");
    if (wantsFreespaces && !wantsMeasurements)
        ports.measurements = 0;
    if (wantsMeasurements && !wantsFreespaces)
        ports.freespaces = 0;
    if (ports.measurements == 0 && ports.freespaces == 0)
        throw std::invalid_argument("Freespaces have no port here: give --fsp-port PORT.");
    return ports;
}

void refuseTooFew(std::uint64_t records, std::optional<int> wanted, LiveReception::End end)
{
    if (records == 0)
        throw Refusal(nothingArrived());
    if (wanted && end == LiveReception::End::TimeIsUp)
        throw Refusal(QStringLiteral("Only %1 of %2 records arrived in time: give more --seconds "
                                     "or see \"tarvioctl doctor\".")
                          .arg(records)
                          .arg(*wanted));
}

ExitStatus runMonitor(const Invocation& invocation)
{
    const cli::OptionReader reader(invocation.options);
    const auto format =
        reader.choice<FormatMaker>("format", {{QStringLiteral("text"), textFormat},
                                              {QStringLiteral("jsonl"), jsonLinesFormat},
                                              {QStringLiteral("csv"), csvFormat}})();
    const auto count = reader.wholeNumber("count", 1, std::numeric_limits<int>::max());
    const auto seconds = runningTime(reader);
    const cli::StreamPorts ports = chosenPorts(invocation, reader);
    LiveReception reception(ports);
    Monitor monitor(reception, *format, count, invocation.console);
    if (const QString header = format->header(); !header.isEmpty())
        invocation.console.print(header);
    invocation.console.flush();
    const auto end = reception.run(
        seconds, [&monitor](const LiveDatagram& datagram) { monitor.take(datagram); });
    monitor.tellSummary(ports);
    refuseTooFew(monitor.records(), count, end);
    return ExitStatus::Done;
}

} // namespace

Command monitorCommand()
{
    const auto option = [](const char* name, const char* description, const char* value = "") {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description),
                                  QLatin1String(value));
    };
    return {.name = QStringLiteral("monitor"),
            .arguments = {},
            .summary = QStringLiteral("Prints the live records as they arrive."),
            .options = {option("measurements", "Only measurement results, unless with both."),
                        option("freespaces", "Only freespace packages, unless with both."),
                        option("format",
                               "text: a line a record; jsonl: a JSON object a record; csv: a line "
                               "an echo or distance (text).",
                               "format"),
                        option("count", "End after this many records of both streams.", "number"),
                        runningTimeOption()},
            .run = runMonitor};
}

} // namespace tarvioctl
