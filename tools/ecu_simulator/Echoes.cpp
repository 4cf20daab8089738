#include "tools/ecu_simulator/Echoes.h"

#include "orv_decoder/tables.h"
#include "tools/ecu_simulator/Clutter.h"
#include "tools/ecu_simulator/SeededRandom.h"
#include "tools/ecu_simulator/ThresholdCurve.h"

#include <algorithm>
#include <optional>

namespace ecusim {

namespace {

constexpr double kSpeedOfSoundMmPerUs = 0.343;

// The last 51.2 us unit of the wire that ends below full scale.
constexpr double kLatestEchoUs = 29952;

// The receiver's gain makes up for spreading; what is left is absorption by the air.
constexpr double kLossDbPerMetre = 1.5;
constexpr double kEdgeLossDb = 10;
constexpr double kSecondEchoLossDb = 7;
constexpr double kCrossClutterLossDb = 4;

constexpr double kHalfBeam = radians(30); // 3 dB down each way
constexpr double kBeamLimit = radians(75);

constexpr double kMagnitudeJitterDb = 0.5;
constexpr double kTimeJitterUs = 20;
constexpr double kSpuriousEchoShare = 0.02;

constexpr std::size_t kMaxEchoesPerSensor = 10;

constexpr std::uint8_t kDirectEcho = 0;
constexpr std::uint8_t kCrossEcho = 1;

struct RawEcho
{
    double timeUs = 0;
    double strengthDb = 0;
    std::uint8_t kind = kDirectEcho;
};

bool hasBit(std::uint16_t mask, std::uint8_t sensorId)
{
    return (mask >> sensorId) & 1;
}

std::optional<std::uint8_t> magnitudeCode(double decibels)
{
    const auto& levels = orv::kMagnitudesDb;
    const auto above = std::upper_bound(levels.begin(), levels.end(), static_cast<float>(decibels));
    if (above == levels.begin())
        return std::nullopt;
    return static_cast<std::uint8_t>(above - levels.begin() - 1);
}

/// What one sensor hears of one sender.
class Listening
{
public:
    Listening(const Pose& sender, const Pose& listener, std::uint8_t kind)
        : mSender(sender), mListener(listener), mKind(kind)
    {}

    void hear(const Surroundings& surroundings, bool withSecondEchoes)
    {
        for (const auto& [wall, strengthDb] : surroundings.walls) {
            if (const auto path = echoPath(wall, mSender.position, mListener.position))
                hearWall(*path, strengthDb, withSecondEchoes);
        }
        for (const auto& [disc, strengthDb] : surroundings.discs)
            hearPath(echoPath(disc, mSender.position, mListener.position), strengthDb);
    }

    std::vector<RawEcho> take() { return std::move(mEchoes); }

private:
    void hearWall(const EchoPath& path, double strengthDb, bool withSecondEcho)
    {
        hearPath(path, strengthDb);
        if (!withSecondEcho || path.isFromEdge)
            return;
        // Thrown back by the own bumper, the sound makes the way twice.
        EchoPath twice = path;
        twice.lengthMm *= 2;
        hearPath(twice, strengthDb - kSecondEchoLossDb);
    }

    void hearPath(const EchoPath& path, double strengthDb)
    {
        const double sent = mSender.offAxisAngle(path.reflection);
        const double received = mListener.offAxisAngle(path.reflection);
        if (sent > kBeamLimit || received > kBeamLimit)
            return;
        const double beamLossDb = 3 * (sent * sent + received * received) / (kHalfBeam * kHalfBeam);
        const double edgeLossDb = path.isFromEdge ? kEdgeLossDb : 0;
        mEchoes.push_back({.timeUs = path.lengthMm / kSpeedOfSoundMmPerUs,
                           .strengthDb = strengthDb - beamLossDb - edgeLossDb -
                                         kLossDbPerMetre * path.lengthMm / 1000,
                           .kind = mKind});
    }

