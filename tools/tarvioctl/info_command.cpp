#include "tools/tarvioctl/info_command.h"

#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/texts.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace tarvioctl {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kTimedExchanges = 9;

orv::FirmwareVersion readVersion(orv::OrvCtrlClient& client)
{
    orv::FirmwareVersion version;
    if (!client.readFirmwareVersion(version))
        throw Refusal(noAnswer(client));
    return version;
}

// Of several exchanges, so that one that was held up does not count.
double medianExchangeMs(orv::OrvCtrlClient& client)
{
    std::vector<double> times;
    for (int count = 0; count < kTimedExchanges; ++count) {
        const auto start = Clock::now();
        readVersion(client);
        times.push_back(Milliseconds(Clock::now() - start).count());
    }
    std::ranges::nth_element(times, times.begin() + kTimedExchanges / 2);
    return times[kTimedExchanges / 2];
}

void printNetwork(orv::OrvCtrlClient& client, Console& console)
{
    orv::EcuNetworkSettings network;
    if (!client.readNetworkSettings(network))
        throw Refusal(noAnswer(client));
    console.print(
        QStringLiteral("ECU address:    %1, mask %2, gateway %3")
            .arg(dotted(network.ecuIp), dotted(network.subnetMask), dotted(network.gateway)));
    console.print(QStringLiteral("Control port:   %1").arg(network.controlPort));
    console.print(QStringLiteral("Sends to:       %1, measurements to port %2, freespaces to %3")
                      .arg(dotted(network.hostIp))
                      .arg(network.receivePort)
                      .arg(network.freespacePort == 0
                               ? QStringLiteral("none")
                               : QStringLiteral("port %1").arg(network.freespacePort)));
}

void printSequence(orv::OrvCtrlClient& client, Console& console)
{
    std::vector<orv::MseqStep> steps;
    if (!client.readMeasurementSequence(steps))
        throw Refusal(noAnswer(client));
    console.print(QStringLiteral("Sequence:       %1 steps").arg(steps.size()));
}

ExitStatus runInfo(const Invocation& invocation)
{
    const auto channel = invocation.ecu.openChannel();
    orv::OrvCtrlClient& client = channel->client();
    const QString version = QString::fromStdString(readVersion(client).text());
    invocation.console.print(QStringLiteral("Firmware:       %1").arg(version));
    printNetwork(client, invocation.console);
    printSequence(client, invocation.console);
    invocation.console.print(QStringLiteral("Answers within: %1 ms (median of %2)")
                                 .arg(medianExchangeMs(client), 0, 'f', 2)
                                 .arg(kTimedExchanges));
    return ExitStatus::Done;
}

} // namespace

Command infoCommand()
{
    return {.name = QStringLiteral("info"),
            .arguments = {},
            .summary = QStringLiteral("Tells who answers: firmware, network, sequence, speed."),
            .options = {},
            .run = runInfo};
}

} // namespace tarvioctl
