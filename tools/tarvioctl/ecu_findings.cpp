#include "tools/tarvioctl/ecu_findings.h"

#include "ecu/link/LinkSettings.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "tools/common/host_addresses.h"
#include "tools/tarvioctl/Findings.h"
#include "tools/tarvioctl/texts.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace tarvioctl {

namespace {

QString adviceForSilence(const std::string& error)
{
    if (error == "socket: send error")
        return QStringLiteral("this machine has no way there: give it an address of the ECU's "
                              "subnet, and look whether the cable is in");
    return QStringLiteral("check power and cable, then the address: this machine needs one of the "
                          "same subnet, and no firewall between");
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
        findings.problem(QStringLiteral("no ECU answers at %1 (%2)")
                             .arg(where, QString::fromStdString(client.lastError())),
                         adviceForSilence(client.lastError()));
    return answers;
}

void checkSequence(orv::OrvCtrlClient& client, Findings& findings)
{
    std::vector<orv::MseqStep> steps;
    if (client.readMeasurementSequence(steps) && steps.empty())
        findings.problem(QStringLiteral("the ECU's measurement sequence has no steps"),
                         QStringLiteral("without any it sends nothing: transmit a sequence from "
                                        "Tarvio's table"));
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

} // namespace

bool lookAtEcu(orv::OrvCtrlClient& client, const LinkSettings& link, const cli::StreamPorts& ports,
               Findings& findings)
{
    if (!checkControl(client, link, findings))
        return false;
    checkDestination(client, ports, findings);
    checkSequence(client, findings);
    return true;
}

} // namespace tarvioctl
