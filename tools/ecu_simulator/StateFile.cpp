#include "tools/ecu_simulator/StateFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace ecusim {

namespace {

constexpr int kFormatVersion = 1;

// Far above a real state, which has about 2 kB.
constexpr qint64 kMaxFileSize = qint64{64} * 1024;

const QString kFormatKey = QStringLiteral("tarvioEcuState");
const QString kSequenceKey = QStringLiteral("measurementSequence");
const QString kThresholdsKey = QStringLiteral("thresholds");
const QString kPositionsKey = QStringLiteral("sensorPositions");
const QString kNetworkKey = QStringLiteral("networkSettings");

using Bytes = std::vector<std::uint8_t>;

QString toHex(const Bytes& bytes)
{
    const QByteArray raw(reinterpret_cast<const char*>(bytes.data()),
                         static_cast<int>(bytes.size()));
    return QString::fromLatin1(raw.toHex());
}

// Stray characters are skipped here and show up as a wrong length.
Bytes fromHex(const QJsonValue& value)
{
    const QByteArray raw = QByteArray::fromHex(value.toString().toLatin1());
    return Bytes(raw.begin(), raw.end());
}

bool decodeSequence(const QJsonValue& value, EcuState& state)
{
    const QJsonArray items = value.toArray();
    if (!value.isArray() || items.size() > static_cast<int>(orv::kMaxStepCount))
        return false;
    state.sequence.clear();
    for (const QJsonValue& item : items) {
        const Bytes bytes = fromHex(item);
        const auto step = orv::decodeStep(bytes);
        if (!step || bytes.size() != orv::MseqStep::kWireSize)
            return false;
        state.sequence.push_back(*step);
    }
    return true;
}

bool decodeThresholds(const QJsonValue& value, EcuState& state)
{
    const QJsonArray items = value.toArray();
    if (items.size() != orv::kSensorCount)
        return false;
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        const auto threshold = orv::checkedThreshold(fromHex(items[id]), id).record;
        if (!threshold)
            return false;
        state.keptThresholds[id] = *threshold;
    }
    state.thresholds = state.keptThresholds;
    return true;
}

bool decodePositions(const QJsonValue& value, EcuState& state)
{
    const auto positions = orv::decodeMountPositions(fromHex(value));
    if (positions)
        state.positions = *positions;
    return positions.has_value();
}

bool decodeNetwork(const QJsonValue& value, EcuState& state)
{
    if (value.isUndefined())
        return true;
    state.keptNetwork = orv::decodeNetworkSettings(fromHex(value));
    return state.keptNetwork.has_value();
}

} // namespace

QByteArray encodeState(const EcuState& state)
{
    QJsonArray sequence;
    for (const orv::MseqStep& step : state.sequence)
        sequence.append(toHex(orv::encodeStep(step)));
    QJsonArray thresholds;
    for (const orv::SensorThreshold& threshold : state.keptThresholds)
        thresholds.append(toHex(orv::encodeThreshold(threshold)));
    QJsonObject root{{kFormatKey, kFormatVersion},
                     {kSequenceKey, sequence},
                     {kThresholdsKey, thresholds},
                     {kPositionsKey, toHex(orv::encodeMountPositions(state.positions))}};
    if (state.keptNetwork)
        root.insert(kNetworkKey, toHex(orv::encodeNetworkSettings(*state.keptNetwork)));
    return QJsonDocument(root).toJson();
}

bool decodeState(const QByteArray& text, EcuState& state, QString& error)
{
    const QJsonObject root = QJsonDocument::fromJson(text).object();
    const auto reject = [&error](const QString& reason) {
        error = reason;
        return false;
    };
    if (root.value(kFormatKey).toInt() != kFormatVersion)
        return reject(QStringLiteral("not a state of the simulated ECU"));
    EcuState read = state;
    if (!decodeSequence(root.value(kSequenceKey), read))
        return reject(QStringLiteral("wrong measurement sequence"));
    if (!decodeThresholds(root.value(kThresholdsKey), read))
        return reject(QStringLiteral("wrong thresholds"));
    if (!decodePositions(root.value(kPositionsKey), read))
        return reject(QStringLiteral("wrong sensor positions"));
    if (!decodeNetwork(root.value(kNetworkKey), read))
        return reject(QStringLiteral("wrong network settings"));
    state = read;
    return true;
}

bool StateFile::load(EcuState& state)
{
    QFile file(mPath);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.errorString());
    QString reason;
    return decodeState(file.read(kMaxFileSize), state, reason) || fail(reason);
}

bool StateFile::save(const EcuState& state)
{
    QSaveFile file(mPath);
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    file.write(encodeState(state));
    return file.commit() || fail(file.errorString());
}

bool StateFile::fail(const QString& reason)
{
    mError = QStringLiteral("%1: %2").arg(mPath, reason);
    return false;
}

} // namespace ecusim
