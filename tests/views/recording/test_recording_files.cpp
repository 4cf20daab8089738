#include "tests/support/FullDisk.h"
#include "tests/support/modal_dialogs.h"
#include "tests/support/screenshots.h"
#include "tests/views/recording/RecordingFixture.h"

#include <QFileDialog>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

// The pixels of the stick at about this time of flight.
int stickHeight(OrvgPlotWidget& plot, int timeOfFlightUs)
{
    const QImage picture = plot.grab().toImage();
    int highest = 0;
    const int middle = picture.width() * timeOfFlightUs / 30000;
    for (int x = middle - 4; x <= middle + 4; ++x) {
        int height = 0;
        while (picture.pixelColor(x, picture.height() - 1 - height) == QColor(Qt::yellow))
            ++height;
        highest = std::max(highest, height);
    }
    return highest;
}

void writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

// Answers the next file dialog with a file name; an empty one cancels it.
void answerFileDialog(QObject* context, const QString& fileName, QStringList* seen = nullptr)
{
    whenOpened<QFileDialog>(context, [=](QFileDialog& dialog) {
        if (seen)
            *seen << dialog.windowTitle() << dialog.nameFilters();
        if (!fileName.isEmpty())
            dialog.selectFile(fileName);
        QMetaObject::invokeMethod(&dialog, fileName.isEmpty() ? "reject" : "accept");
    });
}

} // namespace

class RecordingFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void resultThatStartsTheRecordingIsNotRecorded();
    void samplesOfTheChosenSensorAreKeptUntilTheNextRecording();
    void maximumAndMeanAreSwitchedInThePlot();
    void guidePictureShowsTwoObstacles();

    void savesTheSamplesToTheChosenFile();
    void csvIsAddedWhereItIsMissing_data();
    void csvIsAddedWhereItIsMissing();
    void existingFileIsReplacedAfterAQuestionOnly_data();
    void existingFileIsReplacedAfterAQuestionOnly();
    void fullDiskLeavesTheFormerFileWhole();
    void cancelledSaveWritesNothing();
    void unwritableFileIsReported();
};

void RecordingFilesTest::resultThatStartsTheRecordingIsNotRecorded()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 7));
    QCOMPARE(fixture.csv(), QByteArray());
    fixture.inject(1, aMeasurement().withEcho(0, 1200, 9));
    QCOMPARE(fixture.csv(), QByteArray("1200,9\n"));
}

void RecordingFilesTest::samplesOfTheChosenSensorAreKeptUntilTheNextRecording()
{
    RecordingFixture fixture;
    fixture.sensor()->setCurrentIndex(2);
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(2, 1200, 7).withEcho(3, 1400, 1));
    fixture.inject(1, aMeasurement().withEcho(2, 1200, 9).withEcho(2, 800, 3));
    fixture.stop()->click();
    fixture.inject(3, aMeasurement().withEcho(2, 1200, 8));
    QCOMPARE(fixture.csv(), QByteArray("800,3\n1200,7,9\n"));
    fixture.record()->click();
    QCOMPARE(fixture.csv(), QByteArray("800,3\n1200,7,9\n"));
    fixture.inject(1);
    QCOMPARE(fixture.csv(), QByteArray());
}

void RecordingFilesTest::maximumAndMeanAreSwitchedInThePlot()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(1, aMeasurement().withEcho(0, 15000, 15));
    fixture.inject(1, aMeasurement().withEcho(0, 15000, 0));
    const QImage maximum = fixture.plot()->grab().toImage();
    fixture.find<QRadioButton>("mMidAvgRb")->click();
    QVERIFY(fixture.plot()->grab().toImage() != maximum);
    fixture.find<QRadioButton>("mMaxRb")->click();
    QCOMPARE(fixture.plot()->grab().toImage(), maximum);
}

void RecordingFilesTest::guidePictureShowsTwoObstacles()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    // Two obstacles, the second one fainter, seen through the window as it passes.
    for (int result = 0; result < 110 * 3; ++result) {
        const double time = 205 * (result / 3) + 51 * (result % 3);
        const double near = 14 * std::exp(-std::pow((time - 8000) / 900, 2));
        const double far = 10 * std::exp(-std::pow((time - 17000) / 1400, 2));
        if (near + far > 0.7)
            fixture.inject(1, aMeasurement().withEcho(0, static_cast<std::uint16_t>(time),
                                                      static_cast<std::uint8_t>(near + far)));
        else
            fixture.inject(1);
    }
    fixture.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&fixture.dialog));
    QVERIFY(fixture.isRecording());
    QCOMPARE(fixture.progress()->value(), 109);
    QVERIFY(stickHeight(*fixture.plot(), 8000) > stickHeight(*fixture.plot(), 17000));
    QVERIFY(stickHeight(*fixture.plot(), 17000) > stickHeight(*fixture.plot(), 12500));
    QCOMPARE(stickHeight(*fixture.plot(), 12500), 0);
    saveScreenshot(fixture.dialog, "envelope-recording");
}

