#include "tools/common/TerminationSignals.h"

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

#include <csignal>
#include <memory>

namespace {

volatile std::sig_atomic_t formerCalls = 0;

void former(int)
{
    formerCalls = formerCalls + 1;
}

} // namespace

/// What ends a program from outside, while the object lives and afterwards.
class TestTerminationSignals : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        formerCalls = 0;
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            std::signal(signal, former);
    }

    void eachSignalIsToldInTheEventLoop_data()
    {
        QTest::addColumn<int>("signal");

        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void eachSignalIsToldInTheEventLoop()
    {
        QFETCH(int, signal);
        const cli::TerminationSignals termination;
        QSignalSpy spy(&termination, &cli::TerminationSignals::terminated);
        std::raise(signal);
        QCOMPARE(spy.count(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(spy.count() > 0, 30000);
        QCOMPARE(int(formerCalls), 0);
    }

    void afterwardsTheyDoWhatTheyDidBefore()
    {
        std::make_unique<cli::TerminationSignals>().reset();
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            std::raise(signal);
        QCOMPARE(int(formerCalls), 3);
    }

    void ignoredHangUpStaysIgnored()
    {
        std::signal(SIGHUP, SIG_IGN);
        const cli::TerminationSignals termination;
        QSignalSpy spy(&termination, &cli::TerminationSignals::terminated);
        std::raise(SIGHUP);
        QTest::qWait(50);
        QCOMPARE(spy.count(), 0);
    }

    void descriptorsAreClosed()
    {
        const auto openDescriptors = [] {
            return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files);
        };
        std::make_unique<cli::TerminationSignals>().reset();
        const QStringList before = openDescriptors();
        QVERIFY(!before.isEmpty());
        std::make_unique<cli::TerminationSignals>().reset();
        QCOMPARE(openDescriptors().size(), before.size());
    }
};

QTEST_GUILESS_MAIN(TestTerminationSignals)
#include "test_termination_signals.moc"
