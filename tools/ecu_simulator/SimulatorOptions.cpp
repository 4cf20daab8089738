#include "tools/ecu_simulator/SimulatorOptions.h"

#include "tools/common/OptionReader.h"

#include <QCommandLineParser>

#include <stdexcept>

namespace ecusim {

namespace {

using cli::OptionReader;

constexpr std::uint16_t kDefaultControlPort = 50002;
constexpr std::uint16_t kDefaultReceivePort = 50001;
constexpr std::uint16_t kDefaultFreespacePort = 50003;
constexpr std::uint32_t kSubnetMask24 = 0x00FFFFFF; // 255.255.255.0, first octet lowest

QCommandLineOption option(const char* name, const char* description, const char* value)
{
    return {QLatin1String(name), QLatin1String(description), QLatin1String(value)};
}

QList<QCommandLineOption> networkOptions()
{
    return {
        option("address", "Address of the control socket (127.0.0.1).", "address"),
        option("control-port", "Port of the control socket, 0 = any free one (50002).", "port"),
        option("host", "Where the live streams go (127.0.0.1).", "address"),
        option("receive-port", "Port of the measurement results (50001).", "port"),
        option("fsp-port", "Port of the freespace packages, 0 = none (50003).", "port"),
        option("streams", "Send live data: on or off (on).", "switch"),
    };
}

QList<QCommandLineOption> sceneOptions()
{
    return {
        option("scene",
               "car: a parking place with a pedestrian; wall: one flat wall before each sensor, "
               "no noise (car).",
               "scene"),
        option("wall-distance", "Distance of the walls of the wall scene (2000).", "mm"),
        option("rate", "Results per second, 0.1 to 1000 (20).", "number"),
        option("seed", "The same seed gives the same bytes (1).", "number"),
        option("sensors-missing", "Sensors that neither send nor hear, for example 3,7.", "list"),
    };
}

QList<QCommandLineOption> replayOptions()
{
    return QList{option("replay",
                        "Plays a capture of the live streams, pcap or pcapng, in place of the "
                        "scene.",
                        "file")} +
           cli::playbackOptions();
}

QList<QCommandLineOption> behaviourOptions()
{
    return {
        option("state", "Keeps what was written in this file between runs.", "file"),
        option("calibration", "How auto calibration ends: finish, abort, never or fail (finish).",
               "end"),
        option("calibration-seconds", "How long it runs, 0 to 3600 (3).", "seconds"),
        option("status", "Always answer this command with this status; may be repeated.",
               "code=status"),
        {QStringLiteral("verbose"), QStringLiteral("Print one line for each request.")},
    };
}

QList<QCommandLineOption> faultOptions()
{
    return {
        option("drop-replies", "Share of the replies that are lost, 0 to 1.", "share"),
        option("delay-replies", "Share of the replies that come late.", "share"),
        option("delay-ms", "How late they come, 0 to 60000 (700).", "ms"),
        option("delay-spread", "Up to this much earlier or later, 0 to 60000 (0).", "ms"),
        option("duplicate-replies", "Share of the replies that come twice.", "share"),
        option("corrupt-replies", "Share of the replies with a flipped bit.", "share"),
        option("garbage-replies", "Share of the replies with random bytes before.", "share"),
        option("stray-replies", "Share of the replies with one to another command before.",
               "share"),
        option("drop-stream", "Share of the live datagrams that are lost.", "share"),
        option("duplicate-stream", "Share of the live datagrams that come twice.", "share"),
        option("reorder-stream", "Share of the live datagrams that come after the next.", "share"),
        option("corrupt-stream", "Share of the live datagrams that are damaged or cut.", "share"),
        option("garbage-stream", "Share of the live datagrams with random bytes before.", "share"),
    };
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "A park-assist ECU with twelve ultrasonic sensors that exists in software alone: it "
        "answers the\ncontrol protocol and sends measurement results and freespace packages of a "
        "made-up scene."));
    parser.addHelpOption();
    parser.addVersionOption();
    for (const auto& options :
         {networkOptions(), sceneOptions(), replayOptions(), behaviourOptions(), faultOptions()})
        parser.addOptions(options);
}

std::optional<QHostAddress> readAddress(const OptionReader& reader, const char* name)
{
    const std::optional<QString> address = reader.address(name);
    return address ? std::optional(QHostAddress(*address)) : std::nullopt;
}

NetworkOptions readNetwork(const OptionReader& reader)
{
    return {.address = readAddress(reader, "address"),
            .controlPort = reader.port("control-port", 0),
            .host = readAddress(reader, "host"),
            .receivePort = reader.port("receive-port", 1),
            .freespacePort = reader.port("fsp-port", 0)};
}

ReplyFaultShares readReplyFaults(const OptionReader& reader)
{
    const ReplyFaultShares defaults;
    return {.drop = reader.share("drop-replies"),
            .delay = reader.share("delay-replies"),
            .duplicate = reader.share("duplicate-replies"),
            .corrupt = reader.share("corrupt-replies"),
            .garbage = reader.share("garbage-replies"),
            .stray = reader.share("stray-replies"),
            .delayMs = static_cast<int>(reader.number("delay-ms", 0, 60000, defaults.delayMs)),
            .delaySpreadMs = static_cast<int>(reader.number("delay-spread", 0, 60000, 0))};
}

