#include "tests/support/MessageBoxWatcher.h"
#include "views/common/messages.h"

#include <QtTest>

#include <string>

class MessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void questionOffersYesAndNo()
    {
        MessageBoxWatcher watcher(QMessageBox::Yes);
        askYesNo(nullptr, "Transmit to ECU", "Are You sure?");
        QCOMPARE(watcher.boxes().size(), 1);
        const auto& box = watcher.boxes().first();
        QCOMPARE(box.icon, QMessageBox::Information);
        QCOMPARE(box.title, QString("Transmit to ECU"));
        QCOMPARE(box.text, QString("Are You sure?"));
        QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
    }

    void onlyYesAgrees_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("agreed");
        QTest::newRow("yes") << int{QMessageBox::Yes} << true;
        QTest::newRow("no") << int{QMessageBox::No} << false;
    }

    void onlyYesAgrees()
    {
        QFETCH(int, answer);
        QFETCH(bool, agreed);
        MessageBoxWatcher watcher(static_cast<QMessageBox::StandardButton>(answer));
        QCOMPARE(askYesNo(nullptr, "Title", "Text"), agreed);
        QCOMPARE(confirmOverwrite(nullptr, "Title"), agreed);
        QCOMPARE(watcher.boxes().size(), 2);
    }

    void overwritingIsAskedInOneSentence()
    {
        MessageBoxWatcher watcher(QMessageBox::No);
        confirmOverwrite(nullptr, "Read sensor thresholds");
        const auto& box = watcher.boxes().first();
        QCOMPARE(box.title, QString("Read sensor thresholds"));
        QCOMPARE(box.text, QString("Current changes would be overwritten. Are You sure?"));
        QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
    }

    void communicationErrorIsAWarningToConfirm()
    {
        MessageBoxWatcher watcher;
        showCommunicationError(nullptr, QString("Can't read the positions"));
        QCOMPARE(watcher.boxes().size(), 1);
        const auto& box = watcher.boxes().first();
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.title, QString("Communication error"));
        QCOMPARE(box.text, QString("Can't read the positions"));
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }

    void lastErrorOfTheClientIsShownAsItIs()
    {
        MessageBoxWatcher watcher;
        showCommunicationError(nullptr, std::string("receive timeout"));
        const auto& box = watcher.boxes().first();
        QCOMPARE(box.title, QString("Communication error"));
        QCOMPARE(box.text, QString("receive timeout"));
    }
};

QTEST_MAIN(MessagesTest)
#include "test_messages.moc"
