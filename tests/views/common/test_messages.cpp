#include "tests/support/MessageBoxWatcher.h"
#include "views/common/messages.h"

#include <QAbstractButton>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

#include <memory>
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

    void openedBoxesReturnAtOnceAndTellTheSame_data()
    {
        QTest::addColumn<int>("icon");
        QTest::addColumn<int>("buttons");
        QTest::newRow("information") << int{QMessageBox::Information} << int{QMessageBox::Ok};
        QTest::newRow("warning") << int{QMessageBox::Warning} << int{QMessageBox::Ok};
        QTest::newRow("question") << int{QMessageBox::Question}
                                  << int{QMessageBox::Yes | QMessageBox::No};
    }

    void openedBoxesReturnAtOnceAndTellTheSame()
    {
        QFETCH(int, icon);
        QWidget parent;
        MessageBoxWatcher watcher;
        open(icon, parent);
        const QPointer<QMessageBox> box = parent.findChild<QMessageBox*>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->windowModality(), Qt::WindowModal);
        QVERIFY(watcher.boxes().isEmpty());
        QTRY_COMPARE(watcher.boxes().size(), 1);
        const auto& seen = watcher.boxes().first();
        QCOMPARE(int{seen.icon}, icon);
        QCOMPARE(seen.title, QString("Title"));
        QCOMPARE(seen.text, QString("Text"));
        QTEST(static_cast<int>(seen.buttons), "buttons");
        QTRY_VERIFY(!box);
    }

    void openedBoxMayGoWithItsWindow()
    {
        auto parent = std::make_unique<QWidget>();
        const QPointer<QMessageBox> box = openQuestion(parent.get(), "Title", "Text");
        parent.reset();
        QVERIFY(!box);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void openedQuestionFinishesWithItsButton_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << int{QMessageBox::Yes};
        QTest::newRow("no") << int{QMessageBox::No};
    }

    void openedQuestionFinishesWithItsButton()
    {
        QFETCH(int, answer);
        QWidget parent;
        QMessageBox* box = openQuestion(&parent, "Title", "Text");
        QVERIFY(box->defaultButton() == box->button(QMessageBox::No));
        QSignalSpy finished(box, &QDialog::finished);
        box->button(static_cast<QMessageBox::StandardButton>(answer))->click();
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished.first().first().toInt(), answer);
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

private:
    static void open(int icon, QWidget& parent)
    {
        if (icon == QMessageBox::Information)
            openInformation(&parent, "Title", "Text");
        else if (icon == QMessageBox::Warning)
            openWarning(&parent, "Title", "Text");
        else
            openQuestion(&parent, "Title", "Text");
    }
};

QTEST_MAIN(MessagesTest)
#include "test_messages.moc"
