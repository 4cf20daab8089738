#include "orv_decoder/Crc8.h"
#include "tools/ecu_simulator/EcuCommands.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace ecusim;

Bytes framed(Bytes body)
{
    body.push_back(orv::crc8(body));
    return body;
}

/// A simulated ECU on a table: requests without their checksum in, replies without theirs out.
class Ecu
{
public:
    explicit Ecu(const EcuBehaviour& behaviour = {}) : mCommands(mState, behaviour) {}

    Bytes ask(const Bytes& request, std::int64_t nowMs = 0)
    {
        mLast = mCommands.answer(framed(request), nowMs);
        return withoutChecksum(mLast.reply);
    }

    Bytes askRaw(const Bytes& frame)
    {
        mLast = mCommands.answer(frame, 0);
        return withoutChecksum(mLast.reply);
    }

    const EcuAnswer& last() const { return mLast; }
    EcuState& state() { return mState; }
    EcuCommands& commands() { return mCommands; }

private:
    static Bytes withoutChecksum(Bytes reply)
    {
        const std::uint8_t checksum = reply.back();
        reply.pop_back();
        EXPECT_EQ(orv::crc8(reply), checksum);
        return reply;
    }

    EcuState mState = defaultEcuState();
    EcuCommands mCommands;
    EcuAnswer mLast;
};

Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Bytes kStep = {0x01, 0x00, 0x06, 0x00, 0x01, 0x00, 0x00, 0x00, 0x2A, 0x00};
const Bytes kThresholdOf3 = {3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1};

TEST(EcuCommands, firmwareIs2_14_0)
{
    EXPECT_EQ(Ecu().ask({2}), (Bytes{2, 2, 14, 0, 0}));
}

TEST(EcuCommands, writtenSequenceIsReadBack)
{
    Ecu ecu;
    EXPECT_EQ(ecu.ask(Bytes{0, 0, 1} + kStep), (Bytes{0, 0}));
    EXPECT_TRUE(ecu.last().mustKeep);
    EXPECT_EQ(ecu.ask({0, 1}), Bytes({0, 1}) + kStep + Bytes{0});
    EXPECT_FALSE(ecu.last().mustKeep);
}

TEST(EcuCommands, emptySequenceCanBeWritten)
{
    Ecu ecu;
    EXPECT_EQ(ecu.ask({0, 0, 0}), (Bytes{0, 0}));
    EXPECT_EQ(ecu.ask({0, 1}), (Bytes{0, 0, 0}));
}

TEST(EcuCommands, newEcuHasTwelveSteps)
{
    const Bytes reply = Ecu().ask({0, 1});
    ASSERT_EQ(reply.size(), 123U);
    EXPECT_EQ(reply[1], 12);
    // The first sensor sends, its three neighbours listen.
    EXPECT_EQ(Bytes(reply.begin() + 2, reply.begin() + 6), (Bytes{0x01, 0x00, 0x0E, 0x00}));
}

// 75 and 3 degrees: the tool rounds up what is typed and down what it shows.
TEST(EcuCommands, newEcuHoldsTheMountAnglesAsTheToolStoresThem)
{
    const EcuState state = defaultEcuState();
    EXPECT_EQ(state.positions[0].yaw, 13654);
    EXPECT_EQ(state.positions[0].pitch, 547);
    EXPECT_EQ(state.positions[0].roll, 0);
}

TEST(EcuCommands, writtenThresholdsAreReadBack)
{
    Ecu ecu;
    EXPECT_EQ(ecu.ask(Bytes{1, 0} + kThresholdOf3), (Bytes{1, 0}));
    EXPECT_TRUE(ecu.last().mustKeep);
    EXPECT_EQ(ecu.ask({1, 1, 3}), Bytes{1} + kThresholdOf3 + Bytes{0});
}

TEST(EcuCommands, temporaryThresholdsAreUsedButNotKept)
{
    Ecu ecu;
    const orv::SensorThreshold before = ecu.state().keptThresholds[3];
    EXPECT_EQ(ecu.ask(Bytes{1, 2} + kThresholdOf3), (Bytes{1, 0}));
    EXPECT_FALSE(ecu.last().mustKeep);
    EXPECT_EQ(ecu.ask({1, 1, 3}), Bytes{1} + kThresholdOf3 + Bytes{0});
    EXPECT_EQ(ecu.state().keptThresholds[3], before);
}

TEST(EcuCommands, writtenNetworkSettingsAreAnsweredAndKept)
{
    const Bytes settings = {127, 0,   0, 2, 255, 255,  255,  0,    127,  0,    0,
                            1,   127, 0, 0, 3,   0x51, 0xC3, 0x52, 0xC3, 0x00, 0x00};
    Ecu ecu;
    EXPECT_EQ(ecu.ask(Bytes{3, 0} + settings), (Bytes{3, 0}));
    EXPECT_EQ(ecu.ask({3, 1}), Bytes{3} + settings + Bytes{0});
    ASSERT_TRUE(ecu.state().keptNetwork);
    EXPECT_EQ(ecu.state().keptNetwork->controlPort, 50002);
}

