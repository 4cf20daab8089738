#include "views/thresholds/OrvgThreshItemModel.h"

#include <QAbstractItemModelTester>
#include <QPoint>
#include <QSignalSpy>
#include <QtTest>

namespace {

// A record of sensor 3 whose entries all differ.
orv::SensorThreshold aRecord()
{
    return {.valid = true,
            .sensorId = 3,
            .entries = {0x00, 0xFF, 0x21, 0x42, 0x63, 0x84, 0xA5, 0xC6, 0xE7, 0x1F, 0xE0, 0x3A},
            .scale = 1};
}

} // namespace

class ThresholdModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mModel = std::make_unique<OrvgThreshItemModel>();
        mTester = std::make_unique<QAbstractItemModelTester>(
            mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    void cleanup()
    {
        mTester.reset();
        mModel.reset();
    }

    void hasARowForEachSensorAndAColumnForEachSegment()
    {
        QCOMPARE(mModel->rowCount(), 12);
        QCOMPARE(mModel->columnCount(), 12);
    }

    void countsSegmentsFromZeroAndSensorsFromOne()
    {
        QCOMPARE(mModel->headerData(0, Qt::Horizontal).toString(), QString("Thr. 0"));
        QCOMPARE(mModel->headerData(11, Qt::Horizontal).toString(), QString("Thr. 11"));
        QCOMPARE(mModel->headerData(0, Qt::Vertical).toString(), QString("Sensor 1"));
        QCOMPARE(mModel->headerData(11, Qt::Vertical).toString(), QString("Sensor 12"));
    }

    void newRecordsAreInvalidZeroAndAtTheThirdScale()
    {
        for (int sensor = 0; sensor < 12; ++sensor) {
            const orv::SensorThreshold expected{.sensorId = static_cast<std::uint8_t>(sensor),
                                                .scale = 2};
            QCOMPARE(mModel->record(sensor), expected);
            QVERIFY(!mModel->record(sensor).valid);
        }
    }

    void showsTimeAndLevel_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("text");
        QTest::newRow("0x00") << 0 << "0.20ms\n0.0164";
        QTest::newRow("0xFF") << 1 << "6.14ms\n0.4903";
        QTest::newRow("0x21") << 2 << "0.41ms\n0.0183";
        QTest::newRow("0xE0") << 10 << "6.14ms\n0.0164";
    }

    void showsTimeAndLevel()
    {
        QFETCH(int, column);
        mModel->setRecord(aRecord());
        QTEST(mModel->index(3, column).data().toString(), "text");
    }

    void editsTimeAndLevelIndexAsAPoint()
    {
        mModel->setRecord(aRecord());
        QCOMPARE(mModel->index(3, 4).data(Qt::EditRole).toPoint(), QPoint(3, 3));
        QCOMPARE(mModel->index(3, 11).data(Qt::EditRole).toPoint(), QPoint(1, 26));
    }

    void centresItsTexts()
    {
        QCOMPARE(mModel->index(0, 0).data(Qt::TextAlignmentRole).toInt(), int{Qt::AlignCenter});
    }

    void hasNothingForOtherRolesAndIndexes()
    {
        QVERIFY(!mModel->index(0, 0).data(Qt::ToolTipRole).isValid());
        QVERIFY(!mModel->index(0, 0).data(Qt::UserRole).isValid());
        QVERIFY(!mModel->data({}, Qt::DisplayRole).isValid());
    }

    void rowsAndColumnsInsertedBehindHaveNoEntry()
    {
        mModel->insertRow(12);
        mModel->insertColumn(12);
        for (const QModelIndex& index : {mModel->index(12, 0), mModel->index(0, 12)}) {
            QVERIFY(index.isValid());
            QVERIFY(!index.data().isValid());
            QVERIFY(!mModel->setData(index, QPoint(1, 1)));
        }
    }

    void editPacksTheIndexesAndAnnouncesOneCell()
    {
        QSignalSpy changes(mModel.get(), &OrvgThreshItemModel::dataChanged);
        const QModelIndex cell = mModel->index(5, 7);
        QVERIFY(mModel->setData(cell, QPoint(7, 30), Qt::EditRole));
        QCOMPARE(mModel->record(5).entries[7], std::uint8_t{0xFE});
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), cell);
        QCOMPARE(changes[0][1].toModelIndex(), cell);
        QCOMPARE(changes[0][2].value<QVector<int>>(), QVector<int>{Qt::EditRole});
    }

    void editKeepsTheOtherCells()
    {
        mModel->setRecord(aRecord());
        mModel->setData(mModel->index(3, 0), QPoint(1, 1));
        orv::SensorThreshold expected = aRecord();
        expected.entries[0] = 0x21;
        QCOMPARE(mModel->record(3), expected);
    }

    void editIgnoresOtherRoles()
    {
        QSignalSpy changes(mModel.get(), &OrvgThreshItemModel::dataChanged);
        QVERIFY(!mModel->setData(mModel->index(0, 0), QPoint(1, 1), Qt::DisplayRole));
        QVERIFY(!mModel->setData({}, QPoint(1, 1), Qt::EditRole));
        QCOMPARE(mModel->record(0).entries[0], std::uint8_t{0});
        QVERIFY(changes.isEmpty());
    }

    void editKeepsIndexesInsideTheirBits()
    {
        mModel->setData(mModel->index(0, 0), QPoint(8, 33));
        mModel->setData(mModel->index(0, 1), QPoint(-1, -1));
        QCOMPARE(mModel->record(0).entries[0], std::uint8_t{0x01});
        QCOMPARE(mModel->record(0).entries[1], std::uint8_t{0xFF});
    }

    void newRecordAnnouncesItsRow()
    {
        QSignalSpy changes(mModel.get(), &OrvgThreshItemModel::dataChanged);
        mModel->setRecord(aRecord());
        QCOMPARE(mModel->record(3), aRecord());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), mModel->index(3, 0));
        QCOMPARE(changes[0][1].toModelIndex(), mModel->index(3, 11));
    }

    void recordOfAnUnknownSensorIsIgnored()
    {
        QSignalSpy changes(mModel.get(), &OrvgThreshItemModel::dataChanged);
        for (const std::uint8_t id : {std::uint8_t{12}, std::uint8_t{255}}) {
            orv::SensorThreshold record = aRecord();
            record.sensorId = id;
            mModel->setRecord(record);
        }
        QVERIFY(changes.isEmpty());
    }

    void recordThatWasNotReadCompletelyChangesNothing()
    {
        QSignalSpy changes(mModel.get(), &OrvgThreshItemModel::dataChanged);
        orv::SensorThreshold record = aRecord();
        record.valid = false;
        QVERIFY(!mModel->applyRead(record));
        QCOMPARE(mModel->record(3).scale, std::uint8_t{2});
        QVERIFY(changes.isEmpty());
        QVERIFY(mModel->applyRead(aRecord()));
        QCOMPARE(mModel->record(3), aRecord());
    }

    void scaleIsTakenUpToTheFourth_data()
    {
        QTest::addColumn<int>("sensor");
        QTest::addColumn<int>("scale");
        QTest::addColumn<int>("held");
        QTest::newRow("first") << 4 << 0 << 0;
        QTest::newRow("fourth") << 4 << 3 << 3;
        QTest::newRow("fifth") << 4 << 4 << 2;
        QTest::newRow("256") << 4 << 256 << 2;
        QTest::newRow("no choice") << 4 << -1 << 2;
        QTest::newRow("sensor 13") << 12 << 1 << 2;
        QTest::newRow("no sensor") << 255 << 1 << 2;
        QTest::newRow("negative sensor") << -1 << 1 << 2;
    }

    void scaleIsTakenUpToTheFourth()
    {
        QFETCH(int, sensor);
        QFETCH(int, scale);
        mModel->setScale(sensor, scale);
        QTEST(int{mModel->record(sensor).scale}, "held");
    }

private:
    std::unique_ptr<OrvgThreshItemModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

QTEST_MAIN(ThresholdModelTest)
#include "test_threshold_model.moc"
