#include "ecu/link/failure_text.h"

#include <QTranslator>
#include <QtTest>

namespace {

/// Puts each text between signs.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return qstrcmp(context, "LinkFailure") == 0 ? '<' + QString::fromUtf8(text) + '>'
                                                    : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestFailureText : public QObject
{
    Q_OBJECT

private slots:
    void withoutATranslatorNothingChanges_data();
    void withoutATranslatorNothingChanges();
    void translatorGetsWholeTexts_data();
    void translatorGetsWholeTexts();
};

void TestFailureText::withoutATranslatorNothingChanges_data()
{
    QTest::addColumn<QString>("reason");
    for (const char* reason :
         {"", "socket: receive timeout", "socket: Can't create socket", "checksum error",
          "wrong reply type", "ECU error (5)", "ECU error (255)", "ECU error ()",
          "Only 1...12 steps can be set.", "socket: ", "100 %1", "Ger\u00E4t"})
        QTest::newRow(reason) << QString::fromUtf8(reason);
}

void TestFailureText::withoutATranslatorNothingChanges()
{
    QFETCH(QString, reason);
    QCOMPARE(failureText(reason.toStdString()), reason);
}

void TestFailureText::translatorGetsWholeTexts_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("text");
    QTest::newRow("of the client") << "checksum error"
                                   << "<checksum error>";
    QTest::newRow("of the socket") << "socket: receive timeout"
                                   << "<socket: <receive timeout>>";
    QTest::newRow("of the ECU") << "ECU error (5)"
                                << "<ECU error (5)>";
}

void TestFailureText::translatorGetsWholeTexts()
{
    QFETCH(QString, reason);
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString text = failureText(reason.toStdString());
    QCoreApplication::removeTranslator(&translator);
    QTEST(text, "text");
}

QTEST_GUILESS_MAIN(TestFailureText)
#include "test_failure_text.moc"
