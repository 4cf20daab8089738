#include "views/live/echo_texts.h"

#include <QtTest>

class EchoTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void timeOfFlightIsShownInMilliseconds_data()
    {
        QTest::addColumn<quint16>("timeOfFlightUs");
        QTest::addColumn<QString>("text");
        QTest::newRow("one microsecond") << quint16{1} << "0.001";
        QTest::newRow("below one millisecond") << quint16{51} << "0.051";
        QTest::newRow("whole milliseconds") << quint16{5000} << "5";
        QTest::newRow("no trailing zero") << quint16{5120} << "5.12";
        QTest::newRow("all digits") << quint16{12345} << "12.345";
        QTest::newRow("full scale") << quint16{30000} << "30";
        QTest::newRow("beyond full scale") << quint16{65535} << "65.535";
    }

    void timeOfFlightIsShownInMilliseconds()
    {
        QFETCH(quint16, timeOfFlightUs);
        QTEST(echoTexts({.magnitude = 7, .timeOfFlight = timeOfFlightUs}).timeOfFlight, "text");
    }

    void magnitudeIsShownAsCodeAndLevel_data()
    {
        QTest::addColumn<quint8>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("weakest") << quint8{0} << "0 (0.03)";
        QTest::newRow("second") << quint8{1} << "1 (0.04)";
        QTest::newRow("seven") << quint8{7} << "7 (0.15)";
        QTest::newRow("ten") << quint8{10} << "10 (0.29)";
        QTest::newRow("strongest") << quint8{15} << "15 (0.87)";
        QTest::newRow("above the table") << quint8{16} << "16 (0.87)";
        QTest::newRow("far above the table") << quint8{255} << "255 (0.87)";
    }

    void magnitudeIsShownAsCodeAndLevel()
    {
        QFETCH(quint8, code);
        QTEST(echoTexts({.magnitude = code, .timeOfFlight = 5120}).magnitude, "text");
    }

    void timeOfFlightZeroGivesTwoEmptyTexts()
    {
        const EchoTexts texts = echoTexts({.magnitude = 15, .timeOfFlight = 0});
        QCOMPARE(texts.timeOfFlight, QString());
        QCOMPARE(texts.magnitude, QString());
    }

    void secondValueIsNotShown()
    {
        const EchoTexts texts =
            echoTexts({.magnitude = 7, .secondValue = 99, .timeOfFlight = 5120});
        QCOMPARE(texts.timeOfFlight, QString("5.12"));
        QCOMPARE(texts.magnitude, QString("7 (0.15)"));
    }
};

QTEST_APPLESS_MAIN(EchoTextsTest)
#include "test_echo_texts.moc"
