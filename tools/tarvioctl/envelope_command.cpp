#include "tools/tarvioctl/envelope_command.h"

#include "ecu/recording/EchoSamples.h"
#include "ecu/recording/RecordingRun.h"
#include "ecu/recording/recording_pattern.h"
#include "ecu/store/safe_file.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "tools/common/OptionReader.h"
#include "tools/tarvioctl/BorrowedThresholds.h"
#include "tools/tarvioctl/Console.h"
#include "tools/tarvioctl/EcuAddress.h"
#include "tools/tarvioctl/LiveReception.h"
#include "tools/tarvioctl/texts.h"

#include <QBuffer>
#include <QCommandLineParser>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace tarvioctl {

namespace {

const QString kOutput = QStringLiteral("o");

/// A whole recording: what arrives goes in, samples and the ending come out.
class Envelope
{
public:
    Envelope(orv::OrvCtrlClient& client, const RecordingSettings& settings, Console& console)
        : mRun(&client), mSettings(settings)
    {
        QObject::connect(&mRun, &RecordingRun::started, &mRun, [this] {
            mHasBegun = true;
            mSamples.clear();
        });
        QObject::connect(&mRun, &RecordingRun::heard, &mRun,
                         [this](const auto& echoes) { mSamples.add(echoes); });
        QObject::connect(&mRun, &RecordingRun::windowMoved, &mRun,
                         [&console](const orv::SensorThreshold&, std::uint32_t position) {
                             console.progress(QStringLiteral("Position %1 of %2")
                                                  .arg(std::min(position, kEndPosition))
                                                  .arg(kEndPosition));
                         });
    }

    /// None when the user has interrupted.
    std::optional<RecordingRun::Ending> record(LiveReception& reception)
    {
        std::optional<RecordingRun::Ending> ending;
        const QObject listener; // its end is that of the connection
        QObject::connect(&mRun, &RecordingRun::ended, &listener, [&](RecordingRun::Ending how) {
            ending = how; // clazy:exclude=lambda-in-connect ; the listener ends first
            reception.end();
        });
        mRun.start();
        const auto end =
            reception.run({}, [this](const LiveDatagram& datagram) { take(datagram); });
        return end == LiveReception::End::Interrupted ? std::nullopt : ending;
    }

    /// A first result has come.
    bool hasBegun() const { return mHasBegun; }

    const EchoSamples& samples() const { return mSamples; }

private:
    void take(const LiveDatagram& datagram)
    {
        orv::OrvMeasurementResult result;
        if (orv::decodeInto(datagram.bytes, result))
            mRun.take(result, mSettings);
    }

    RecordingRun mRun;
    RecordingSettings mSettings;
    EchoSamples mSamples;
    bool mHasBegun = false;
};

RecordingSettings settingsOf(const Invocation& invocation)
{
    const cli::OptionReader reader(invocation.options);
    if (!reader.isSet("sensor") || !reader.isSet("o"))
        throw std::invalid_argument("Usage: tarvioctl envelope --sensor N -o FILE.csv");
    RecordingSettings settings;
    const auto take = [&reader](const char* name, int from, int to, std::uint8_t& value) {
        value = static_cast<std::uint8_t>(reader.wholeNumber(name, from, to).value_or(value));
    };
    settings.sensor = sensorOf(reader.text("sensor"));
    take("left", 0, 7, settings.windowLeft);
    take("right", 0, 7, settings.windowRight);
    take("lut-step", 1, 5, settings.positionStep);
    take("samples", 1, 64, settings.samplesPerStep);
    return settings;
}

void save(const EchoSamples& samples, const QString& fileName)
{
    QBuffer csv;
    csv.open(QIODevice::WriteOnly);
    writeCsv(samples, csv);
    const FileWriteResult result = writeWholeFile(fileName, csv.data());
    if (!result.isWritten())
        throw Refusal(QStringLiteral("Cannot write %1: %2; choose another place and record again.")
                          .arg(fileName, result.errorText));
}

QString streamHasStopped()
{
    return QStringLiteral("The measurements have stopped in the middle of the sweep, nothing is "
                          "saved: see \"tarvioctl doctor\" and record again.");
}

EchoSamples recorded(const Invocation& invocation, const RecordingSettings& settings)
{
    LiveReception reception({.measurements = invocation.ecu.streamPorts().measurements});
    const auto channel = invocation.ecu.openChannel();
    BorrowedThresholds thresholds(channel->client(), settings.sensor);
    Envelope envelope(channel->client(), settings, invocation.console);
    const auto ending = envelope.record(reception);
    thresholds.giveBack();
    if (!ending)
        throw Refusal(
            QStringLiteral("Interrupted: nothing is saved, the thresholds are as before."));
    if (*ending == RecordingRun::Ending::TimedOut)
        throw Refusal(envelope.hasBegun() ? streamHasStopped() : nothingArrived());
    return envelope.samples();
}

ExitStatus runEnvelope(const Invocation& invocation)
{
    const RecordingSettings settings = settingsOf(invocation);
    save(recorded(invocation, settings), invocation.options.value(kOutput));
    return ExitStatus::Done;
}

} // namespace

Command envelopeCommand()
{
    const auto option = [](const char* name, const char* description, const char* value) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description),
                                  QLatin1String(value));
    };
    return {
        .name = QStringLiteral("envelope"),
        .arguments = QStringLiteral("--sensor N -o FILE.csv"),
        .summary = QStringLiteral("Records the envelope curve of a sensor."),
        .options = {option("sensor", "The sensor, 1 to 12.", "number"),
                    option("o", "Where the samples go, as CSV.", "file"),
                    option("left", "Time index of the open window, 0 to 7 (0).", "index"),
                    option("right", "Time index of the segment behind it, 0 to 7 (2).", "index"),
                    option("lut-step", "Positions from step to step, 1 to 5 (1).", "number"),
                    option("samples", "Results for each step, 1 to 64 (3).", "number")},
        .run = runEnvelope};
}

} // namespace tarvioctl
