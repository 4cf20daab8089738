#include "ecu/configuration/SequenceStep.h"

#include <gtest/gtest.h>

TEST(SensorState, sendingBitDecidesWhateverTheListeningBitSays)
{
    const SequenceStep step{.sendMask = 0x0801, .listenMask = 0x0002};
    EXPECT_EQ(stateOf(step, 0), SensorState::Active);
    EXPECT_EQ(stateOf(step, 1), SensorState::Passive);
    EXPECT_EQ(stateOf(step, 2), SensorState::Disabled);
    EXPECT_EQ(stateOf(step, 11), SensorState::Active);
    EXPECT_EQ(stateOf({.sendMask = 1, .listenMask = 1}, 0), SensorState::Active);
}

TEST(SensorState, activeSetsBothBits)
{
    SequenceStep step;
    setState(step, 11, SensorState::Active);
    EXPECT_EQ(step, (SequenceStep{.sendMask = 0x0800, .listenMask = 0x0800}));
}

TEST(SensorState, passiveAfterActiveKeepsListening)
{
    SequenceStep step;
    setState(step, 3, SensorState::Active);
    setState(step, 3, SensorState::Passive);
    EXPECT_EQ(step, (SequenceStep{.sendMask = 0, .listenMask = 0x0008}));
}

TEST(SensorState, disabledClearsItsOwnBitsAlone)
{
    SequenceStep step{.sendMask = 0xFFFF, .listenMask = 0xFFFF, .modulation = 5, .fifthWord = 9};
    setState(step, 0, SensorState::Disabled);
    EXPECT_EQ(step, (SequenceStep{.sendMask = 0xFFFE,
                                  .listenMask = 0xFFFE,
                                  .modulation = 5,
                                  .phaseCode = 0,
                                  .fifthWord = 9}));
}

TEST(StepMode, anyModulationOtherThanZeroIsPhaseShiftKeyed)
{
    EXPECT_EQ(modeOf({}), StepMode::Am);
    EXPECT_EQ(modeOf({.phaseCode = 7}), StepMode::Am);
    EXPECT_EQ(modeOf({.modulation = 1}), StepMode::Bpsk0);
    EXPECT_EQ(modeOf({.modulation = 0x8000, .phaseCode = 1}), StepMode::Bpsk1);
}

TEST(StepMode, bpsk1AndThenAmLeavesAllThreeWordsZero)
{
    SequenceStep step{.sendMask = 3, .listenMask = 7, .fifthWord = 0x1234};
    setMode(step, StepMode::Bpsk1);
    EXPECT_EQ(step, (SequenceStep{.sendMask = 3,
                                  .listenMask = 7,
                                  .modulation = 65535,
                                  .phaseCode = 65535,
                                  .fifthWord = 0}));
    setMode(step, StepMode::Am);
    EXPECT_EQ(step, (SequenceStep{.sendMask = 3, .listenMask = 7}));
}

TEST(StepMode, bpsk0ClearsPhaseCodeAndFifthWord)
{
    SequenceStep step{.modulation = 1, .phaseCode = 5, .fifthWord = 6};
    setMode(step, StepMode::Bpsk0);
    EXPECT_EQ(step, (SequenceStep{.modulation = 65535}));
}

TEST(SequenceStep, recordIsValidAndKeepsAllFiveWords)
{
    const orv::MseqStep record{.valid = false,
                               .activeMask = 1,
                               .passiveMask = 2,
                               .modulation = 3,
                               .code = 4,
                               .fifthValue = 5};
    const SequenceStep step = stepOf(record);
    EXPECT_EQ(step, (SequenceStep{1, 2, 3, 4, 5}));
    const std::vector<std::uint8_t> words = {1, 0, 2, 0, 3, 0, 4, 0, 5, 0};
    EXPECT_EQ(orv::encodeStep(recordOf(step)), words);
    EXPECT_EQ(recordOf(step), orv::decodeStep(words));
    EXPECT_TRUE(recordOf(step).valid);
}
