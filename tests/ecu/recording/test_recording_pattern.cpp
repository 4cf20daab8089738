#include "ecu/recording/recording_pattern.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <vector>

namespace {

using Bytes = std::vector<int>;

Bytes patternBytes(std::uint32_t position, std::uint8_t left = 0, std::uint8_t right = 2)
{
    const orv::ThresholdEntries entries = recordingPattern(position, left, right);
    return {entries.begin(), entries.end()};
}

// Tenths of a microsecond, by time index.
constexpr std::array<int, 8> kDurations = {2048, 4096, 8192, 12288, 16384, 26624, 40960, 61440};

int durationOf(int entry)
{
    return kDurations.at(static_cast<std::size_t>(entry >> 5));
}

int levelOf(int entry)
{
    return entry & 0x1F;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<int>)

class RecordingPatternTest : public QObject
{
    Q_OBJECT

private slots:
    void patternsHaveTheseBytes_data()
    {
        QTest::addColumn<unsigned>("position");
        QTest::addColumn<Bytes>("bytes");
        QTest::newRow("start") << 0U << Bytes{0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF,
                                              0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QTest::newRow("one delay segment")
            << 1U << Bytes{0x1F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QTest::newRow("three delay segments")
            << 18U << Bytes{0x7F, 0x7F, 0x7F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QTest::newRow("a lead and no delay")
            << 30U << Bytes{0xFF, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QTest::newRow("two leads, two delay segments")
            << 88U << Bytes{0xFF, 0xFF, 0xDF, 0x9F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
        QTest::newRow("end") << 145U << Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xDF, 0x5F,
                                              0x1F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF};
        QTest::newRow("the last jump over the end")
            << 149U
            << Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xDF, 0x9F, 0x1F, 0x00, 0x8F, 0x5B, 0xFF, 0xFF};
        QTest::newRow("beyond every sweep, cut")
            << 330U
            << Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
        QTest::newRow("beyond every sweep") << 360U << Bytes(12, 0xFF);
    }
    void patternsHaveTheseBytes()
    {
        QFETCH(unsigned, position);
        QTEST(patternBytes(position), "bytes");
    }

    void delaysAreSpelledByTheseSegmentsInThisOrder()
    {
        const std::vector<Bytes> rows = {
            {},        {0},       {1},       {0, 1},    {2},    {2, 0},   {3},    {3, 0},
            {4},       {4, 0},    {4, 1},    {4, 1, 0}, {4, 2}, {5},      {5, 0}, {5, 1},
            {4, 4},    {5, 2},    {3, 3, 3}, {5, 3},    {6},    {6, 0},   {6, 1}, {6, 1, 0},
            {6, 1, 1}, {6, 2, 0}, {6, 3},    {6, 3, 0}, {6, 4}, {6, 4, 0}};
        QCOMPARE(rows.size(), std::size_t{30});
        for (std::uint32_t row = 0; row < 30; ++row) {
            const auto segments = delaySegments(row);
            QCOMPARE(Bytes(segments.begin(), segments.end()), rows[row]);
        }
    }

    void windowOpensAtItsPositionToTheMicrosecond()
    {
        for (unsigned position = 0; position <= 145; ++position) {
            const Bytes bytes = patternBytes(position);
            int opensAt = 0;
            std::size_t k = 0;
            for (; levelOf(bytes.at(k)) == 31; ++k)
                opensAt += durationOf(bytes[k]);
            QCOMPARE(opensAt, static_cast<int>(position) * 2048);
            QCOMPARE(levelOf(bytes.at(k)), 0);
        }
    }

    void openWindowIsFollowedByAHalfAndAHighSegmentAndThenBlocked()
    {
        for (unsigned position = 0; position <= 145; ++position) {
            Bytes levels;
            for (const int entry : patternBytes(position))
                levels.push_back(levelOf(entry));
            const auto open = std::find(levels.begin(), levels.end(), 0);
            QVERIFY(std::distance(open, levels.end()) >= 3);
            QCOMPARE(Bytes(open, open + 3), Bytes({0, 15, 27}));
            QVERIFY(std::all_of(open + 3, levels.end(), [](int level) { return level == 31; }));
        }
    }

    void spinBoxesSetTheDurationsOfTheWindowAndOfTheHighSegment()
    {
        for (int index = 0; index < 8; ++index) {
            const auto time = static_cast<std::uint8_t>(index);
            QCOMPARE(patternBytes(0, time, 0).at(0), index << 5);
            QCOMPARE(patternBytes(0, 0, time).at(2), index << 5 | 27);
        }
    }

    void positionsOutOfReachAreCutAtTheTwelfthEntry_data()
    {
        QTest::addColumn<unsigned>("position");
        QTest::addColumn<Bytes>("lastThree");
        QTest::newRow("high segment cut") << 300U << Bytes{0xFF, 0x00, 0x8F};
        QTest::newRow("window cut") << 359U << Bytes{0xFF, 0xFF, 0xDF};
        QTest::newRow("leads alone") << 360U << Bytes{0xFF, 0xFF, 0xFF};
        QTest::newRow("largest number") << 0xFFFFFFFFU << Bytes{0xFF, 0xFF, 0xFF};
    }
    void positionsOutOfReachAreCutAtTheTwelfthEntry()
    {
        QFETCH(unsigned, position);
        const Bytes bytes = patternBytes(position);
        QTEST(Bytes(bytes.end() - 3, bytes.end()), "lastThree");
    }

    void delayRowsAreBounded()
    {
        QCOMPARE(delaySegments(0).size(), std::size_t{0});
        QCOMPARE(delaySegments(1).size(), std::size_t{1});
        QCOMPARE(delaySegments(29).size(), std::size_t{3});
        QCOMPARE(delaySegments(30).size(), std::size_t{0});
        QCOMPARE(delaySegments(0xFFFFFFFF).size(), std::size_t{0});
    }
};

QTEST_APPLESS_MAIN(RecordingPatternTest)
#include "test_recording_pattern.moc"