    Pose mSender;
    Pose mListener;
    std::uint8_t mKind;
    std::vector<RawEcho> mEchoes;
};

std::vector<RawEcho> echoesOfScene(const Scene& scene, const EcuState& state,
                                   std::uint16_t sendMask, std::uint8_t listenerId, double seconds)
{
    std::vector<RawEcho> echoes;
    const Pose listener = poseOf(state.positions[listenerId]);
    for (std::uint8_t senderId = 0; senderId < orv::kSensorCount; ++senderId) {
        if (!hasBit(sendMask, senderId))
            continue;
        const bool isDirect = senderId == listenerId;
        const Pose sender = poseOf(state.positions[senderId]);
        Listening listening(sender, listener, isDirect ? kDirectEcho : kCrossEcho);
        listening.hear(scene.seenFrom(sender, seconds), isDirect && scene.isNoisy());
        const std::vector<RawEcho> heard = listening.take();
        echoes.insert(echoes.end(), heard.begin(), heard.end());
    }
    return echoes;
}

void addClutter(std::vector<RawEcho>& echoes, std::uint8_t sensorId, Hearing hearing)
{
    const std::uint8_t kind = hearing == Hearing::Active ? kDirectEcho : kCrossEcho;
    const double lossDb = hearing == Hearing::Active ? 0 : kCrossClutterLossDb;
    for (double time : clutterTimes(sensorId))
        echoes.push_back(
            {.timeUs = time, .strengthDb = clutterDb(sensorId, time) - lossDb, .kind = kind});
}

void addNoise(std::vector<RawEcho>& echoes, SeededRandom& random)
{
    for (RawEcho& echo : echoes) {
        echo.timeUs += kTimeJitterUs * random.gaussian();
        echo.strengthDb += kMagnitudeJitterDb * random.gaussian();
    }
    const bool hasSpurious = random.chance(kSpuriousEchoShare);
    const RawEcho spurious{.timeUs = random.uniform(6000, kLatestEchoUs),
                           .strengthDb = random.uniform(-29, -20)};
    if (hasSpurious)
        echoes.push_back(spurious);
}

std::optional<orv::OrvSensorEcho> reported(const RawEcho& echo,
                                           const orv::SensorThreshold& threshold, Hearing hearing)
{
    const auto code = magnitudeCode(echo.strengthDb);
    if (!code || echo.timeUs < 0 || echo.timeUs > kLatestEchoUs)
        return std::nullopt;
    if (orv::kMagnitudeLevels[*code] <= thresholdLevel(threshold, echo.timeUs, hearing))
        return std::nullopt;
    return orv::OrvSensorEcho{.magnitude = *code,
                              .secondValue = echo.kind,
                              .timeOfFlight = static_cast<std::uint16_t>(echo.timeUs)};
}

// Before the threshold cuts, so that writing a threshold leaves the other echoes alone.
void disturb(std::vector<RawEcho>& echoes, std::uint8_t id, Hearing hearing, std::uint16_t sendMask,
             SeededRandom& random)
{
    if (sendMask != 0)
        addClutter(echoes, id, hearing);
    addNoise(echoes, random);
}

std::vector<orv::OrvSensorEcho>
aboveThreshold(std::vector<RawEcho> echoes, const orv::SensorThreshold& threshold, Hearing hearing)
{
    std::ranges::sort(echoes, {}, &RawEcho::timeUs);
    std::vector<orv::OrvSensorEcho> kept;
    for (const RawEcho& echo : echoes) {
        if (const auto heard = reported(echo, threshold, hearing))
            kept.push_back(*heard);
        if (kept.size() == kMaxEchoesPerSensor)
            break;
    }
    return kept;
}

} // namespace

orv::OrvMeasurementResult Echoes::measure(const EcuState& state, std::uint32_t index,
                                          double seconds) const
{
    const orv::MseqStep& step = state.sequence[index % state.sequence.size()];
    const auto present = static_cast<std::uint16_t>(kAllSensors & ~mMissingMask);
    orv::OrvMeasurementResult result;
    result.valid = true;
    result.hasMasks = true;
    result.measurementWord = index;
    result.sendMask = step.activeMask & present;
    result.receiveMask = step.passiveMask & present;

    SeededRandom random(mSeed, index);
    for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
        const orv::OrvSensorRole role = result.role(id);
        if (role == orv::OrvSensorRole::NotInvolved)
            continue;
        const Hearing hearing =
            role == orv::OrvSensorRole::Sending ? Hearing::Active : Hearing::Passive;
        auto echoes = echoesOfScene(mScene, state, result.sendMask, id, seconds);
        if (mScene.isNoisy())
            disturb(echoes, id, hearing, result.sendMask, random);
        auto kept = aboveThreshold(std::move(echoes), state.thresholds[id], hearing);
        if (!kept.empty())
            result.echoes[id] = std::move(kept);
    }
    return result;
}

} // namespace ecusim
