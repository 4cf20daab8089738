#include "ecu/configuration/ConfigurationPart.h"

#include <QtTest>

class ConfigurationPartTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mCalls.clear();
        mFailing.clear();
    }

    void partsAreExchangedInTurn()
    {
        const QVector<ConfigurationPart> parts{part("b", 2), part("a", 1), part("c", 3)};
        QCOMPARE(readAllFromEcu(parts), QStringList());
        QCOMPARE(writeAllToEcu(parts), QStringList());
        QCOMPARE(mCalls,
                 QStringList({"read a", "read b", "read c", "write a", "write b", "write c"}));
    }

    void partsOfTheSameTurnKeepTheirOrder()
    {
        readAllFromEcu({part("b", 1), part("a", 1), part("c", 0)});
        QCOMPARE(mCalls, QStringList({"read c", "read b", "read a"}));
    }

    void failuresAreNamedInTurnAndKeepNoOtherPartBack()
    {
        mFailing = QStringList{"a", "c"};
        const QVector<ConfigurationPart> parts{part("c", 3), part("b", 2), part("a", 1)};
        QCOMPARE(readAllFromEcu(parts), QStringList({"a", "c"}));
        QCOMPARE(writeAllToEcu(parts), QStringList({"a", "c"}));
        QCOMPARE(mCalls.size(), 6);
    }

    void partThatIsOfTheFileAloneIsPassedOver()
    {
        const QVector<ConfigurationPart> parts{{.element = QStringLiteral("Network"),
                                                .errorName = QStringLiteral("Network"),
                                                .writeXml = {},
                                                .readFromXml = {}},
                                               part("a", 1)};
        QCOMPARE(readAllFromEcu(parts), QStringList());
        QCOMPARE(mCalls, QStringList{"read a"});
    }

private:
    ConfigurationPart part(const QString& name, int turn)
    {
        const auto call = [this, name](const QString& what) {
            mCalls.append(what + name);
            return !mFailing.contains(name);
        };
        return {.element = name,
                .errorName = name,
                .writeXml = {},
                .readFromXml = {},
                .ecu = EcuTransfer{.name = name,
                                   .turn = turn,
                                   .read = [call] { return call("read "); },
                                   .write = [call] { return call("write "); }}};
    }

    QStringList mCalls;
    QStringList mFailing;
};

QTEST_APPLESS_MAIN(ConfigurationPartTest)
#include "test_configuration_part.moc"
