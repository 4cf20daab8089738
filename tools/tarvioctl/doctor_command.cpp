#include "tools/tarvioctl/doctor_command.h"

#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tools/common/OptionReader.h"
#include "tools/common/host_addresses.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/LiveReception.h"
#include "tools/tarvioctl/StreamTally.h"
#include "tools/tarvioctl/texts.h"

#include <map>
#include <set>

namespace tarvioctl {

namespace {

constexpr double kListeningSeconds = 2;

/// Says what was found, one finding after the other.
class Findings
{
public:
    explicit Findings(Console& console) : mConsole(console) {}

    void fine(const QString& finding) { tell({QStringLiteral("ok       ") + finding}); }

    void problem(const QString& finding, const QString& advice)
    {
        tell({QStringLiteral("PROBLEM  ") + finding, QStringLiteral("         → ") + advice});
        mHasProblem = true;
    }

    bool hasProblem() const { return mHasProblem; }

private:
    // At once, also through a pipe: the next finding may take seconds.
    void tell(const QStringList& lines)
    {
        for (const QString& line : lines)
            mConsole.print(line);
        mConsole.flush();
    }

    Console& mConsole;
    bool mHasProblem = false;
};

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

bool checkControl(orv::OrvCtrlClient& client, const LinkSettings& link, Findings& findings)
{
    const QString where = QStringLiteral("%1:%2").arg(link.ecuIp).arg(link.controlPort);
    orv::FirmwareVersion version;
    const bool answers = client.readFirmwareVersion(version);
    if (answers)
        findings.fine(QStringLiteral("the ECU answers at %1, firmware %2")
                          .arg(where, QString::fromStdString(version.text())));
    else
        findings.problem(
            QStringLiteral("no ECU answers at %1 (%2)")
                .arg(where, QString::fromStdString(client.lastError())),
            QStringLiteral("check power and cable, then the address: this machine needs "
                           "one of the same subnet, and no firewall between"));
    return answers;
}

void checkPort(std::uint16_t ofEcu, std::uint16_t local, const QString& what, Findings& findings)
{
    if (local == 0)
        return;
    if (ofEcu == 0)
        findings.problem(QStringLiteral("the ECU sends no %1").arg(what),
                         QStringLiteral("enter a port for them in Tarvio's connection dialog and "
                                        "restart the ECU, or do without"));
    else if (ofEcu == local)
        findings.fine(QStringLiteral("the ECU sends %1 to port %2").arg(what).arg(ofEcu));
    else
        findings.problem(QStringLiteral("the ECU sends %1 to port %2, not to %3")
                             .arg(what)
                             .arg(ofEcu)
                             .arg(local),
                         QStringLiteral("set this port here, or the ECU's in Tarvio's connection "
                                        "dialog, and restart the ECU"));
}

void checkDestination(orv::OrvCtrlClient& client, const cli::StreamPorts& ports, Findings& findings)
{
    orv::EcuNetworkSettings network;
    if (!client.readNetworkSettings(network))
        return;
    const QString host = dotted(network.hostIp);
    if (cli::isOwnAddress(network.hostIp))
        findings.fine(QStringLiteral("the ECU sends to %1, which is this machine").arg(host));
    else
        findings.problem(
            QStringLiteral("the ECU sends to %1, which this machine is not").arg(host),
            QStringLiteral("give this machine the address %1, or enter another host in "
                           "Tarvio's connection dialog and restart the ECU")
                .arg(host));
    checkPort(network.receivePort, ports.measurements, QStringLiteral("measurements"), findings);
    checkPort(network.freespacePort, ports.freespaces, QStringLiteral("freespaces"), findings);
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
                         QStringLiteral("mend what stands above; if nothing does, look for a "
                                        "firewall on this machine"));
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

// Control port first: its questions take no time where all is well.
ExitStatus runDoctor(const Invocation& invocation)
{
    Findings findings(invocation.console);
    const LinkSettings link = invocation.ecu.link();
    const cli::StreamPorts ports = invocation.ecu.streamPorts();
    const auto channel = std::make_unique<EcuChannel>(link, invocation.ecu.timeoutMs());
    if (checkControl(channel->client(), link, findings))
        checkDestination(channel->client(), ports, findings);
    for (const auto& [kind, heard] : listen(freePorts(ports, findings)))
        checkStream(heard, findings);
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
