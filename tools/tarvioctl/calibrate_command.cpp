#include "tools/tarvioctl/calibrate_command.h"

#include "ecu/calibration/CalibrationRun.h"
#include "tools/common/TerminationSignals.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/texts.h"

#include <QEventLoop>

namespace tarvioctl {

namespace {

constexpr int kInterrupted = -1;

// An Ending, or kInterrupted.
int endingOf(CalibrationRun& calibration, const cli::TerminationSignals& termination)
{
    QEventLoop loop;
    QObject::connect(
        &calibration, &CalibrationRun::ended, &loop,
        [&loop](CalibrationRun::Ending ending) { loop.exit(static_cast<int>(ending)); });
    QObject::connect(&termination, &cli::TerminationSignals::terminated, &loop,
                     [&loop] { loop.exit(kInterrupted); });
    return loop.exec();
}

QString refusalOf(int ending, int sensorNumber, const orv::OrvCtrlClient& client)
{
    if (ending == kInterrupted)
        return QStringLiteral(
                   "No longer waited for: the ECU goes on calibrating sensor %1, look at "
                   "its thresholds in half a minute.")
            .arg(sensorNumber);
    switch (static_cast<CalibrationRun::Ending>(ending)) {
    case CalibrationRun::Ending::AbortedByEcu:
        return QStringLiteral("The ECU has aborted the calibration of sensor %1: make the room "
                              "before the sensor free and try again.")
            .arg(sensorNumber);
    case CalibrationRun::Ending::TimedOut:
        return QStringLiteral("The ECU has not finished with sensor %1 in time: try again, or "
                              "restart the ECU.")
            .arg(sensorNumber);
    case CalibrationRun::Ending::ExchangeFailed:
        return noAnswer(client);
    case CalibrationRun::Ending::Finished:
        break;
    }
    return {};
}

ExitStatus runCalibrate(const Invocation& invocation)
{
    const std::uint8_t sensor = sensorOf(invocation.arguments[0]);
    const int number = sensor + 1;
    const auto channel = invocation.ecu.openChannel();
    const cli::TerminationSignals termination; // before the ECU is told to begin
    CalibrationRun calibration;
    QObject::connect(&calibration, &CalibrationRun::stepped, [&](int value, bool) {
        if (value % 10 == 0)
            invocation.console.progress(QStringLiteral("Calibrating sensor %1 %2")
                                            .arg(number)
                                            .arg(QString(value / 10, QLatin1Char('.'))));
    });
    if (!calibration.start(channel->client(), sensor))
        throw Refusal(noAnswer(channel->client()));
    const QString refusal =
        refusalOf(endingOf(calibration, termination), number, channel->client());
    if (!refusal.isEmpty())
        throw Refusal(refusal);
    invocation.console.print(QStringLiteral("sensor %1: calibrated").arg(number));
    return ExitStatus::Done;
}

} // namespace

Command calibrateCommand()
{
    return {.name = QStringLiteral("calibrate"),
            .arguments = QStringLiteral("N"),
            .summary = QStringLiteral("Lets the ECU calibrate the thresholds of sensor N."),
            .minArguments = 1,
            .maxArguments = 1,
            .options = {},
            .run = runCalibrate};
}

} // namespace tarvioctl
