#include "app/saved_states.h"
#include "tests/support/Mutator.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QScreen>
#include <QSplitter>
#include <QToolBar>
#include <QtTest>

/// What Qt saves of real windows is sound; what it never saved is not.
class TestSavedStates : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void savedGeometryIsSound_data();
    void savedGeometryIsSound();
    void geometryThatNoWindowHasIsNot_data();
    void geometryThatNoWindowHasIsNot();
    void geometryOfAnUnpluggedScreenIsSound();

    void savedLayoutOfTheDocksIsSound_data();
    void savedLayoutOfTheDocksIsSound();
    void hiddenToolBarIsNot();
    void whatFloatsAndIsLargerThanTheDesktopIsNot_data();
    void whatFloatsAndIsLargerThanTheDesktopIsNot();
    void dockBesideTheDesktopComesBackOntoItButNoToolBar_data();
    void dockBesideTheDesktopComesBackOntoItButNoToolBar();
    void layoutThatNoWindowHasIsNot_data();
    void layoutThatNoWindowHasIsNot();
    void endlessNestingIsNot();
    void layoutOfOtherDocksIsNot();

    void savedSplitterIsSound();
    void splitterThatIsNotLikeThisOneIsNot_data();
    void splitterThatIsNotLikeThisOneIsNot();
    void splitterWithoutSectionsIsSound();

    void stateCutAnywhereIsNotSound();
    void stateWithMoreBehindItIsNotSound();
    void damageOfAnyKindIsSeenInBoundedTime();

private:
    QByteArray docks() const { return mWindow->saveState(); }
    static bool isGeometrySound(const QByteArray& geometry)
    {
        return isSoundGeometry(geometry, kDesktop, kDesktop.size());
    }
    bool areDocksSound(const QByteArray& state) const
    {
        return isSoundDockState(state, mOwn, kDesktop);
    }
    QDockWidget* dock(int index) const { return mWindow->findChildren<QDockWidget*>().at(index); }
    QToolBar* toolBar() const { return mWindow->findChild<QToolBar*>(); }

    static inline const QRect kDesktop{0, 0, 800, 600};

    std::unique_ptr<QMainWindow> mWindow;
    QByteArray mOwn; // the layout of the docks before anything has been changed
    std::unique_ptr<QSplitter> mSplitter;
};

namespace {

template<typename Number>
QByteArray patched(QByteArray state, int offset, Number number)
{
    qToBigEndian(number, state.data() + offset);
    return state;
}

} // namespace

void TestSavedStates::init()
{
    mWindow = std::make_unique<QMainWindow>();
    mWindow->setCentralWidget(new QWidget);
    mWindow->addToolBar(QStringLiteral("bar"))->setObjectName(QStringLiteral("bar"));
    for (const char* name : {"one", "two", "three"}) {
        auto* dock = new QDockWidget(name, mWindow.get());
        dock->setObjectName(name);
        dock->setWidget(new QWidget);
        mWindow->addDockWidget(Qt::BottomDockWidgetArea, dock);
    }
    mWindow->resize(400, 300);
    mWindow->show();
    mOwn = mWindow->saveState();
    mSplitter = std::make_unique<QSplitter>();
    mSplitter->addWidget(new QWidget);
    mSplitter->addWidget(new QWidget);
}

void TestSavedStates::cleanup()
{
    mWindow.reset();
    mSplitter.reset();
}

void TestSavedStates::savedGeometryIsSound_data()
{
    QTest::addColumn<int>("state");

    QTest::newRow("normal") << int{Qt::WindowNoState};
    QTest::newRow("maximized") << int{Qt::WindowMaximized};
    QTest::newRow("full screen") << int{Qt::WindowFullScreen};
    QTest::newRow("minimized") << int{Qt::WindowMinimized};
}

void TestSavedStates::savedGeometryIsSound()
{
    QFETCH(int, state);
    mWindow->setWindowState(static_cast<Qt::WindowState>(state));
    QCoreApplication::processEvents();
    QVERIFY(isGeometrySound(mWindow->saveGeometry()));
    mWindow->move(-200, -20);
    QVERIFY(isGeometrySound(mWindow->saveGeometry()));
    mWindow->hide();
    QVERIFY(isGeometrySound(mWindow->saveGeometry()));
}

