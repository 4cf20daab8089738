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

private:
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
