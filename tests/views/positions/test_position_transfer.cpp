#include "tests/views/common/EditorTransferTest.h"
#include "tests/views/positions/PositionViewFixture.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

const QString kDataError = "Invalid data format of sensor positions";

std::vector<std::uint8_t> aReply(std::size_t size = 144)
{
    std::vector<std::uint8_t> bytes(size, 0);
    bytes[0] = 0x18; // x of the first sensor: -1000
    bytes[1] = 0xFC;
    bytes[size - 5] = 0x40; // yaw of the last one: 90 degrees
    return bytes;
}

} // namespace

class PositionTransferTest : public EditorTransferTest<PositionViewFixture>
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void readAsksAndNoLeavesTheTable()
    {
        mBoxes->setAnswer(QMessageBox::No);
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QTest::mouseClick(&mFixture->readButton(), Qt::LeftButton);
        QVERIFY(requests().empty());
        QCOMPARE(mFixture->view.positions(), PositionViewFixture::aCar());
        QVERIFY(!mFixture->view.onReadSensorPositionTbClicked());
    }

    void readTakesTheTwelvePositions()
    {
        mFixture->socket.queueReply(4, aReply());
        QTest::mouseClick(&mFixture->readButton(), Qt::LeftButton);
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0].size(), 3U);
        QCOMPARE(requests()[0][0], std::uint8_t{4});
        QCOMPARE(requests()[0][1], std::uint8_t{1});
        QCOMPARE(mFixture->view.positions()[0].x, std::int16_t{-1000});
        QCOMPARE(mFixture->view.positions()[11].yaw, std::uint16_t{16384});
        QCOMPARE(mFixture->model().index(3, 11).data().toDouble(), 90.0);
    }

    void failedReadIsShownAndKeepsTheTable_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text");
        QTest::newRow("silent ECU") << -1 << 0 << "socket: receive timeout";
        QTest::newRow("status 7") << 144 << 7 << "ECU error (7)";
        QTest::newRow("a byte short") << 143 << 0 << "wrong data size";
        QTest::newRow("a byte long") << 145 << 0 << "wrong data size";
    }

    void failedReadIsShownAndKeepsTheTable()
    {
        QFETCH(int, size);
        QFETCH(int, status);
        for (int i = 0; i < 2 && size > 0; ++i)
            mFixture->socket.queueReply(4, aReply(static_cast<std::size_t>(size)),
                                        static_cast<std::uint8_t>(status));
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QVERIFY(!mFixture->view.onReadSensorPositionTbClicked(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!mFixture->view.onReadSensorPositionTbClicked());
        QCOMPARE(mBoxes->boxes().size(), 2);
        QFETCH(QString, text);
        expectError(text);
        QCOMPARE(mFixture->view.positions(), PositionViewFixture::aCar());
    }

    void writeSendsTheTableWithoutAsking()
    {
        mFixture->socket.queueReply(4, {});
        mFixture->model().setData(mFixture->model().index(0, 0), -1000);
        mFixture->model().setData(mFixture->model().index(3, 11), 90.0);
        QTest::mouseClick(&mFixture->writeButton(), Qt::LeftButton);
        QVERIFY(mBoxes->boxes().isEmpty());
        std::vector<std::uint8_t> expected = aReply();
        expected.insert(expected.begin(), {4, 0});
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0].size(), 147U); // and a checksum
        QVERIFY(std::equal(expected.begin(), expected.end(), requests()[0].begin()));
    }

    void typedValueIsWrittenThoughTheEditorIsOpen()
    {
        mFixture->socket.queueReply(4, {});
        QDoubleSpinBox* editor = mFixture->openEditor(0, 0);
        QVERIFY(editor);
        QTest::keyClicks(editor, "-1000");
        QTest::mouseClick(&mFixture->writeButton(), Qt::LeftButton);
        QCOMPARE(requests().size(), 1U);
        QCOMPARE(requests()[0][2], std::uint8_t{0x18});
        QCOMPARE(requests()[0][3], std::uint8_t{0xFC});
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
    }

    void openEditorDoesNotOverwriteWhatWasRead()
    {
        mFixture->socket.queueReply(4, aReply());
        QDoubleSpinBox* editor = mFixture->openEditor(0, 0);
        QVERIFY(editor);
        QTest::keyClicks(editor, "5");
        QVERIFY(mFixture->view.onReadSensorPositionTbClicked(true));
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        QCOMPARE(mFixture->view.positions()[0].x, std::int16_t{-1000});
    }

    void typedValueIsExportedThoughTheEditorIsOpen()
    {
        QDoubleSpinBox* editor = mFixture->openEditor(0, 0);
        QVERIFY(editor);
        QTest::keyClicks(editor, "-1000");
        QXmlStreamReader reader(mFixture->section("MountPositions"));
        QVERIFY(reader.readNextStartElement());
        const QByteArray bytes = QByteArray::fromBase64(reader.readElementText().toLatin1());
        QCOMPARE(bytes.left(2), QByteArray("\x18\xFC"));
    }

    void openEditorDoesNotOverwriteWhatWasImported()
    {
        const QByteArray bytes = QByteArray("\x18\xFC") + QByteArray(142, '\0');
        QDoubleSpinBox* editor = mFixture->openEditor(0, 0);
        QVERIFY(editor);
        QTest::keyClicks(editor, "5");
        QCOMPARE(mFixture->importError("<MountPositions>" + bytes.toBase64() + "</MountPositions>"),
                 QString());
        QTRY_VERIFY(!mFixture->table().findChild<QDoubleSpinBox*>());
        QCOMPARE(mFixture->view.positions()[0].x, std::int16_t{-1000});
    }

    void settingsFileRestoresTheTable()
    {
        mFixture->model().setPositions(PositionViewFixture::aCar());
        PositionViewFixture other;
        QCOMPARE(other.importError(mFixture->section("MountPositions")), QString());
        QCOMPARE(other.view.positions(), PositionViewFixture::aCar());
    }

    void settingsFileHoldsTheBytesOfTheWrite()
    {
        mFixture->model().setData(mFixture->model().index(0, 0), -1000);
        const QString text = mFixture->section("MountPositions");
        const QString zeros = QString("AAAA").repeated(47);
        QCOMPARE(text, "<MountPositions><![CDATA[GPwA" + zeros + "]]></MountPositions>");
    }

    void refusedSettingsChangeNothing_data()
    {
        QTest::addColumn<QString>("content");
        QTest::newRow("empty") << "";
        QTest::newRow("no Base64") << "#### no positions ####";
        QTest::newRow("a byte short") << QString("AAAA").repeated(47) + "AAA=";
        QTest::newRow("a byte long") << QString("AAAA").repeated(48) + "AA==";
        QTest::newRow("child element") << "<Sensor/>" + QString("AAAA").repeated(48);
    }

    void refusedSettingsChangeNothing()
    {
        QFETCH(QString, content);
        mFixture->model().setPositions(PositionViewFixture::aCar());
        QCOMPARE(mFixture->importError("<MountPositions>" + content + "</MountPositions>"),
                 kDataError);
        QCOMPARE(mFixture->view.positions(), PositionViewFixture::aCar());
    }

    void readerIsLeftAtTheEndOfTheSection()
    {
        QXmlStreamReader reader("<Root>" + mFixture->section("MountPositions") + "<Next/></Root>");
        reader.readNextStartElement();
        reader.readNextStartElement();
        std::string error;
        QVERIFY(mFixture->view.readFromXml(reader, error));
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.name().toString(), QString("Next"));
    }
};

QTEST_MAIN(PositionTransferTest)
#include "test_position_transfer.moc"
