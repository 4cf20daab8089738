#include "tests/app/faults/fault_rows.h"

#include <QtTest>

class TestFaultyRuns : public QObject
{
    Q_OBJECT

private slots:
    void everyFault_data() { addFaultRows(runOperations); }
    void everyFault();
};

void TestFaultyRuns::everyFault()
{
    QFETCH(int, operation);
    QFETCH(int, fault);
    QCOMPARE(deviationOfRow(runOperations, operation, fault), QString());
}

QTEST_MAIN(TestFaultyRuns)
#include "test_faulty_runs.moc"