// Magic 4, versions 2 + 2, frame 16, normal geometry 16, screen 4, maximized 1, full screen 1,
// width of the screen 4, geometry 16.
void TestSavedStates::geometryThatNoWindowHasIsNot_data()
{
    QTest::addColumn<QByteArray>("geometry");
    const auto sound = [] {
        QWidget window;
        window.resize(400, 300);
        window.show();
        return window.saveGeometry();
    }();

    QTest::newRow("another magic") << patched(sound, 0, 0x1D9D0CC);
    QTest::newRow("version to come") << patched(sound, 4, qint16{4});
    QTest::newRow("endless to the right") << patched(sound, 24 + 8, 0x7FFFFFFF);
    QTest::newRow("endless to the left") << patched(sound, 24, -0x7FFFFFFF);
    QTest::newRow("right before left") << patched(sound, 24 + 8, -5000);
    QTest::newRow("bottom above top") << patched(sound, 24 + 12, -5000);
    QTest::newRow("frame out of range") << patched(sound, 8, 0x7FFFFFFF);
    QTest::newRow("inner geometry out of range") << patched(sound, 50 + 12, 0x7FFFFFFF);
    QTest::newRow("wider than the desktop") << patched(sound, 50 + 8, 850);
    QTest::newRow("higher than the desktop") << patched(sound, 50 + 12, 650);
    QTest::newRow("normally wider than the desktop") << patched(sound, 24 + 8, 850);
    QTest::newRow("a mere edge on the desktop")
        << patched(patched(sound, 50, 710), 50 + 8, 710 + 399);
    QTest::newRow("no screen") << patched(sound, 40, -1);
    QTest::newRow("screen that no desk has room for") << patched(sound, 40, 100'000);
    QTest::newRow("neither maximized nor not") << patched(sound, 44, qint8{1});
    QTest::newRow("neither full screen nor not") << patched(sound, 45, qint8{3});
    QTest::newRow("screen of no width") << patched(sound, 46, -1);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("junk");
}

void TestSavedStates::geometryThatNoWindowHasIsNot()
{
    QFETCH(QByteArray, geometry);
    QVERIFY(!isGeometrySound(geometry));
}

void TestSavedStates::geometryOfAnUnpluggedScreenIsSound()
{
    mWindow->setGeometry(1500, 200, 400, 300);
    QVERIFY(isGeometrySound(patched(mWindow->saveGeometry(), 40, 1)));
}

void TestSavedStates::savedLayoutOfTheDocksIsSound_data()
{
    QTest::addColumn<QString>("layout");

    for (const char* layout : {"as built", "hidden window", "tabs", "tabs and a split", "floating",
                               "closed", "closed while floating", "other area",
                               "tool bar on the left", "floating tool bar", "corner"})
        QTest::newRow(layout) << layout;
}

void TestSavedStates::savedLayoutOfTheDocksIsSound()
{
    QFETCH(QString, layout);
    if (layout == "hidden window")
        mWindow->hide();
    if (layout.startsWith("tabs"))
        mWindow->tabifyDockWidget(dock(0), dock(1));
    if (layout.endsWith("split"))
        mWindow->splitDockWidget(dock(1), dock(2), Qt::Vertical);
    if (layout.endsWith("floating")) {
        dock(0)->setFloating(true);
        dock(0)->setGeometry(10, 10, 200, 150);
    }
    if (layout.startsWith("closed"))
        dock(0)->close();
    if (layout == "other area")
        mWindow->addDockWidget(Qt::LeftDockWidgetArea, dock(1));
    if (layout == "tool bar on the left")
        mWindow->addToolBar(Qt::LeftToolBarArea, toolBar());
    if (layout == "floating tool bar") {
        toolBar()->setWindowFlag(Qt::Tool);
        toolBar()->setGeometry(10, 10, 200, 50);
        toolBar()->show();
    }
    if (layout == "corner")
        mWindow->setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    QCoreApplication::processEvents();
    QVERIFY(areDocksSound(docks()));
}

void TestSavedStates::hiddenToolBarIsNot()
{
    toolBar()->hide();
    QVERIFY(!areDocksSound(docks()));
}

void TestSavedStates::whatFloatsAndIsLargerThanTheDesktopIsNot_data()
{
    QTest::addColumn<QRect>("rect");

    QTest::newRow("wider") << QRect(0, 0, 900, 50);
    QTest::newRow("higher") << QRect(0, 0, 100, 700);
}

void TestSavedStates::whatFloatsAndIsLargerThanTheDesktopIsNot()
{
    QFETCH(QRect, rect);
    dock(0)->setFloating(true);
    dock(0)->setGeometry(rect);
    QVERIFY(!areDocksSound(docks()));
    dock(0)->setGeometry(10, 10, 200, 50);
    QVERIFY(areDocksSound(docks()));
    toolBar()->setWindowFlag(Qt::Tool);
    toolBar()->setGeometry(rect);
    toolBar()->show();
    QVERIFY(!areDocksSound(docks()));
}

void TestSavedStates::dockBesideTheDesktopComesBackOntoItButNoToolBar_data()
{
    QTest::addColumn<QPoint>("corner");

    QTest::newRow("right of it") << QPoint(5000, 10);
    QTest::newRow("above it") << QPoint(10, -5000);
}

void TestSavedStates::dockBesideTheDesktopComesBackOntoItButNoToolBar()
{
    QFETCH(QPoint, corner);
    dock(0)->setFloating(true);
    dock(0)->setGeometry({corner, QSize(200, 150)});
    const QByteArray state = docks();
    QVERIFY(areDocksSound(state));
    QVERIFY(mWindow->restoreState(state));
    QVERIFY(dock(0)->isFloating());
    QVERIFY(mWindow->screen()->geometry().contains(dock(0)->geometry()));
    dock(0)->setGeometry(10, 10, 200, 150);
    toolBar()->setWindowFlag(Qt::Tool);
    toolBar()->setGeometry({corner, QSize(200, 50)});
    toolBar()->show();
    QVERIFY(!areDocksSound(docks())); // Qt would leave it there
}

// Marker 4, version 4, docks' marker 1, count of areas 4, area 4, its size 8, its marker 1,
// orientation 1, count of items 4, marker of the first 1, length of its name 4.
void TestSavedStates::layoutThatNoWindowHasIsNot_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto number = [](qint32 value) { return patched(QByteArray(4, '\0'), 0, value); };
    const QByteArray endless = number(0x7FFFFFFF);

    QTest::newRow("another marker") << 0 << number(0xFE);
    QTest::newRow("another version") << 4 << number(1);
    QTest::newRow("other docks' marker") << 8 << QByteArray("\xFE");
    QTest::newRow("endless areas") << 9 << endless;
    QTest::newRow("negative areas") << 9 << number(-1);
    QTest::newRow("no such area") << 13 << number(4);
    QTest::newRow("area of endless width") << 17 << endless;
    QTest::newRow("other kind of area") << 25 << QByteArray("\x01");
    QTest::newRow("no orientation") << 26 << QByteArray("\x03", 1);
    QTest::newRow("endless items") << 27 << endless;
    QTest::newRow("other kind of item") << 31 << QByteArray("\x01");
    QTest::newRow("endless name") << 32 << endless;
    QTest::newRow("name of half a character") << 32 << number(5);
    QTest::newRow("flags of a dock") << 36 + 6 << QByteArray("\x04");
    QTest::newRow("endless position") << 36 + 7 << endless;
    QTest::newRow("endless size") << 36 + 11 << endless;
}

