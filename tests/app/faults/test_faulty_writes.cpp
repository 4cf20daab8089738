#include "tests/app/faults/fault_rows.h"

#include <QtTest>

class TestFaultyWrites : public QObject
{
    Q_OBJECT

private slots:
    void everyFault_data() { addFaultRows(writeOperations); }
    void everyFault();
};

void TestFaultyWrites::everyFault()
{
    QFETCH(int, operation);
    QFETCH(int, fault);
    QCOMPARE(deviationOfRow(writeOperations, operation, fault), QString());
}

QTEST_MAIN(TestFaultyWrites)
#include "test_faulty_writes.moc"
