#include "ecu/configuration/EcuConfiguration.h"
#include "fuzz/InputScript.h"
#include "fuzz/SentRecords.h"
#include "fuzz/ecu_properties.h"
#include "tests/ecu/link/LinkFixture.h"

#include <algorithm>
#include <array>
#include <unistd.h>
#include <utility>

namespace {

using Bytes = std::vector<std::uint8_t>;
using State = LinkSupervisor::State;

constexpr int kMaxEvents = 60;

/// How the ECU treats the requests, by the numbers in the input.
enum class Manner : std::uint8_t {
    Silent,
    Answering,
    AnsweringTwice,
    Refusing,
    WrongCommand,
    WrongChecksum,
    AnyBytes,
    StrayFirst,
    kCount,
};

constexpr Bytes::value_type kFirmware = 2;

Bytes answerTo(const orv::ControlRequest& request)
{
    return orv::encodeReply(request.code, Bytes{kFirmware, 14, 0}, 0);
}

// Below those that the system picks: in a million links it would pick one twice, or give a port to
// another socket while its stream is elsewhere.
std::pair<std::uint16_t, std::uint16_t> portsOfThisProcess()
{
    const auto first = static_cast<std::uint16_t>(20'000 + 2 * (::getpid() % 5000));
    return {first, static_cast<std::uint16_t>(first + 1)};
}

/// A supervised link, and what is noticed of it.
class WatchedLink
{
public:
    explicit WatchedLink(std::span<const std::uint8_t> bytes) : mScript(bytes)
    {
        const auto [receivePort, freespacePort] = portsOfThisProcess();
        mFixture.receivePort = receivePort;
        mFixture.freespacePort = freespacePort;
        mFixture.connectLink();
        mFixture.ecu.setHandler([this](const auto& request) { return reply(request); });
        watch();
        mFixture.supervisor->start();
    }

    bool holds()
    {
        for (int i = 0; i < kMaxEvents && !mScript.isAtEnd() && mHolds; ++i)
            happen();
        return mHolds && recovers();
    }

private:
    void watch();
    void happen();
    void stream();
    void operate();
    void reconnect();
    std::optional<Bytes> reply(const orv::ControlRequest& request);
    bool recovers();
    bool bringsItsOwnData();

    void note(bool holds) { mHolds &= holds; }

    InputScript mScript;
    LinkFixture mFixture;
    LoopbackPeer mNobody; // an address at which no ECU is
    Manner mManner = Manner::Silent;
    Bytes mOddReply;
    SentRecords<orv::OrvMeasurementResult> mMeasurements;
    SentRecords<orv::OrvFreespacePackage> mFreespaces;
    State mToldState = State::Disconnected;
    bool mIsFound = false;
    int mFirstContacts = 0;
    bool mHolds = true;
};

void WatchedLink::watch()
{
    const LinkSupervisor* supervisor = mFixture.supervisor.get();
    QObject::connect(supervisor, &LinkSupervisor::measurementReceived, supervisor,
                     [this](const auto& result) { note(mMeasurements.takes(result)); });
    QObject::connect(supervisor, &LinkSupervisor::freespaceReceived, supervisor,
                     [this](const auto& package) { note(mFreespaces.takes(package)); });
    QObject::connect(supervisor, &LinkSupervisor::stateChanged, supervisor, [=, this](State state) {
        note(state == supervisor->state() && state != std::exchange(mToldState, state));
    });
    QObject::connect(supervisor, &LinkSupervisor::found, supervisor, [this] { mIsFound = true; });
    // As the window does, which blocks inside the signal.
    QObject::connect(supervisor, &LinkSupervisor::firstContact, supervisor, [this] {
        note(mIsFound && ++mFirstContacts == 1);
        EcuConfiguration().readFrom(mFixture.link->client());
    });
}

std::optional<Bytes> WatchedLink::reply(const orv::ControlRequest& request)
{
    Bytes answer = answerTo(request);
    switch (mManner) {
    case Manner::Silent:
        return std::nullopt;
    case Manner::AnsweringTwice:
        mFixture.ecu.replyAgain(answer);
        return answer;
    case Manner::Refusing:
        return orv::encodeReply(request.code, {}, 5);
    case Manner::WrongCommand:
        return orv::encodeReply(static_cast<std::uint8_t>(request.code + 1), {}, 0);
    case Manner::WrongChecksum:
        answer.back() ^= 1;
        return answer;
    case Manner::AnyBytes:
        return mOddReply;
    case Manner::StrayFirst:
        mFixture.ecu.replyAgain(mOddReply);
        return answer;
    default:
        return answer;
    }
}

void WatchedLink::happen()
{
    switch (mScript.below(8)) {
    case 0:
        mManner = Manner{static_cast<std::uint8_t>(mScript.below(unsigned(Manner::kCount)))};
        break;
    case 1:
        mOddReply = mScript.block();
        break;
    case 2:
        stream();
        break;
    case 3:
        mFixture.supervisor->setCapture(mScript.flag());
        break;
    case 4:
        reconnect();
        break;
    case 5:
        operate();
        break;
    case 6:
        if (!mFixture.ecu.requests().empty())
            mFixture.ecu.replyAgain(mOddReply);
        break;
    default:
        mFixture.pass(mScript.word() % 4000);
    }
}

// Either stream may have taken over the other's port.
void WatchedLink::stream()
{
    const bool isMeasurement = mScript.flag();
    Bytes datagram = mScript.block();
    datagram.resize(std::min(datagram.size(), orv::kMaxDatagramSize));
    mMeasurements.send(datagram);
    mFreespaces.send(datagram);
    mFixture.ecu.stream(isMeasurement ? mFixture.receivePort : mFixture.freespacePort, datagram);
}

void WatchedLink::operate()
{
    switch (mScript.below(4)) {
    case 0:
        mFixture.supervisor->poll();
        break;
    case 1:
        mFixture.supervisor->judgeSilence();
        break;
    case 2:
        mFixture.supervisor->startPolling();
        break;
    default:
        orv::SensorThreshold threshold;
        mFixture.link->client().readThresholds(mScript.byte(), threshold);
    }
}

void WatchedLink::reconnect()
{
    LinkSettings network = mFixture.network();
    switch (mScript.below(4)) {
    case 0:
        network.controlPort = mNobody.port();
        break;
    case 1:
        network.receivePort = network.freespacePort; // one of them has none then
        break;
    case 2:
        network.ecuIp.clear();
        network.freespacePort = 0;
        break;
    default:
        break;
    }
    mFixture.supervisor->reconnect(network);
}

// Whatever there was: an ECU that answers is found, one that streams is heard.
bool WatchedLink::recovers()
{
    mManner = Manner::Answering;
    mFixture.supervisor->setCapture(false);
    mFixture.supervisor->reconnect(mFixture.network());
    // What waits is drained by the first judgement, and is a sign of life until the second.
    for (int i = 0; i < 3; ++i)
        mFixture.pass(3000);
    if (mFixture.supervisor->state() != State::OnlineWithoutLiveData)
        return false;
    mFixture.supervisor->setCapture(true);
    const Bytes result{9, 0, 0, 0, 1, 0, 2, 0, 0};
    mMeasurements.send(result);
    mFixture.ecu.stream(mFixture.receivePort, result);
    mFixture.pass(11);
    return mHolds && mFixture.supervisor->state() == State::Connected && bringsItsOwnData();
}

bool WatchedLink::bringsItsOwnData()
{
    orv::FirmwareVersion version;
    return mFixture.supervisor->portProblems().empty() &&
           mFixture.link->client().readFirmwareVersion(version) &&
           version.numbers == std::array<std::uint8_t, 3>{kFirmware, 14, 0} && mFirstContacts == 1;
}

} // namespace

bool linkSupervisorHolds(std::span<const std::uint8_t> bytes)
{
    return WatchedLink(bytes).holds();
}