StreamFaultShares readStreamFaults(const OptionReader& reader)
{
    return {.drop = reader.share("drop-stream"),
            .duplicate = reader.share("duplicate-stream"),
            .reorder = reader.share("reorder-stream"),
            .corrupt = reader.share("corrupt-stream"),
            .garbage = reader.share("garbage-stream")};
}

EcuBehaviour readBehaviour(const OptionReader& reader)
{
    EcuBehaviour behaviour;
    behaviour.calibration = reader.choice<CalibrationOutcome>(
        "calibration", {{QStringLiteral("finish"), CalibrationOutcome::Finish},
                        {QStringLiteral("abort"), CalibrationOutcome::Abort},
                        {QStringLiteral("never"), CalibrationOutcome::Never},
                        {QStringLiteral("fail"), CalibrationOutcome::Fail}});
    behaviour.calibrationMs =
        static_cast<std::int64_t>(1000 * reader.number("calibration-seconds", 0, 3600, 3));
    behaviour.missingMask = reader.sensorMask("sensors-missing");
    behaviour.forcedStatus = reader.statuses("status");
    return behaviour;
}

// What plays a capture means nothing without one.
std::optional<cli::Playback> readReplay(const OptionReader& reader)
{
    if (reader.isSet("replay"))
        return cli::readPlayback(reader, reader.text("replay"));
    for (const auto options = cli::playbackOptions(); const QCommandLineOption& option : options) {
        const QString name = option.names().constFirst();
        if (reader.isSet(name.toLatin1().constData()))
            throw std::invalid_argument(
                QStringLiteral("--%1 needs a capture to play: give --replay FILE too.")
                    .arg(name)
                    .toStdString());
    }
    return std::nullopt;
}

SimulatorOptions readOptions(const OptionReader& reader)
{
    SimulatorOptions options;
    options.network = readNetwork(reader);
    options.stateFile = reader.text("state");
    options.rate = reader.number("rate", 0.1, 1000, options.rate);
    options.seed = reader.seed("seed", options.seed);
    options.scene = reader.choice<SceneKind>("scene", {{QStringLiteral("car"), SceneKind::Car},
                                                       {QStringLiteral("wall"), SceneKind::Wall}});
    options.wallDistanceMm = reader.number("wall-distance", 1, 20000, options.wallDistanceMm);
    options.hasStreams = reader.choice<bool>(
        "streams", {{QStringLiteral("on"), true}, {QStringLiteral("off"), false}});
    options.isVerbose = reader.isSet("verbose");
    options.playback = readReplay(reader);
    options.behaviour = readBehaviour(reader);
    options.behaviour.hasClutter = options.scene == SceneKind::Car;
    options.replyFaults = readReplyFaults(reader);
    options.streamFaults = readStreamFaults(reader);
    return options;
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(arguments))
        return {.action = CommandLine::Action::Refuse, .text = parser.errorText()};
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all")))
        return {.action = CommandLine::Action::PrintAndEnd, .text = parser.helpText()};
    if (parser.isSet(QStringLiteral("version")))
        return {
            .action = CommandLine::Action::PrintAndEnd,
            .text =
                QStringLiteral("tarvio-ecu-simulator %1\n").arg(QStringLiteral(TARVIO_VERSION))};
    if (!parser.positionalArguments().isEmpty())
        return {.action = CommandLine::Action::Refuse,
                .text = QStringLiteral("Unexpected argument \"%1\".")
                            .arg(parser.positionalArguments().constFirst())};
    try {
        return {.options = readOptions(OptionReader(parser))};
    } catch (const std::invalid_argument& error) {
        return {.action = CommandLine::Action::Refuse, .text = QString::fromUtf8(error.what())};
    }
}

orv::EcuNetworkSettings effectiveNetwork(const NetworkOptions& options,
                                         const std::optional<orv::EcuNetworkSettings>& kept)
{
    const std::uint32_t loopback = packedAddress(QHostAddress(QHostAddress::LocalHost));
    orv::EcuNetworkSettings network =
        kept.value_or(orv::EcuNetworkSettings{.valid = true,
                                              .ecuIp = loopback,
                                              .subnetMask = kSubnetMask24,
                                              .gateway = 0,
                                              .controlPort = kDefaultControlPort,
                                              .hostIp = loopback,
                                              .receivePort = kDefaultReceivePort,
                                              .freespacePort = kDefaultFreespacePort});
    if (options.address)
        network.ecuIp = packedAddress(*options.address);
    if (options.host)
        network.hostIp = packedAddress(*options.host);
    network.controlPort = options.controlPort.value_or(network.controlPort);
    network.receivePort = options.receivePort.value_or(network.receivePort);
    network.freespacePort = options.freespacePort.value_or(network.freespacePort);
    return network;
}

QHostAddress hostAddress(std::uint32_t packed)
{
    return QHostAddress((packed & 0xFF) << 24 | (packed & 0xFF00) << 8 | (packed >> 8 & 0xFF00) |
                        packed >> 24);
}

std::uint32_t packedAddress(const QHostAddress& address)
{
    const quint32 number = address.toIPv4Address();
    return (number & 0xFF) << 24 | (number & 0xFF00) << 8 | (number >> 8 & 0xFF00) | number >> 24;
}

} // namespace ecusim