void RecordingFilesTest::savesTheSamplesToTheChosenFile()
{
    RecordingFixture fixture;
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    fixture.stop()->click();
    fixture.inject(1);
    const QTemporaryDir folder;
    QStringList seen;
    answerFileDialog(&fixture.dialog, folder.filePath("curve.csv"), &seen);
    fixture.save()->click();
    QCOMPARE(seen, QStringList({"Select file", "CSV files(*.csv)"}));
    QFile file(folder.filePath("curve.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("1200,7,7\n"));
}

void RecordingFilesTest::csvIsAddedWhereItIsMissing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    QTest::newRow("no extension") << "curve"
                                  << "curve.csv";
    QTest::newRow("something like one") << "bumper v1.2"
                                        << "bumper v1.2.csv";
    QTest::newRow("another one") << "curve.txt"
                                 << "curve.txt.csv";
    QTest::newRow("in capitals") << "CURVE.CSV"
                                 << "CURVE.CSV";
}

void RecordingFilesTest::csvIsAddedWhereItIsMissing()
{
    QFETCH(QString, typed);
    RecordingFixture fixture;
    const QTemporaryDir folder;
    answerFileDialog(&fixture.dialog, folder.filePath(typed));
    fixture.save()->click();
    QFETCH(QString, written);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList(written));
}

void RecordingFilesTest::existingFileIsReplacedAfterAQuestionOnly_data()
{
    QTest::addColumn<bool>("replace");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void RecordingFilesTest::existingFileIsReplacedAfterAQuestionOnly()
{
    QFETCH(bool, replace);
    RecordingFixture fixture;
    fixture.watcher.setAnswer(replace ? QMessageBox::Yes : QMessageBox::No);
    const QTemporaryDir folder;
    writeFile(folder.filePath("curve.csv"), "former");
    whenOpened<QFileDialog>(&fixture.dialog, [&](QFileDialog& dialog) {
        dialog.selectFile(folder.filePath("curve"));
        QMetaObject::invokeMethod(&dialog, "accept");
        if (!replace) // it opens again
            answerFileDialog(&fixture.dialog, QString());
    });
    fixture.save()->click();
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(contentOf(folder.filePath("curve.csv")), QByteArray(replace ? "" : "former"));
}

void RecordingFilesTest::fullDiskLeavesTheFormerFileWhole()
{
    RecordingFixture fixture;
    fixture.watcher.setAnswer(QMessageBox::Yes);
    fixture.record()->click();
    fixture.inject(1);
    fixture.inject(2, aMeasurement().withEcho(0, 1200, 7));
    fixture.stop()->click();
    fixture.inject(1);
    const QTemporaryDir folder;
    writeFile(folder.filePath("curve.csv"), "former");
    answerFileDialog(&fixture.dialog, folder.filePath("curve.csv"));
    {
        const FullDisk disk(4);
        fixture.save()->click();
    }
    QCOMPARE(fixture.watcher.boxes().size(), 2);
    QCOMPARE(fixture.watcher.boxes().last().title, QString("File error"));
    QCOMPARE(fixture.watcher.boxes().last().text, QString("Can't write to file."));
    QCOMPARE(contentOf(folder.filePath("curve.csv")), QByteArray("former"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("curve.csv"));
}

void RecordingFilesTest::cancelledSaveWritesNothing()
{
    RecordingFixture fixture;
    QStringList seen;
    answerFileDialog(&fixture.dialog, QString(), &seen);
    fixture.save()->click();
    QCOMPARE(seen.value(0), QString("Select file"));
    QVERIFY(fixture.watcher.boxes().isEmpty());
}

void RecordingFilesTest::unwritableFileIsReported()
{
    RecordingFixture fixture;
    const QTemporaryDir folder;
    // A folder that goes away between the choice and the writing.
    QDir(folder.path()).mkdir("gone");
    answerFileDialog(&fixture.dialog, folder.filePath("gone/curve.csv"));
    QTimer::singleShot(0, &fixture.dialog, [&] { QDir(folder.path()).rmdir("gone"); });
    fixture.save()->click();
    QCOMPARE(fixture.watcher.boxes().size(), 1);
    QCOMPARE(fixture.watcher.boxes().front().title, QString("File error"));
    QCOMPARE(fixture.watcher.boxes().front().text, QString("Can't write to file."));
}

QTEST_MAIN(RecordingFilesTest)
#include "test_recording_files.moc"
