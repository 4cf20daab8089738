#include "tools/tarvioctl/doctor_command.h"

#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tools/common/OptionReader.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/Findings.h"
#include "tools/tarvioctl/LiveReception.h"
#include "tools/tarvioctl/StreamTally.h"
#include "tools/tarvioctl/ecu_findings.h"
#include "tools/tarvioctl/texts.h"

#include <map>
#include <set>

namespace tarvioctl {

namespace {

constexpr double kListeningSeconds = 2;

/// What came on the port of one stream while the doctor listened.
struct Heard
{
    std::uint16_t port = 0;
    StreamTally tally;
    std::set<std::uint32_t> senders;
};

using HeardOnStreams = std::map<cli::StreamKind, Heard>;

bool isRecord(const LiveDatagram& datagram)
{
    if (datagram.kind == cli::StreamKind::Measurements)
        return orv::decodeDatagram<orv::OrvMeasurementResult>(datagram.bytes).has_value();
    return orv::decodeDatagram<orv::OrvFreespacePackage>(datagram.bytes).has_value();
}

bool isFree(const cli::StreamPorts& port, std::uint16_t number, Findings& findings)
{
    try {
        const LiveReception trial(port);
    } catch (const Refusal& refusal) {
        findings.problem(QStringLiteral("local port %1 is taken").arg(number),
                         QString::fromUtf8(refusal.what()));
        return false;
    }
    findings.fine(QStringLiteral("local port %1 is free").arg(number));
    return true;
}

// Those that are free; the others are told.
cli::StreamPorts freePorts(cli::StreamPorts ports, Findings& findings)
{
    if (ports.measurements != 0 &&
        !isFree({.measurements = ports.measurements}, ports.measurements, findings))
        ports.measurements = 0;
    if (ports.freespaces != 0 &&
        !isFree({.freespaces = ports.freespaces}, ports.freespaces, findings))
        ports.freespaces = 0;
    return ports;
}

HeardOnStreams listen(const cli::StreamPorts& ports)
{
    HeardOnStreams heard;
    for (const cli::StreamKind kind : {cli::StreamKind::Measurements, cli::StreamKind::Freespaces})
        if (ports.of(kind) != 0)
            heard[kind].port = ports.of(kind);
    const auto end =
        LiveReception(ports).run(kListeningSeconds, [&heard](const LiveDatagram& datagram) {
            Heard& stream = heard[datagram.kind];
            stream.senders.insert(datagram.sender.address);
            if (isRecord(datagram))
                stream.tally.addRecord(datagram.arrival);
            else
                stream.tally.addUndecodable();
        });
    if (end == LiveReception::End::Interrupted)
        throw Refusal(QStringLiteral("Interrupted: what arrives was not looked at, let the doctor "
                                     "listen for two seconds."));
    return heard;
}

QString sendersText(const std::set<std::uint32_t>& senders)
{
    QStringList texts;
    for (const std::uint32_t sender : senders)
        texts += dotted(sender);
    return texts.join(QStringLiteral(", "));
}

void checkStream(const Heard& heard, Findings& findings)
{
    const QString where = QStringLiteral("port %1").arg(heard.port);
    if (heard.senders.empty())
        findings.problem(QStringLiteral("nothing arrives on %1").arg(where),
                         QStringLiteral("mend what stands above; if nothing does, restart the "
                                        "ECU, which takes new settings only then, and look for "
                                        "a firewall on this machine"));
    else if (heard.tally.records() == 0)
        findings.problem(QStringLiteral("what arrives on %1 from %2 is no record")
                             .arg(where, sendersText(heard.senders)),
                         QStringLiteral("look whether the two ports are exchanged, and who sends"));
    else
        findings.fine(QStringLiteral("%1 on %2 from %3")
                          .arg(heard.tally.summary(), where, sendersText(heard.senders)));
    if (heard.tally.records() > 0 && heard.tally.undecodable() > 0)
        findings.problem(QStringLiteral("%1 datagrams on %2 are no records")
                             .arg(heard.tally.undecodable())
                             .arg(where),
                         QStringLiteral("look who else sends to this port"));
}

// An ECU that sends is there, only not where it was asked.
void checkSender(std::uint32_t sender, const LinkSettings& link, Findings& findings)
{
    const QString address = dotted(sender);
    if (address == link.ecuIp)
        findings.problem(QStringLiteral("%1 sends live data but does not answer at port %2")
                             .arg(address)
                             .arg(link.controlPort),
                         QStringLiteral("enter the ECU's control port in Tarvio's connection "
                                        "dialog, or restart the ECU"));
    else
        findings.problem(
            QStringLiteral("live data come from %1, not from %2").arg(address, link.ecuIp),
            QStringLiteral("if %1 is the ECU, enter it as its address in Tarvio's "
                           "connection dialog")
                .arg(address));
}

void checkSenders(const HeardOnStreams& heard, const LinkSettings& link, Findings& findings)
{
    std::set<std::uint32_t> senders;
    for (const auto& [kind, stream] : heard)
        if (stream.tally.records() > 0)
            senders.insert(stream.senders.begin(), stream.senders.end());
    for (const std::uint32_t sender : senders)
        checkSender(sender, link, findings);
}

// Control port first: its questions take no time where all is well.
ExitStatus runDoctor(const Invocation& invocation)
{
    Findings findings(invocation.console);
    const LinkSettings link = invocation.ecu.link();
    const cli::StreamPorts ports = invocation.ecu.streamPorts();
    const auto channel = std::make_unique<EcuChannel>(link, invocation.ecu.timeoutMs());
    const bool answers = lookAtEcu(channel->client(), link, ports, findings);
    const HeardOnStreams heard = listen(freePorts(ports, findings));
    for (const auto& [kind, stream] : heard)
        checkStream(stream, findings);
    if (!answers)
        checkSenders(heard, link, findings);
    return findings.hasProblem() ? ExitStatus::Refused : ExitStatus::Done;
}

} // namespace

Command doctorCommand()
{
    return {.name = QStringLiteral("doctor"),
            .arguments = {},
            .summary = QStringLiteral("Tells why nothing arrives, and what to do next."),
            .options = {},
            .run = runDoctor};
}

} // namespace tarvioctl
