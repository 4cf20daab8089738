#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"

#include <gtest/gtest.h>

#include <initializer_list>

// Two records are equal when they hold the same: one other value is enough to tell them apart.

namespace {

template<typename Record>
using Change = void (*)(Record&);

template<typename Record>
void expectEachMatters(std::initializer_list<Change<Record>> changes)
{
    int number = 0;
    for (const Change<Record> change : changes) {
        Record record;
        EXPECT_EQ(record, Record());
        change(record);
        EXPECT_NE(record, Record()) << "change " << number++;
        EXPECT_EQ(record, Record(record));
    }
}

TEST(RecordEquality, networkSettings)
{
    using Record = orv::EcuNetworkSettings;
    expectEachMatters<Record>(
        {[](Record& record) { record.ecuIp = 1; }, [](Record& record) { record.subnetMask = 1; },
         [](Record& record) { record.gateway = 1; }, [](Record& record) { record.controlPort = 1; },
         [](Record& record) { record.hostIp = 1; }, [](Record& record) { record.receivePort = 1; },
         [](Record& record) { record.freespacePort = 1; }});
}

TEST(RecordEquality, firmwareVersion)
{
    using Record = orv::FirmwareVersion;
    expectEachMatters<Record>({[](Record& record) { record.numbers.front() = 1; },
                               [](Record& record) { record.numbers.back() = 1; }});
}

TEST(RecordEquality, step)
{
    using Record = orv::MseqStep;
    expectEachMatters<Record>({[](Record& record) { record.activeMask = 1; },
                               [](Record& record) { record.passiveMask = 1; },
                               [](Record& record) { record.modulation = 1; },
                               [](Record& record) { record.code = 1; },
                               [](Record& record) { record.fifthValue = 1; }});
}

TEST(RecordEquality, mountPosition)
{
    using Record = orv::SensorMountPosition;
    expectEachMatters<Record>(
        {[](Record& record) { record.x = 1; }, [](Record& record) { record.y = 1; },
         [](Record& record) { record.height = 1; }, [](Record& record) { record.yaw = 1; },
         [](Record& record) { record.pitch = 1; }, [](Record& record) { record.roll = 1; }});
}

TEST(RecordEquality, planarPosition)
{
    using Record = orv::OrvSensorPosition;
    expectEachMatters<Record>(
        {[](Record& record) { record.leadingWord = 1; }, [](Record& record) { record.x = 1; },
         [](Record& record) { record.y = 1; }, [](Record& record) { record.direction = 1; }});
}

TEST(RecordEquality, threshold)
{
    using Record = orv::SensorThreshold;
    expectEachMatters<Record>({[](Record& record) { record.sensorId = 1; },
                               [](Record& record) { record.entries.back() = 1; },
                               [](Record& record) { record.scale = 1; }});
}

TEST(RecordEquality, echo)
{
    using Record = orv::OrvSensorEcho;
    expectEachMatters<Record>({[](Record& record) { record.magnitude = 1; },
                               [](Record& record) { record.secondValue = 1; },
                               [](Record& record) { record.timeOfFlight = 1; }});
}

TEST(RecordEquality, measurementResult)
{
    using Record = orv::OrvMeasurementResult;
    expectEachMatters<Record>({[](Record& record) { record.measurementWord = 1; },
                               [](Record& record) { record.hasMasks = true; },
                               [](Record& record) { record.sendMask = 1; },
                               [](Record& record) { record.receiveMask = 1; },
                               [](Record& record) { record.echoes[0] = {}; },
                               [](Record& record) { record.echoes[0] = {{.magnitude = 1}}; }});
}

TEST(RecordEquality, distanceItem)
{
    using Record = orv::OrvDistanceItem;
    expectEachMatters<Record>({[](Record& record) { record.mode = 1; },
                               [](Record& record) { record.distanceMm = 1; },
                               [](Record& record) { record.firstPoint.x = 1; },
                               [](Record& record) { record.firstPoint.y = 1; },
                               [](Record& record) { record.secondPoint.x = 1; }});
}

TEST(RecordEquality, freespaceEntry)
{
    using Record = orv::OrvFreespaceEntry;
    expectEachMatters<Record>({[](Record& record) { record.sensorId = 1; },
                               [](Record& record) { record.corners.back().x = 1; },
                               [](Record& record) { record.arcEnds.back().y = 1; },
                               [](Record& record) { record.secondPair.back().x = 1; },
                               [](Record& record) { record.position.y = 1; },
                               [](Record& record) { record.distances.back().mode = 1; }});
}

TEST(RecordEquality, freespacePackage)
{
    using Record = orv::OrvFreespacePackage;
    expectEachMatters<Record>({[](Record& record) { record.entries.resize(1); }});
}

TEST(RecordEquality, entriesOfFreespacePackages)
{
    orv::OrvFreespacePackage package, other;
    package.entries.resize(1);
    other.entries = package.entries;
    EXPECT_EQ(package, other);
    other.entries[0].sensorId = 1;
    EXPECT_NE(package, other);
}

} // namespace