TEST(EcuCommands, writtenPositionsAreReadBack)
{
    Bytes positions(144);
    for (std::size_t i = 0; i < positions.size(); ++i)
        positions[i] = static_cast<std::uint8_t>(i);
    Ecu ecu;
    EXPECT_EQ(ecu.ask(Bytes{4, 0} + positions), (Bytes{4, 0}));
    EXPECT_EQ(ecu.ask({4, 1}), Bytes{4} + positions + Bytes{0});
    EXPECT_EQ(ecu.state().positions[0].y, 0x0302);
}

struct BadRequest
{
    const char* name;
    Bytes request;
    Bytes reply;
};

void PrintTo(const BadRequest& row, std::ostream* stream)
{
    *stream << row.name;
}

class BadRequests : public testing::TestWithParam<BadRequest>
{};

TEST_P(BadRequests, areRefusedAndChangeNothing)
{
    Ecu ecu;
    const Bytes sequence = ecu.ask({0, 1});
    const Bytes threshold = ecu.ask({1, 1, 0});
    const Bytes network = ecu.ask({3, 1});
    const Bytes positions = ecu.ask({4, 1});
    EXPECT_EQ(ecu.ask(GetParam().request), GetParam().reply);
    EXPECT_FALSE(ecu.last().mustKeep);
    EXPECT_EQ(ecu.ask({0, 1}), sequence);
    EXPECT_EQ(ecu.ask({1, 1, 0}), threshold);
    EXPECT_EQ(ecu.ask({3, 1}), network);
    EXPECT_EQ(ecu.ask({4, 1}), positions);
}

INSTANTIATE_TEST_SUITE_P(
    EcuCommands, BadRequests,
    testing::Values(BadRequest{"unknown code", {6, 1}, {6, 2}},
                    BadRequest{"code 255", {255}, {255, 2}},
                    BadRequest{"sequence without access", {0}, {0, 4}},
                    BadRequest{"sequence with access 2", {0, 2, 0}, {0, 4}},
                    BadRequest{"sequence read with a tail", {0, 1, 0}, {0, 3}},
                    BadRequest{"sequence write without count", {0, 0}, {0, 3}},
                    BadRequest{"13 steps", Bytes{0, 0, 13} + Bytes(130), {0, 5}},
                    BadRequest{"a step one byte short", Bytes{0, 0, 1} + Bytes(9), {0, 3}},
                    BadRequest{"a step one byte long", Bytes{0, 0, 1} + Bytes(11), {0, 3}},
                    BadRequest{"thresholds without access", {1}, {1, 4}},
                    BadRequest{"thresholds with access 3", Bytes{1, 3} + Bytes(14), {1, 4}},
                    BadRequest{"thresholds read without sensor", {1, 1}, {1, 3}},
                    BadRequest{"thresholds of sensor 12", {1, 1, 12}, {1, 5}},
                    BadRequest{"thresholds one byte short", Bytes{1, 0} + Bytes(13), {1, 3}},
                    BadRequest{
                        "thresholds written to sensor 12", Bytes{1, 0, 12} + Bytes(13), {1, 5}},
                    BadRequest{"threshold scale 5", Bytes{1, 0} + Bytes(13) + Bytes{5}, {1, 5}},
                    BadRequest{"temporary scale 255", Bytes{1, 2} + Bytes(13) + Bytes{255}, {1, 5}},
                    BadRequest{"firmware with a payload", {2, 1}, {2, 3}},
                    BadRequest{"network without access", {3}, {3, 4}},
                    BadRequest{"network 21 bytes", Bytes{3, 0} + Bytes(21), {3, 3}},
                    BadRequest{"network 23 bytes", Bytes{3, 0} + Bytes(23), {3, 3}},
                    BadRequest{"positions with access 2", Bytes{4, 2} + Bytes(144), {4, 4}},
                    BadRequest{"positions 143 bytes", Bytes{4, 0} + Bytes(143), {4, 3}},
                    BadRequest{"positions of 11 sensors", Bytes{4, 0} + Bytes(132), {4, 3}},
                    BadRequest{"calibration without access", {5}, {5, 4}},
                    BadRequest{"calibration of sensor 12", {5, 0, 12}, {5, 5}},
                    BadRequest{"calibration of sensor 254", {5, 0, 254}, {5, 5}},
                    BadRequest{"calibration without sensor", {5, 0}, {5, 3}},
                    BadRequest{"calibration state with a tail", {5, 1, 0}, {5, 3}}));

TEST(EcuCommands, thresholdScaleFourIsTaken)
{
    EXPECT_EQ(Ecu().ask(Bytes{1, 0} + Bytes(13) + Bytes{4}), (Bytes{1, 0}));
}

TEST(EcuCommands, wrongChecksumIsAnsweredWithTheCode)
{
    EXPECT_EQ(Ecu().askRaw({2, 0x00}), (Bytes{2, 1}));
}