void TestSavedStates::layoutThatNoWindowHasIsNot()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    const QByteArray state = docks();
    QVERIFY(areDocksSound(state));
    QVERIFY(!areDocksSound(QByteArray(state).replace(offset, bytes.size(), bytes)));
}

void TestSavedStates::endlessNestingIsNot()
{
    const QByteArray level = QByteArray::fromHex("fc0100000001fc" + QByteArray(32, '0'));
    const QByteArray state = QByteArray::fromHex("000000ff00000000fd0000000100000003") +
                             QByteArray(8, '\0') + level.repeated(200'000);
    QVERIFY(!areDocksSound(state));
}

void TestSavedStates::layoutOfOtherDocksIsNot()
{
    const QByteArray state = docks();
    dock(1)->setObjectName(QStringLiteral("four"));
    QVERIFY(!areDocksSound(docks()));
    dock(1)->setObjectName(QStringLiteral("one"));
    QVERIFY(!areDocksSound(docks()));
    mWindow->removeDockWidget(dock(1));
    QVERIFY(!areDocksSound(docks()));
    QVERIFY(areDocksSound(state));
    toolBar()->setObjectName(QStringLiteral("no bar"));
    QVERIFY(!areDocksSound(docks()));
}

void TestSavedStates::savedSplitterIsSound()
{
    const QByteArray own = mSplitter->saveState();
    QVERIFY(isSoundSplitterState(own, own));
    mSplitter->resize(500, 100);
    mSplitter->show();
    mSplitter->setSizes({100, 400});
    QVERIFY(isSoundSplitterState(mSplitter->saveState(), own));
    QVERIFY(isSoundSplitterState(own, mSplitter->saveState()));
}

// Marker 4, version 4, count 4, two sizes 8, collapsible 1, width of the handle 4, opaque resizing
// 1, orientation 4, opaque resizing set 1.
void TestSavedStates::splitterThatIsNotLikeThisOneIsNot_data()
{
    QTest::addColumn<QByteArray>("state");
    QSplitter splitter;
    splitter.addWidget(new QWidget);
    splitter.addWidget(new QWidget);
    const QByteArray own = splitter.saveState();

    QTest::newRow("another marker") << patched(own, 0, 0xFE);
    QTest::newRow("another version") << patched(own, 4, 2);
    QTest::newRow("endless sections") << patched(own, 8, 0x7FFFFFFF);
    QTest::newRow("more than any memory") << patched(own, 8, 0x20000000);
    QTest::newRow("negative sections") << patched(own, 8, -1);
    QTest::newRow("one section") << patched(own, 8, 1);
    QTest::newRow("endless size") << patched(own, 12, 0x7FFFFFFF);
    QTest::newRow("endless second size") << patched(own, 16, 0x7FFFFFFF);
    QTest::newRow("size larger than any screen") << patched(own, 12, 32768);
    QTest::newRow("negative size") << patched(own, 12, -2);
    QTest::newRow("not collapsible") << patched(own, 20, qint8{0});
    QTest::newRow("endless handle") << patched(own, 21, 0x7FFFFFFF);
    QTest::newRow("handle wider than a screen") << patched(own, 21, 32767);
    QTest::newRow("other way of resizing") << patched(own, 25, qint8{0});
    QTest::newRow("other orientation") << patched(own, 26, 2);
    QTest::newRow("no orientation") << patched(own, 26, 0);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("junk");
}

void TestSavedStates::splitterThatIsNotLikeThisOneIsNot()
{
    QFETCH(QByteArray, state);
    QVERIFY(!isSoundSplitterState(state, mSplitter->saveState()));
}

void TestSavedStates::splitterWithoutSectionsIsSound()
{
    const QByteArray own = QSplitter().saveState();
    QVERIFY(isSoundSplitterState(own, own));
    QVERIFY(!isSoundSplitterState("junk", own));
    QVERIFY(!isSoundSplitterState(own, "junk"));
}

void TestSavedStates::stateCutAnywhereIsNotSound()
{
    const QByteArray geometry = mWindow->saveGeometry();
    for (int length = 0; length < geometry.size(); ++length)
        QVERIFY(!isGeometrySound(geometry.left(length)));
    const QByteArray layout = docks();
    for (int length = 0; length < layout.size(); ++length)
        QVERIFY(!areDocksSound(layout.left(length)));
    const QByteArray splitter = mSplitter->saveState();
    for (int length = 0; length < splitter.size(); ++length)
        QVERIFY(!isSoundSplitterState(splitter.left(length), splitter));
}

void TestSavedStates::stateWithMoreBehindItIsNotSound()
{
    const QByteArray splitter = mSplitter->saveState();
    QVERIFY(!isGeometrySound(mWindow->saveGeometry() + '\0'));
    QVERIFY(!areDocksSound(docks() + '\0'));
    QVERIFY(!isSoundSplitterState(splitter + '\0', splitter));
}

// A count that is read without a look at the bytes there are takes minutes here.
void TestSavedStates::damageOfAnyKindIsSeenInBoundedTime()
{
    Mutator mutate(20'25);
    const QByteArray geometry = mWindow->saveGeometry();
    const QByteArray splitter = mSplitter->saveState();
    mWindow->tabifyDockWidget(dock(0), dock(1));
    dock(2)->setFloating(true);
    const QByteArray layout = docks();
    int unsound = 0;
    for (int round = 0; round < 2000; ++round) {
        unsound += isGeometrySound(mutate(geometry)) ? 0 : 1;
        unsound += areDocksSound(mutate(layout)) ? 0 : 1;
        unsound += isSoundSplitterState(mutate(splitter), splitter) ? 0 : 1;
    }
    QVERIFY2(unsound > 3000 && unsound < 6000, qPrintable(QString::number(unsound)));
}

QTEST_MAIN(TestSavedStates)
#include "test_saved_states.moc"
