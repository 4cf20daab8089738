#include "ecu/store/ip_address.h"

#include <QtTest>

class TestIpAddress : public QObject
{
    Q_OBJECT

private slots:
    void octetsAreKnown_data();
    void octetsAreKnown();
    void completeAddressesAreSpelledOneWay_data();
    void completeAddressesAreSpelledOneWay();
};

void TestIpAddress::octetsAreKnown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isOne");

    QTest::newRow("0") << "0" << true;
    QTest::newRow("255") << "255" << true;
    QTest::newRow("leading zeros") << "007" << true;
    QTest::newRow("256") << "256" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("four digits") << "0001" << false;
    QTest::newRow("sign") << "-1" << false;
    QTest::newRow("hexadecimal") << "0x7" << false;
    QTest::newRow("blank") << " 1" << false;
    QTest::newRow("digit of another script") << QStringLiteral("\u0661") << false;
}

void TestIpAddress::octetsAreKnown()
{
    QFETCH(QString, text);
    QTEST(isOctet(text), "isOne");
}

void TestIpAddress::completeAddressesAreSpelledOneWay_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("as it is") << "192.168.1.5"
                              << "192.168.1.5";
    QTest::newRow("blanks around") << " 192.168.1.5\n"
                                   << "192.168.1.5";
    QTest::newRow("leading zeros") << "192.168.010.001"
                                   << "192.168.10.1";
    QTest::newRow("missing") << ""
                             << "";
    QTest::newRow("empty octet") << "192..1.5"
                                 << "";
    QTest::newRow("empty octets") << "..."
                                  << "";
    QTest::newRow("three octets") << "192.168.1"
                                  << "";
    QTest::newRow("five octets") << "1.2.3.4.5"
                                 << "";
    QTest::newRow("octet too large") << "192.168.1.256"
                                     << "";
    QTest::newRow("name") << "localhost"
                          << "";
    QTest::newRow("blank inside") << "192. 168.1.5"
                                  << "";
}

void TestIpAddress::completeAddressesAreSpelledOneWay()
{
    QFETCH(QString, text);
    QTEST(completeAddress(text), "expected");
}

QTEST_GUILESS_MAIN(TestIpAddress)
#include "test_ip_address.moc"
