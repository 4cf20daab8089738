#include "tests/app/faults/fault_rows.h"

#include <QtTest>

class TestFaultyWholes : public QObject
{
    Q_OBJECT

private slots:
    void everyFault_data() { addFaultRows(wholeOperations); }
    void everyFault();
};

void TestFaultyWholes::everyFault()
{
    QFETCH(int, operation);
    QFETCH(int, fault);
    QCOMPARE(deviationOfRow(wholeOperations, operation, fault), QString());
}

QTEST_MAIN(TestFaultyWholes)
#include "test_faulty_wholes.moc"
