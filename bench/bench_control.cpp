#include "bench/AnsweringPeer.h"
#include "ecu/configuration/EcuConfiguration.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "orv_decoder/constants.h"
#include "tools/ecu_simulator/EcuCommands.h"

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

namespace {

using Frame = AnsweringPeer::Frame;
using orv::ControlCommand;

constexpr auto kRead = static_cast<std::uint8_t>(orv::ControlAccess::Read);

Frame firmwareRequest()
{
    return orv::encodeRequest(ControlCommand::FirmwareVersion, {});
}

// What reads all settings, in the order of the program: fourteen exchanges.
std::vector<Frame> settingsRequests()
{
    std::vector<Frame> requests;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor)
        requests.push_back(
            orv::encodeRequest(ControlCommand::Thresholds, std::array{kRead, sensor}));
    requests.push_back(orv::encodeRequest(ControlCommand::MeasurementSequence, std::array{kRead}));
    requests.push_back(orv::encodeRequest(ControlCommand::SensorPositions, std::array{kRead}));
    return requests;
}

AnsweringPeer::Replies repliesOfAnEcu()
{
    ecusim::EcuState ecu = ecusim::defaultEcuState();
    ecusim::EcuCommands commands(ecu, {});
    AnsweringPeer::Replies replies;
    replies.emplace_back(firmwareRequest(), commands.answer(firmwareRequest(), 0).reply);
    for (const Frame& request : settingsRequests())
        replies.emplace_back(request, commands.answer(request, 0).reply);
    return replies;
}

// The fastest one is the one that nothing else disturbed.
void manyShortRepetitions(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Iterations(200)->Repetitions(50)->UseRealTime();
}

void pingPong(benchmark::State& state, const std::vector<Frame>& requests)
{
    const AnsweringPeer peer(repliesOfAnEcu());
    BareSocket socket;
    std::array<std::uint8_t, orv::kMaxDatagramSize> buffer;
    for (auto _ : state) {
        for (const Frame& request : requests) {
            socket.send(request, peer.address());
            benchmark::DoNotOptimize(socket.receive(buffer));
        }
    }
}
BENCHMARK_CAPTURE(pingPong, one, {firmwareRequest()})->Apply(manyShortRepetitions);
BENCHMARK_CAPTURE(pingPong, fourteen, settingsRequests())->Apply(manyShortRepetitions);

// The link to the peer as the program has it, after its first exchange.
class Link
{
public:
    Link() { mClient.readFirmwareVersion(mFirmware); }

    bool readFirmware() { return mClient.readFirmwareVersion(mFirmware); }

    bool readSettings() { return mConfiguration.readFrom(mClient).isEmpty(); }

private:
    const AnsweringPeer mPeer{repliesOfAnEcu()};
    orv::OrvCtrlSocket mSocket{"127.0.0.1", mPeer.port()};
    orv::OrvCtrlClient mClient{&mSocket};
    orv::FirmwareVersion mFirmware;
    EcuConfiguration mConfiguration;
};

void exchanges(benchmark::State& state, bool (Link::*exchange)())
{
    Link link;
    for (auto _ : state) {
        if (!(link.*exchange)())
            state.SkipWithError("an exchange failed");
    }
}
BENCHMARK_CAPTURE(exchanges, firmware, &Link::readFirmware)->Apply(manyShortRepetitions);
BENCHMARK_CAPTURE(exchanges, allSettings, &Link::readSettings)->Apply(manyShortRepetitions);

} // namespace

BENCHMARK_MAIN();