TEST(EcuCommands, frameWithoutCodeIsAnsweredWithCodeZero)
{
    EXPECT_EQ(Ecu().askRaw({}), (Bytes{0, 1}));
    EXPECT_EQ(Ecu().askRaw({0x33}), (Bytes{0, 1}));
}

TEST(EcuCommands, everyCutRequestIsRefused)
{
    const Bytes whole = framed(Bytes{1, 0} + kThresholdOf3);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Ecu ecu;
        EXPECT_NE(ecu.askRaw(Bytes(whole.begin(), whole.begin() + static_cast<long>(length)))[1], 0)
            << length;
    }
}

TEST(EcuCommands, forcedStatusRefusesThatCommandAlone)
{
    EcuBehaviour behaviour;
    behaviour.forcedStatus[4] = 9;
    Ecu ecu(behaviour);
    EXPECT_EQ(ecu.ask(Bytes{4, 0} + Bytes(144)), (Bytes{4, 9}));
    EXPECT_EQ(ecu.state().positions, defaultEcuState().positions);
    EXPECT_EQ(ecu.ask({2}), (Bytes{2, 2, 14, 0, 0}));
}

TEST(EcuCommands, summaryNamesRequestAndOutcome)
{
    Ecu ecu;
    ecu.ask(Bytes{1, 0} + kThresholdOf3);
    EXPECT_EQ(ecu.last().summary, "write thresholds of sensor 4, ok");
    ecu.ask({1, 1, 12});
    EXPECT_EQ(ecu.last().summary, "read thresholds of sensor 13, status 5 (wrong value)");
    ecu.ask({5, 0, 255});
    EXPECT_EQ(ecu.last().summary, "start auto calibration of all sensors, ok");
    ecu.ask({9});
    EXPECT_EQ(ecu.last().summary, "command 9, status 2 (unknown command)");
}

TEST(Calibration, runsForItsTimeAndThenSetsThresholds)
{
    Ecu ecu;
    const orv::SensorThreshold before = ecu.state().thresholds[4];
    EXPECT_EQ(ecu.ask({5, 1}, 0), (Bytes{5, 0, 0}));
    EXPECT_EQ(ecu.ask({5, 0, 4}, 1000), (Bytes{5, 0}));
    EXPECT_EQ(ecu.ask({5, 1}, 3999), (Bytes{5, 1, 0}));
    EXPECT_EQ(ecu.state().thresholds[4], before);
    EXPECT_EQ(ecu.ask({5, 1}, 4000), (Bytes{5, 0, 0}));
    EXPECT_TRUE(ecu.last().mustKeep);
    EXPECT_NE(ecu.state().thresholds[4], before);
    EXPECT_EQ(ecu.state().thresholds[4], ecu.state().keptThresholds[4]);
    EXPECT_EQ(ecu.state().thresholds[5].entries, defaultEcuState().thresholds[5].entries);
}

TEST(Calibration, endsWithoutBeingAsked)
{
    Ecu ecu;
    ecu.ask({5, 0, 255}, 0);
    EXPECT_FALSE(ecu.commands().advance(2999));
    EXPECT_TRUE(ecu.commands().advance(3000));
    EXPECT_FALSE(ecu.commands().advance(3001));
}

TEST(Calibration, canBeAborted)
{
    EcuBehaviour behaviour;
    behaviour.calibration = CalibrationOutcome::Abort;
    Ecu ecu(behaviour);
    ecu.ask({5, 0, 255}, 0);
    EXPECT_EQ(ecu.ask({5, 1}, 2999), (Bytes{5, 1, 0}));
    EXPECT_EQ(ecu.ask({5, 1}, 3000), (Bytes{5, 0xFF, 0}));
    EXPECT_EQ(ecu.state().thresholds, defaultEcuState().thresholds);
}

TEST(Calibration, canRunForEver)
{
    EcuBehaviour behaviour;
    behaviour.calibration = CalibrationOutcome::Never;
    Ecu ecu(behaviour);
    ecu.ask({5, 0, 0}, 0);
    EXPECT_EQ(ecu.ask({5, 1}, 1'000'000), (Bytes{5, 1, 0}));
}

TEST(Calibration, canFailToTellItsState)
{
    EcuBehaviour behaviour;
    behaviour.calibration = CalibrationOutcome::Fail;
    Ecu ecu(behaviour);
    EXPECT_EQ(ecu.ask({5, 0, 0}, 0), (Bytes{5, 0}));
    EXPECT_EQ(ecu.ask({5, 1}, 0), (Bytes{5, 6}));
}

TEST(Calibration, isAbortedForASensorThatIsMissing)
{
    EcuBehaviour behaviour;
    behaviour.missingMask = 0x0008;
    Ecu ecu(behaviour);
    ecu.ask({5, 0, 3}, 0);
    EXPECT_EQ(ecu.ask({5, 1}, 3000), (Bytes{5, 0xFF, 0}));
}

} // namespace
