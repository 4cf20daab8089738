#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"
#include "views/common/EcuExchange.h"

#include <QtTest>

class EcuExchangeTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { mBoxes = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes); }

    void cleanup()
    {
        mBoxes.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    void withoutAClientNothingHappens()
    {
        EcuExchange exchange(nullptr);
        QVERIFY(!exchange.client());
        QVERIFY(!exchange.mayOverwrite(false, "Title"));
        QVERIFY(!exchange.mayOverwrite(true, "Title"));
        bool wasCalled = false;
        const auto call = [&](orv::OrvCtrlClient&) { return wasCalled = true; };
        QVERIFY(!exchange.run(false, call));
        QVERIFY(!wasCalled);
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void nullClientDoesNotReplaceAnother()
    {
        Bench bench;
        bench.exchange.setClient(nullptr);
        QCOMPARE(bench.exchange.client(), &bench.client);
    }

    void overwritingIsAskedUnlessSilent()
    {
        Bench bench;
        QVERIFY(bench.exchange.mayOverwrite(true, "Read steps"));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(bench.exchange.mayOverwrite(false, "Read steps"));
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].title, QString("Read steps"));
        mBoxes->setAnswer(QMessageBox::No);
        QVERIFY(!bench.exchange.mayOverwrite(false, "Read steps"));
    }

    void exchangeRunsUnderTheWaitCursorAndItsBoxDoesNot()
    {
        Bench bench;
        mBoxes.reset();
        bool boxHadWaitCursor = true;
        whenOpened<QMessageBox>(this, [&](QMessageBox& box) {
            boxHadWaitCursor = QApplication::overrideCursor() != nullptr;
            box.accept();
        });
        QVERIFY(!bench.readVersion(false));
        QCOMPARE(bench.socket.hadWaitCursor, std::vector<bool>{true});
        QVERIFY(!boxHadWaitCursor);
    }

    void failureIsToldUnlessSilent()
    {
        Bench bench;
        QVERIFY(!bench.readVersion(true));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!bench.readVersion(false));
        expectBox("socket: receive timeout");
    }

    void successIsNotTold()
    {
        Bench bench;
        bench.socket.queueReply(2, {1, 2, 3});
        QVERIFY(bench.readVersion(false));
        QVERIFY(mBoxes->boxes().isEmpty());
    }

    void severalFailuresAreToldInOneBox()
    {
        Bench bench;
        const auto fail = [](orv::OrvCtrlClient&) { return QStringList({"first", "second"}); };
        QVERIFY(!bench.exchange.runAll(true, fail));
        QVERIFY(mBoxes->boxes().isEmpty());
        QVERIFY(!bench.exchange.runAll(false, fail));
        expectBox("first\nsecond");
        QVERIFY(bench.exchange.runAll(false, [](orv::OrvCtrlClient&) { return QStringList(); }));
        QCOMPARE(mBoxes->boxes().size(), 1);
    }

private:
    struct Bench
    {
        Bench() { exchange.setClient(&client); }

        bool readVersion(bool silent) const
        {
            return exchange.run(silent, [](orv::OrvCtrlClient& ecu) {
                orv::FirmwareVersion version;
                return ecu.readFirmwareVersion(version);
            });
        }

        CursorWatchingSocket socket;
        orv::OrvCtrlClient client{&socket};
        EcuExchange exchange{nullptr};
    };

    void expectBox(const QString& text)
    {
        QCOMPARE(mBoxes->boxes().size(), 1);
        QCOMPARE(mBoxes->boxes()[0].icon, QMessageBox::Warning);
        QCOMPARE(mBoxes->boxes()[0].title, QString("Communication error"));
        QCOMPARE(mBoxes->boxes()[0].text, text);
    }

    std::unique_ptr<MessageBoxWatcher> mBoxes;
};

QTEST_MAIN(EcuExchangeTest)
#include "test_ecu_exchange.moc"
