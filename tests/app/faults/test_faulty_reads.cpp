#include "tests/app/faults/fault_rows.h"

#include <QtTest>

class TestFaultyReads : public QObject
{
    Q_OBJECT

private slots:
    void everyFault_data() { addFaultRows(readOperations); }
    void everyFault();
};

void TestFaultyReads::everyFault()
{
    QFETCH(int, operation);
    QFETCH(int, fault);
    QCOMPARE(deviationOfRow(readOperations, operation, fault), QString());
}

QTEST_MAIN(TestFaultyReads)
#include "test_faulty_reads.moc"
