#include "tools/tarvioctl/RecordFormat.h"
#include "tools/tarvioctl/commands.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

/// The man page and the completion know every command and its options.
class TestCtlDocuments : public QObject
{
    Q_OBJECT

private slots:
    void everyCommandHasItsPlace_data()
    {
        QTest::addColumn<QString>("document");

        QTest::newRow("man page") << "docs/man/tarvioctl.1";
        QTest::newRow("completion") << "tools/tarvioctl/tarvioctl.bash";
    }

    void everyCommandHasItsPlace()
    {
        QFETCH(QString, document);
        const QString text = contentOf(document);
        for (const tarvioctl::Command& command : tarvioctl::allCommands())
            QVERIFY2(hasWord(text, command.name), qPrintable(command.name));
    }

    void completionKnowsEveryOption()
    {
        const QString text = contentOf(QStringLiteral("tools/tarvioctl/tarvioctl.bash"));
        for (const tarvioctl::Command& command : tarvioctl::allCommands())
            for (const QCommandLineOption& option : command.options)
                for (const QString& name : option.names())
                    QVERIFY2(hasWord(text, name), qPrintable(command.name + " --" + name));
    }

    void manPageKnowsEveryOption()
    {
        const QString text = manPage();
        for (const tarvioctl::Command& command : tarvioctl::allCommands())
            for (const QCommandLineOption& option : command.options)
                for (const QString& name : option.names())
                    QVERIFY2(hasWord(text, name), qPrintable(command.name + " --" + name));
    }

    void manPageKnowsEveryColumnOfTheCsv()
    {
        const QString text = manPage();
        const QStringList columns = tarvioctl::csvFormat()->header().split(QLatin1Char(','));
        QCOMPARE(columns.size(), 17);
        for (const QString& column : columns)
            QVERIFY2(hasWord(text, column), qPrintable(column));
    }

    void manPageKnowsEveryFieldOfTheJson()
    {
        const QString text = manPage();
        const auto format = tarvioctl::jsonLinesFormat();
        orv::OrvMeasurementResult measurement;
        measurement.echoes[0] = {{}};
        orv::OrvFreespacePackage freespace;
        freespace.entries.emplace_back().distances[0].mode = 1;
        const QStringList names =
            fieldNames(format->text({}, measurement)) + fieldNames(format->text({}, freespace));
        QVERIFY(names.contains(QStringLiteral("timeOfFlightUs")));
        QVERIFY(names.contains(QStringLiteral("wedge")));
        for (const QString& name : names)
            QVERIFY2(hasWord(text, name), qPrintable(name));
    }

private:
    static QString manPage() { return contentOf(QStringLiteral("docs/man/tarvioctl.1")); }

    static QStringList fieldNames(const QString& json)
    {
        static const QRegularExpression kName(QStringLiteral("\"(\\w+)\":"));
        QStringList names;
        for (auto match = kName.globalMatch(json); match.hasNext();)
            names += match.next().captured(1);
        return names;
    }

    static QString contentOf(const QString& document)
    {
        QFile file(QStringLiteral(TARVIO_SOURCES "/") + document);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static bool hasWord(const QString& text, const QString& word)
    {
        return QRegularExpression(QStringLiteral("\\b%1\\b").arg(word)).match(text).hasMatch();
    }
};

QTEST_GUILESS_MAIN(TestCtlDocuments)
#include "test_ctl_documents.moc"
