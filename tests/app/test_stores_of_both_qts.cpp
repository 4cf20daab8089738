#include "app/TarvioWindow.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/window_faults.h"

#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QSplitter>
#include <QtTest>

namespace {

const QRect kFloatingDock(100, 100, 340, 260);
const QSize kWindow(900, 640);

QDockWidget* dock(const TarvioWindow& window, const char* name)
{
    return window.findChild<QDockWidget*>(QLatin1String(name));
}

QSplitter* liveSplitter(const TarvioWindow& window)
{
    return window.findChild<QWidget*>("OrvgLiveView")->findChild<QSplitter*>();
}

// Nothing of it is where the first start has it.
void arrange(TarvioWindow& window)
{
    window.resize(kWindow);
    dock(window, "mseqDock")->setFloating(true);
    dock(window, "mseqDock")->setGeometry(kFloatingDock);
    dock(window, "thresholdDock")->close();
    window.addDockWidget(Qt::LeftDockWidgetArea, dock(window, "sensorPositionDock"));
    QCoreApplication::processEvents();
    liveSplitter(window)->setSizes({100, 400});
}

void useLoopback(TemporaryProfile& profile)
{
    profile.setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
}

bool writeStoreOfThisQt(const QString& fileName)
{
    TemporaryProfile profile;
    useLoopback(profile);
    {
        TarvioWindow window;
        window.show();
        arrange(window);
        window.close();
    }
    QFile::remove(fileName);
    return QFile::copy(profile.fileName(), fileName);
}

} // namespace

/// A store that a program over one Qt has written is read by a program over the other: the layout
/// comes back. With TARVIO_STORE_FOLDER in the environment the store of this Qt is kept there.
class StoresOfBothQtsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString kept = qEnvironmentVariable("TARVIO_STORE_FOLDER", mFolder.path());
        QVERIFY(writeStoreOfThisQt(QStringLiteral("%1/qt%2.ini").arg(kept).arg(QT_VERSION_MAJOR)));
        QVERIFY(writeStoreOfThisQt(mFolder.filePath("own.ini")));
    }

    void layoutComesBack_data()
    {
        QTest::addColumn<QString>("fileName");

        QTest::newRow("Qt 5") << QStringLiteral(TARVIO_STORES "/qt5.ini");
        QTest::newRow("Qt 6") << QStringLiteral(TARVIO_STORES "/qt6.ini");
        QTest::newRow("this Qt") << mFolder.filePath("own.ini");
    }

    void layoutComesBack()
    {
        QFETCH(QString, fileName);
        TemporaryProfile profile;
        QVERIFY(QDir().mkpath(QFileInfo(profile.fileName()).path()));
        QVERIFY(QFile::copy(fileName, profile.fileName()));
        QVERIFY(QFile::setPermissions(profile.fileName(), QFile::ReadOwner | QFile::WriteOwner));
        useLoopback(profile);

        TarvioWindow window;
        window.show();
        QCoreApplication::processEvents();

        QCOMPARE(faultOf(window), QString());
        QCOMPARE(window.size(), kWindow);
        QVERIFY(dock(window, "mseqDock")->isFloating());
        QCOMPARE(dock(window, "mseqDock")->geometry(), kFloatingDock);
        QVERIFY(dock(window, "thresholdDock")->isHidden());
        QCOMPARE(window.dockWidgetArea(dock(window, "sensorPositionDock")), Qt::LeftDockWidgetArea);
        QVERIFY(liveSplitter(window)->sizes().at(0) < liveSplitter(window)->sizes().at(1));
    }

private:
    QTemporaryDir mFolder;
};

QTEST_MAIN(StoresOfBothQtsTest)
#include "test_stores_of_both_qts.moc"
