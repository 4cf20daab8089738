#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdItemDelegate.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QtTest>

namespace {

QStringList itemsOf(const QComboBox& box)
{
    QStringList items;
    for (int i = 0; i < box.count(); ++i)
        items << box.itemText(i);
    return items;
}

} // namespace

class ThresholdDelegateTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mModel = std::make_unique<OrvgThreshItemModel>();
        mTester = std::make_unique<QAbstractItemModelTester>(
            mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        mParent = std::make_unique<QWidget>();
        mParent->resize(800, 400);
        mEditor = mDelegate.createEditor(mParent.get(), {}, mModel->index(2, 3));
    }

    void cleanup()
    {
        mParent.reset();
        mTester.reset();
        mModel.reset();
    }

    void editorIsAFramelessPopUp()
    {
        const auto* frame = qobject_cast<QFrame*>(mEditor);
        QVERIFY(frame);
        QCOMPARE(frame->frameShape(), QFrame::Box);
        QCOMPARE(frame->windowType(), Qt::Popup);
        QVERIFY(frame->windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(frame->layout()->contentsMargins(), QMargins(5, 2, 5, 2));
    }

    void editorOpensAtTheCursorInTheColourOfItsParent()
    {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(1, 2, 171));
        mParent->setPalette(palette);
        const QWidget* editor = mDelegate.createEditor(mParent.get(), {}, {});
        QCOMPARE(editor->pos(), QCursor::pos() - QPoint(10, 10));
        QCOMPARE(editor->styleSheet(), QString("background-color: #0102ab;"));
    }

    void editorListsTimesAndLevelsFromTheLargestDown()
    {
        QCOMPARE(itemsOf(timeBox()),
                 QStringList({"6.144 ms", "4.096 ms", "2.6624 ms", "1.6384 ms", "1.2288 ms",
                              "0.8192 ms", "0.4096 ms", "0.2048 ms"}));
        QCOMPARE(levelBox().count(), 32);
        QCOMPARE(levelBox().itemText(0), QString("0.49034"));
        QCOMPARE(levelBox().itemText(15), QString("0.09462"));
        QCOMPARE(levelBox().itemText(31), QString("0.01639"));
    }

    void editorNamesItsRows()
    {
        const auto* layout = qobject_cast<QFormLayout*>(mEditor->layout());
        QCOMPARE(qobject_cast<QLabel*>(layout->labelForField(&timeBox()))->text(), QString("? t"));
        QCOMPARE(qobject_cast<QLabel*>(layout->labelForField(&levelBox()))->text(), QString("Val"));
    }

    void editorShowsTheCell_data()
    {
        QTest::addColumn<QPoint>("indexes");
        QTest::addColumn<int>("timeRow");
        QTest::addColumn<int>("levelRow");
        QTest::newRow("smallest") << QPoint(0, 0) << 7 << 31;
        QTest::newRow("largest") << QPoint(7, 31) << 0 << 0;
        QTest::newRow("between") << QPoint(2, 20) << 5 << 11;
    }

    void editorShowsTheCell()
    {
        QFETCH(QPoint, indexes);
        mModel->setData(mModel->index(2, 3), indexes);
        mDelegate.setEditorData(mEditor, mModel->index(2, 3));
        QTEST(timeBox().currentIndex(), "timeRow");
        QTEST(levelBox().currentIndex(), "levelRow");
    }

    void choiceGoesToTheModel()
    {
        timeBox().setCurrentIndex(0);
        levelBox().setCurrentIndex(0);
        mDelegate.setModelData(mEditor, mModel.get(), mModel->index(2, 3));
        QCOMPARE(mModel->record(2).entries[3], std::uint8_t{0xFF});
        timeBox().setCurrentIndex(5);
        levelBox().setCurrentIndex(31);
        mDelegate.setModelData(mEditor, mModel.get(), mModel->index(2, 3));
        QCOMPARE(mModel->record(2).entries[3], std::uint8_t{0x40});
    }

    void editorStandsOnItsCellOrLeftOfIt_data()
    {
        QTest::addColumn<int>("cellLeft");
        QTest::addColumn<QPoint>("position");
        QTest::newRow("far from the right edge") << 0 << QPoint(0, 60);
        QTest::newRow("room of one pixel more") << 679 << QPoint(679, 60);
        QTest::newRow("exactly the width and the margin") << 680 << QPoint(680, 60);
        QTest::newRow("ten pixels short") << 690 << QPoint(680, 60);
        QTest::newRow("last column") << 740 << QPoint(680, 60);
    }

    void editorStandsOnItsCellOrLeftOfIt()
    {
        QFETCH(int, cellLeft);
        QTEST(thresholdEditorPosition(QRect(cellLeft, 60, 60, 30), 100, 800), "position");
    }

    void popUpFollowsItsParentOnTheScreen()
    {
        mParent->move(100, 50);
        mParent->show();
        QStyleOptionViewItem option;
        option.rect = QRect(120, 60, 60, 30);
        mDelegate.updateEditorGeometry(mEditor, option, {});
        QCOMPARE(mEditor->pos(), mParent->mapToGlobal(QPoint(120, 60)));
    }

private:
    QComboBox& timeBox() { return *mEditor->findChildren<QComboBox*>().at(0); }
    QComboBox& levelBox() { return *mEditor->findChildren<QComboBox*>().at(1); }

    OrvgThresholdItemDelegate mDelegate;
    std::unique_ptr<OrvgThreshItemModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
    std::unique_ptr<QWidget> mParent;
    QWidget* mEditor = nullptr;
};

QTEST_MAIN(ThresholdDelegateTest)
#include "test_threshold_delegate.moc"
