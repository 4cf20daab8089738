#include "fuzz/quiet_messages.h"
#include "fuzz/targets.h"

#include <QDir>
#include <QtTest>

#include <algorithm>

namespace {

const QDir kFuzzFolder(QStringLiteral(TARVIO_FUZZ_FOLDER));

constexpr int kCuts = 8;

const FuzzTarget* targetOf(const QString& name)
{
    const auto* found = std::ranges::find_if(
        kFuzzTargets, [&name](const FuzzTarget& target) { return name == target.name; });
    return found == kFuzzTargets.end() ? nullptr : found;
}

QStringList filesIn(const QString& folder)
{
    const QDir inputs(kFuzzFolder.filePath(folder));
    QStringList files;
    for (const QString& name : inputs.entryList(QDir::Files, QDir::Name))
        files << inputs.filePath(name);
    return files;
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool holds(const FuzzTarget& target, const QByteArray& input)
{
    return target.holds({reinterpret_cast<const std::uint8_t*>(input.constData()),
                         static_cast<std::size_t>(input.size())});
}

} // namespace

/// Every input that the fuzzers begin with, and every one that ever broke something.
class TestKeptInputs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { quietMessages(); }
    void everyFolderIsOfATarget_data();
    void everyFolderIsOfATarget();
    void everyTargetHasInputs();
    void inputIsWithstood_data() { addInputs(); }
    void inputIsWithstood();
    void inputThatIsCutIsWithstood_data() { addInputs(); }
    void inputThatIsCutIsWithstood();

private:
    static void addInputs();
};

void TestKeptInputs::addInputs()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("file");

    for (const FuzzTarget& target : kFuzzTargets) {
        for (const char* kind : {"corpus", "findings"}) {
            for (const QString& file : filesIn(QStringLiteral("%1/%2").arg(kind, target.name)))
                QTest::addRow("%s/%s/%s", kind, target.name, qPrintable(QFileInfo(file).fileName()))
                    << QString(target.name) << file;
        }
    }
}

void TestKeptInputs::everyFolderIsOfATarget_data()
{
    QTest::addColumn<QString>("kind");

    QTest::newRow("corpus") << "corpus";
    QTest::newRow("findings") << "findings";
}

void TestKeptInputs::everyFolderIsOfATarget()
{
    QFETCH(QString, kind);
    const QDir folder(kFuzzFolder.filePath(kind));
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        QVERIFY2(targetOf(name), qPrintable(name));
}

void TestKeptInputs::everyTargetHasInputs()
{
    for (const FuzzTarget& target : kFuzzTargets)
        QVERIFY2(!filesIn(QStringLiteral("corpus/") + target.name).isEmpty(), target.name);
}

void TestKeptInputs::inputIsWithstood()
{
    QFETCH(QString, target);
    QFETCH(QString, file);
    QVERIFY(holds(*targetOf(target), contentOf(file)));
}

void TestKeptInputs::inputThatIsCutIsWithstood()
{
    QFETCH(QString, target);
    QFETCH(QString, file);
    const QByteArray input = contentOf(file);
    for (int cut = 0; cut < kCuts; ++cut) {
        const auto length = input.size() * cut / kCuts;
        QVERIFY2(holds(*targetOf(target), input.left(length)), qPrintable(QString::number(length)));
    }
}

QTEST_MAIN(TestKeptInputs)
#include "test_kept_inputs.moc"
