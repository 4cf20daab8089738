#include "tests/support/FreespaceBuilder.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/views/freespace/FreespacesFixture.h"

#include <QDialog>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QXmlStreamReader>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

// Apart enough to be clicked one by one.
orv::SensorMountPositions otherPositions()
{
    orv::SensorMountPositions positions;
    for (std::size_t id = 0; id < positions.size(); ++id)
        positions[id] = {.x = static_cast<std::int16_t>(600 * static_cast<int>(id) - 3000),
                         .y = 1200,
                         .height = 400,
                         .yaw = 4369,
                         .pitch = 7,
                         .roll = 9};
    return positions;
}

void readSilently(FreespacesFixture& fixture)
{
    fixture.positions.socket.queueReply(4, orv::encodeMountPositions(otherPositions()));
    QVERIFY(fixture.positions.view.onReadSensorPositionTbClicked(true));
}

void import(FreespacesFixture& fixture)
{
    const std::vector<std::uint8_t> bytes = orv::encodeMountPositions(otherPositions());
    const QByteArray raw(reinterpret_cast<const char*>(bytes.data()),
                         static_cast<int>(bytes.size()));
    const QString section = "<MountPositions>" + raw.toBase64() + "</MountPositions>";
    QCOMPARE(fixture.positions.importError(section), QString());
}

using Change = std::function<void(FreespacesFixture&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

/// In edit mode the picture, the panel beside it and the table of the position view show the same.
class PositionsInStepTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<FreespacesFixture>();
        mFixture->setEditMode(true);
    }

    void cleanup() { mFixture.reset(); }

    void changeFromElsewhereIsNotUndoneByTheNextClick_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("read") << Change(readSilently);
        QTest::newRow("import") << Change(import);
    }

    void changeFromElsewhereIsNotUndoneByTheNextClick()
    {
        QFETCH(Change, change);
        change(*mFixture);
        for (std::uint8_t id = 0; id < orv::kSensorCount; ++id) {
            QCOMPARE(marker(id).pos(), QPointF(600 * id - 3000, -1200));
            QCOMPARE(marker(id).position().direction, std::uint16_t(4369));
        }
        clickOn(5);
        QCOMPARE(mFixture->part<QSpinBox>("mXSB").value(), 0);
        QCOMPARE(table(), otherPositions());
        QCOMPARE(programmed(), orv::encodeMountPositions(otherPositions()));
    }

    void changeFromElsewhereShowsInThePanel()
    {
        clickOn(2);
        readSilently(*mFixture);
        QCOMPARE(mFixture->part<QSpinBox>("mXSB").value(), -1800);
        QCOMPARE(mFixture->part<QDoubleSpinBox>("mAngleSpinBox").value(), 24.0);
        mFixture->part<QSpinBox>("mYSB").setValue(-77);
        orv::SensorMountPositions expected = otherPositions();
        expected[2].y = -77;
        QCOMPARE(table(), expected);
    }

    void selectingAMarkerWritesNothing()
    {
        QSignalSpy changes(&mFixture->positions.model(), &QAbstractItemModel::dataChanged);
        for (std::uint8_t id = 0; id < orv::kSensorCount; ++id)
            clickOn(id);
        QTest::keyClick(&picture(), Qt::Key_PageDown);
        picture::press(picture(), {10, 10});
        picture::release(picture(), {10, 10});
        QCOMPARE(changes.size(), 0);
    }

    void livePictureShowsWhereTheEcuReportsFrom()
    {
        mFixture = std::make_unique<FreespacesFixture>();
        mFixture->view.onNewFreespacePackage(aPackage({anEntry(3).at(1000, 20, 0)}));
        readSilently(*mFixture);
        QCOMPARE(picture::itemsOf<OrvgSensorItem>(picture()).size(), 1);
        QCOMPARE(marker(3).pos(), QPointF(1000, -20));
    }

    void typedAngleIsNotRewrittenWhileItIsTyped()
    {
        clickOn(2);
        auto& editor = mFixture->part<QDoubleSpinBox>("mAngleSpinBox");
        editor.selectAll();
        QTest::keyClicks(&editor, "1.2");
        QCOMPARE(editor.findChild<QLineEdit*>()->text(), "1.2" + editor.suffix());
        QCOMPARE(marker(2).position().direction, std::uint16_t(218));
        QCOMPARE(table()[2].yaw, std::uint16_t(218));
    }

    void groupStaysTogetherInADrag()
    {
        marker(1).setSelected(true);
        marker(2).setSelected(true);
        const QPointF apart = marker(2).pos() - marker(1).pos();
        const QPoint start = pixelOf(2);
        picture::press(picture(), start);
        for (int step = 1; step <= 5; ++step) {
            picture::moveMouse(picture(), start + QPoint(10 * step, 0), Qt::LeftButton);
            QCOMPARE(marker(2).pos() - marker(1).pos(), apart);
        }
        picture::release(picture(), start + QPoint(50, 0));
        QCOMPARE(table()[1].x, std::int16_t(3650 + 1000));
        QCOMPARE(table()[2].x, std::int16_t(3650 + 1000));
    }

    void dragThatADialogCutsOffCounts()
    {
        const QPoint start = pixelOf(2);
        picture::press(picture(), start);
        picture::moveMouse(picture(), start + QPoint(10, 0), Qt::LeftButton);
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QCOMPARE(marker(2).pos(), QPointF(3850, -240));
        QCOMPARE(table()[2].x, std::int16_t(3850));
    }

private:
    OrvgFreespaceGraphicsView& picture() { return mFixture->picture(); }
    OrvgSensorItem& marker(std::uint8_t id) { return *picture::sensor(picture(), id); }
    orv::SensorMountPositions table() { return mFixture->positions.view.positions(); }

    QPoint pixelOf(std::uint8_t id) { return picture().mapFromScene(marker(id).pos()); }

    void clickOn(std::uint8_t id)
    {
        marker(id).setZValue(3); // above its neighbours
        picture::press(picture(), pixelOf(id));
        picture::release(picture(), pixelOf(id));
        marker(id).setZValue(2);
        QVERIFY(marker(id).isSelected());
    }

    // The positions that the Program button writes.
    std::vector<std::uint8_t> programmed()
    {
        mFixture->positions.socket.queueReply(4, {});
        MessageBoxWatcher watcher;
        mFixture->click("mProgramButton");
        std::vector<std::uint8_t> request = mFixture->positions.socket.requests().back();
        return {request.begin() + 2, request.end() - 1};
    }

    std::unique_ptr<FreespacesFixture> mFixture;
};

QTEST_MAIN(PositionsInStepTest)
#include "test_positions_in_step.moc"
