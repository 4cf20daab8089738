#include "tests/support/EcuAccess.h"
#include "tools/tarvioctl/configuration_diff.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using tarvioctl::positionChanges;
using tarvioctl::sequenceChanges;
using tarvioctl::thresholdChanges;

// The configuration of seed 1 with one thing changed.
EcuConfiguration changed(const std::function<void(EcuConfiguration&)>& change)
{
    EcuConfiguration configuration = configurationOfSeed(1);
    change(configuration);
    return configuration;
}

QString onlyLine(const QStringList& lines)
{
    return lines.size() == 1 ? lines.first() : QStringLiteral("%1 lines").arg(lines.size());
}

TEST(ConfigurationDiff, EqualConfigurationsHaveNoChanges)
{
    const EcuConfiguration one = configurationOfSeed(1);
    EXPECT_TRUE(thresholdChanges(one, one).isEmpty());
    EXPECT_TRUE(sequenceChanges(one, one).isEmpty());
    EXPECT_TRUE(positionChanges(one, one).isEmpty());
}

TEST(ConfigurationDiff, ThresholdIsToldInTimeAndLevel)
{
    const EcuConfiguration from = changed([](auto& c) { c.thresholds[2].entries[4] = 0x6C; });
    const EcuConfiguration to = changed([](auto& c) { c.thresholds[2].entries[4] = 0x8A; });
    EXPECT_EQ(onlyLine(thresholdChanges(from, to)),
              QStringLiteral("sensor 3, threshold 4: 1.23 ms 0.0610 → 1.64 ms 0.0490"));
}

TEST(ConfigurationDiff, ScaleIsToldAsTheListOffersIt)
{
    const EcuConfiguration from = changed([](auto& c) { c.thresholds[11].scale = 1; });
    const EcuConfiguration to = changed([](auto& c) { c.thresholds[11].scale = 4; });
    EXPECT_EQ(onlyLine(thresholdChanges(from, to)),
              QStringLiteral("sensor 12, scale: 62.5% → index 4"));
}

TEST(ConfigurationDiff, StepIsToldInTheWordsOfTheTable)
{
    const EcuConfiguration from = changed([](auto& c) {
        c.sequence[1] = {.activeMask = 0b100, .passiveMask = 0b111, .modulation = 0};
    });
    const EcuConfiguration to = changed([](auto& c) {
        c.sequence[1] = {.activeMask = 0b000, .passiveMask = 0b110, .modulation = 1, .code = 0};
    });
    EXPECT_EQ(sequenceChanges(from, to),
              (QStringList{"step 2, mode: AM → BPSK0", "step 2, sensor 1: Passive → Disabled",
                           "step 2, sensor 3: Active → Passive"}));
}

TEST(ConfigurationDiff, BitsThatTheTableDoesNotShowAreToldAsTheyAre)
{
    const auto line = [](const std::function<void(orv::MseqStep&)>& change) {
        const EcuConfiguration to = changed([&change](auto& c) { change(c.sequence[0]); });
        return onlyLine(sequenceChanges(
            changed([](auto& c) { c.sequence[0] = {.activeMask = 1, .modulation = 1}; }), to));
    };
    EXPECT_EQ(line([](auto& step) { step = {.activeMask = 0x8001, .modulation = 1}; }),
              QStringLiteral("step 1, send mask: 0x0001 → 0x8001"));
    EXPECT_EQ(line([](auto& step) { step = {.activeMask = 1, .passiveMask = 1, .modulation = 1}; }),
              QStringLiteral("step 1, listen mask: 0x0000 → 0x0001"));
    EXPECT_EQ(line([](auto& step) { step = {.activeMask = 1, .modulation = 65535}; }),
              QStringLiteral("step 1, modulation: 1 → 65535"));
    EXPECT_EQ(line([](auto& step) { step = {.activeMask = 1, .modulation = 1, .fifthValue = 7}; }),
              QStringLiteral("step 1, fifth word: 0 → 7"));
}

TEST(ConfigurationDiff, SecondPhaseCodeIsToldWhereTheModeIsTheSame)
{
    const auto withCode = [](std::uint16_t code) {
        return changed([code](auto& c) { c.sequence[0] = {.modulation = 1, .code = code}; });
    };
    EXPECT_EQ(onlyLine(sequenceChanges(withCode(1), withCode(2))),
              QStringLiteral("step 1, phase code: 1 → 2"));
}

TEST(ConfigurationDiff, LongerSequenceIsOneLine)
{
    const EcuConfiguration to = changed([](auto& c) { c.sequence.resize(5); });
    EXPECT_EQ(onlyLine(sequenceChanges(configurationOfSeed(1), to)),
              QStringLiteral("sequence: 3 steps → 5 steps"));
}

TEST(ConfigurationDiff, PositionIsToldInMillimetresAndDegrees)
{
    const EcuConfiguration from =
        changed([](auto& c) { c.positions[0] = {.x = -5, .yaw = 16384}; });
    const EcuConfiguration to =
        changed([](auto& c) { c.positions[0] = {.x = 5, .y = -1, .height = 400, .yaw = 32768}; });
    EXPECT_EQ(positionChanges(from, to),
              (QStringList{"sensor 1, x: -5 mm → 5 mm", "sensor 1, y: 0 mm → -1 mm",
                           "sensor 1, height: 0 mm → 400 mm", "sensor 1, yaw: 90.00° → 180.00°"}));
}

TEST(ConfigurationDiff, AnglesThatReadTheSameAreToldInTheirUnits)
{
    const EcuConfiguration from = changed([](auto& c) { c.positions[5] = {.roll = 2}; });
    const EcuConfiguration to = changed([](auto& c) { c.positions[5] = {.roll = 3}; });
    EXPECT_EQ(onlyLine(positionChanges(from, to)),
              QStringLiteral("sensor 6, roll: 0.01° (2 of 65536) → 0.01° (3 of 65536)"));
}

} // namespace
