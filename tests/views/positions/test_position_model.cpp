#include "ecu/configuration/mount_fields.h"
#include "views/positions/OrvgSensorPositionItemModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

class PositionModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mModel = std::make_unique<OrvgSensorPositionItemModel>();
        mTester = std::make_unique<QAbstractItemModelTester>(
            mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    void cleanup()
    {
        mTester.reset();
        mModel.reset();
    }

    void freshTableIsFilledWithZeros()
    {
        QCOMPARE(mModel->rowCount(), 6);
        QCOMPARE(mModel->columnCount(), 12);
        for (int row = 0; row < 6; ++row)
            for (int column = 0; column < 12; ++column)
                QCOMPARE(at(row, column).toDouble(), 0.0);
    }

    void headersNameFieldsAndSensors()
    {
        const QStringList fields = {"x[mm]",    "y[mm]",      "height[mm]",
                                    "yaw[deg]", "pitch[deg]", "roll[deg]"};
        for (int row = 0; row < 6; ++row)
            QCOMPARE(mModel->headerData(row, Qt::Vertical).toString(), fields[row]);
        QCOMPARE(mModel->headerData(0, Qt::Horizontal).toString(), QString("Sen1"));
        QCOMPARE(mModel->headerData(11, Qt::Horizontal).toString(), QString("Sen12"));
    }

    void fieldsAreRowsAndSensorsColumns()
    {
        orv::SensorMountPositions positions;
        positions[4] = {
            .x = -850, .y = 430, .height = 40000, .yaw = 16384, .pitch = 183, .roll = 65535};
        mModel->setPositions(positions);
        QCOMPARE(at(0, 4), QVariant(-850));
        QCOMPARE(at(1, 4), QVariant(430));
        QCOMPARE(at(2, 4), QVariant(40000U));
        QCOMPARE(at(3, 4), QVariant(90.0));
        QCOMPARE(at(4, 4), QVariant(1.0));
        QCOMPARE(at(5, 4), QVariant(359.99));
        QCOMPARE(at(0, 5), QVariant(0));
        QCOMPARE(mModel->positions(), positions);
    }

    void editValueIsTheShownOne()
    {
        orv::SensorMountPositions positions;
        positions[11] = {.x = -32768, .height = 65535, .yaw = 2};
        mModel->setPositions(positions);
        for (int row = 0; row < 6; ++row)
            QCOMPARE(at(row, 11, Qt::EditRole), at(row, 11));
        QCOMPARE(at(3, 11, Qt::EditRole), QVariant(0.01));
    }

    void cellsAreCentredAndHaveNothingElse()
    {
        QCOMPARE(at(2, 3, Qt::TextAlignmentRole).toInt(), 132);
        QVERIFY(!at(2, 3, Qt::ToolTipRole).isValid());
        QVERIFY(!at(2, 3, Qt::BackgroundRole).isValid());
        QVERIFY(!mModel->data({}, Qt::DisplayRole).isValid());
        QVERIFY(!mModel->data({}, Qt::TextAlignmentRole).isValid());
    }

    void editChangesItsOwnFieldAlone_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("stored");
        QTest::newRow("x") << 0 << QVariant(-32768.0) << -32768;
        QTest::newRow("x beyond its range wraps") << 0 << QVariant(32768) << -32768;
        QTest::newRow("y") << 1 << QVariant(32767.0) << 32767;
        QTest::newRow("y is rounded to whole millimetres") << 1 << QVariant(12.6) << 13;
        QTest::newRow("height") << 2 << QVariant(65535.0) << 65535;
        QTest::newRow("yaw") << 3 << QVariant(90.0) << 16384;
        QTest::newRow("full turn") << 3 << QVariant(360.0) << 0;
        QTest::newRow("pitch") << 4 << QVariant(0.01) << 2;
        QTest::newRow("roll") << 5 << QVariant(359.99) << 65535;
    }

    void editChangesItsOwnFieldAlone()
    {
        QFETCH(int, row);
        orv::SensorMountPositions expected = aTable();
        orv::SensorMountPosition& sensor = expected[7];
        QFETCH(int, stored);
        const auto word = static_cast<std::uint16_t>(stored);
        switch (row) {
        case 0:
            sensor.x = static_cast<std::int16_t>(stored);
            break;
        case 1:
            sensor.y = static_cast<std::int16_t>(stored);
            break;
        case 2:
            sensor.height = word;
            break;
        case 3:
            sensor.yaw = word;
            break;
        case 4:
            sensor.pitch = word;
            break;
        case 5:
            sensor.roll = word;
            break;
        }
        mModel->setPositions(aTable());
        QFETCH(QVariant, value);
        QVERIFY(mModel->setData(mModel->index(row, 7), value));
        QCOMPARE(mModel->positions(), expected);
    }

    void editAnnouncesItsCellWithTheEditRole()
    {
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(mModel->setData(mModel->index(3, 7), 90.0));
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), mModel->index(3, 7));
        QCOMPARE(changes[0][1].toModelIndex(), mModel->index(3, 7));
        QCOMPARE(changes[0][2].value<QVector<int>>(), QVector<int>{Qt::EditRole});
    }

    void otherRolesAreAcceptedAndChangeNothing()
    {
        mModel->setPositions(aTable());
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(mModel->setData(mModel->index(0, 0), 5, Qt::DisplayRole));
        QVERIFY(mModel->setData(mModel->index(0, 0), 5, Qt::UserRole));
        QCOMPARE(mModel->positions(), aTable());
        QCOMPARE(changes.size(), 0);
    }

    void cellsBesideTheTableAreRefused()
    {
        QVERIFY(!mModel->setData({}, 5));
        QVERIFY(!mModel->setData({}, 5, Qt::UserRole));
        mModel->insertRow(6);
        mModel->insertColumn(12);
        QVERIFY(!mModel->setData(mModel->index(6, 0), 5));
        QVERIFY(!mModel->setData(mModel->index(0, 12), 5));
        QVERIFY(!at(6, 0).isValid());
        QVERIFY(!at(0, 12).isValid());
        QCOMPARE(mModel->positions(), orv::SensorMountPositions());
    }

    void movedSensorIsAnnouncedByTheThreeCellsThatShowIt()
    {
        mModel->setPositions(aTable());
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        mModel->moveSensor(7, {.leadingWord = 0, .x = 1, .y = 2, .direction = 16384});
        QCOMPARE(announcedCells(changes),
                 (QSet<QPair<int, int>>{{MountX, 7}, {MountY, 7}, {MountYaw, 7}}));
        orv::SensorMountPositions expected = aTable();
        expected[7] = {.x = 1, .y = 2, .height = 300, .yaw = 16384, .pitch = 500, .roll = 600};
        QCOMPARE(mModel->positions(), expected);
    }

    void everyAnnouncementFindsTheWholeMove()
    {
        mModel->setPositions(aTable());
        connect(mModel.get(), &QAbstractItemModel::dataChanged, this, [this] {
            QCOMPARE(at(MountX, 7), QVariant(1));
            QCOMPARE(at(MountYaw, 7), QVariant(90.0));
        });
        mModel->moveSensor(7, {.leadingWord = 0, .x = 1, .y = 2, .direction = 16384});
    }

    void sensorThatStaysIsNotAnnounced()
    {
        mModel->setPositions(aTable());
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        mModel->moveSensor(7, {.leadingWord = 0, .x = 107, .y = -200, .direction = 400});
        QCOMPARE(changes.size(), 0);
    }

    void newTableIsAnnouncedAsOneBlock()
    {
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        QSignalSpy resets(mModel.get(), &QAbstractItemModel::modelReset);
        mModel->setPositions(aTable());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), mModel->index(0, 0));
        QCOMPARE(changes[0][1].toModelIndex(), mModel->index(5, 11));
        QCOMPARE(resets.size(), 0);
    }

private:
    static orv::SensorMountPositions aTable()
    {
        orv::SensorMountPositions positions;
        for (std::size_t i = 0; i < positions.size(); ++i)
            positions[i] = {.x = static_cast<std::int16_t>(100 + i),
                            .y = -200,
                            .height = 300,
                            .yaw = 400,
                            .pitch = 500,
                            .roll = 600};
        return positions;
    }

    // Row and column of every cell in the ranges of dataChanged.
    static QSet<QPair<int, int>> announcedCells(const QSignalSpy& changes)
    {
        QSet<QPair<int, int>> cells;
        for (const QList<QVariant>& change : changes) {
            const QModelIndex first = change[0].toModelIndex();
            const QModelIndex last = change[1].toModelIndex();
            for (int row = first.row(); row <= last.row(); ++row) {
                for (int column = first.column(); column <= last.column(); ++column)
                    cells.insert({row, column});
            }
        }
        return cells;
    }

    QVariant at(int row, int column, int role = Qt::DisplayRole) const
    {
        return mModel->data(mModel->index(row, column), role);
    }

    std::unique_ptr<OrvgSensorPositionItemModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

QTEST_MAIN(PositionModelTest)
#include "test_position_model.moc"
