#include "views/sequence/OrvgMseqStepItemModel.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QtTest>

class SequenceModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mModel = std::make_unique<OrvgMseqStepItemModel>();
        mTester = std::make_unique<QAbstractItemModelTester>(
            mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    void cleanup()
    {
        mTester.reset();
        mModel.reset();
    }

    void emptyTableHasItsHeadersAndNoRows()
    {
        QCOMPARE(mModel->rowCount(), 0);
        QCOMPARE(mModel->columnCount(), 13);
        QCOMPARE(header(0, Qt::Horizontal).toString(), QString("Mode"));
        QCOMPARE(header(1, Qt::Horizontal).toString(), QString("Sens 1"));
        QCOMPARE(header(12, Qt::Horizontal).toString(), QString("Sens 12"));
        QVERIFY(!header(13, Qt::Horizontal).isValid());
    }

    void rowsAreNumberedFromOne()
    {
        fill(12);
        QCOMPARE(header(0, Qt::Vertical).toString(), QString("Step 1"));
        QCOMPARE(header(11, Qt::Vertical).toString(), QString("Step 12"));
        QVERIFY(!mModel->headerData(0, Qt::Vertical, Qt::ToolTipRole).isValid());
        QVERIFY(!mModel->headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
    }

    void cellsHaveNoChildren()
    {
        fill(1);
        QCOMPARE(mModel->rowCount(mModel->index(0, 0)), 0);
        QCOMPARE(mModel->columnCount(mModel->index(0, 0)), 0);
    }

    void cellsShowModeAndStates()
    {
        mModel->setSteps(std::vector<orv::MseqStep>{
            {.activeMask = 0x0801, .passiveMask = 0x0003, .modulation = 2, .code = 0},
            {.modulation = 2, .code = 3},
            {.code = 3}});
        QCOMPARE(text(0, 0), QString("BPSK0"));
        QCOMPARE(text(1, 0), QString("BPSK1"));
        QCOMPARE(text(2, 0), QString("AM"));
        QCOMPARE(text(0, 1), QString("Active"));
        QCOMPARE(text(0, 2), QString("Passive"));
        QCOMPARE(text(0, 3), QString("Disabled"));
        QCOMPARE(text(0, 12), QString("Active"));
        for (int column = 0; column < 13; ++column)
            QCOMPARE(at(0, column, Qt::EditRole), at(0, column, Qt::DisplayRole));
    }

    void cellsHaveTheColoursOfTheirStates()
    {
        mModel->setSteps(std::vector<orv::MseqStep>{{.activeMask = 1, .passiveMask = 3}});
        QCOMPARE(at(0, 0, Qt::BackgroundRole).value<QColor>(), QColor(200, 205, 200));
        QCOMPARE(at(0, 1, Qt::BackgroundRole).value<QColor>(), QColor(250, 220, 180));
        QCOMPARE(at(0, 2, Qt::BackgroundRole).value<QColor>(), QColor(200, 200, 250));
        QVERIFY(!at(0, 3, Qt::BackgroundRole).isValid());
    }

    void cellsAreCentredAndHaveNothingElse()
    {
        fill(1);
        QCOMPARE(at(0, 0, Qt::TextAlignmentRole).toInt(), int{Qt::AlignCenter});
        QVERIFY(!at(0, 0, Qt::ToolTipRole).isValid());
        QVERIFY(!at(0, 1, Qt::ForegroundRole).isValid());
        QVERIFY(!mModel->data({}, Qt::DisplayRole).isValid());
    }

    void everyCellIsSelectableEditableAndEnabled()
    {
        fill(1);
        QCOMPARE(mModel->flags(mModel->index(0, 12)),
                 Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled);
        QCOMPARE(mModel->flags({}), Qt::ItemFlags(Qt::NoItemFlags));
    }

    void integerOfAWordSetsTheStepsWords_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("value");
        QTest::addColumn<QVector<int>>("words");
        QTest::newRow("AM") << 0 << 0 << QVector<int>{0x0FF0, 0x00FF, 0, 0, 0};
        QTest::newRow("BPSK0") << 0 << 1 << QVector<int>{0x0FF0, 0x00FF, 65535, 0, 0};
        QTest::newRow("BPSK1") << 0 << 2 << QVector<int>{0x0FF0, 0x00FF, 65535, 65535, 0};
        QTest::newRow("disabled") << 5 << 0 << QVector<int>{0x0FE0, 0x00EF, 7, 8, 9};
        QTest::newRow("active") << 12 << 1 << QVector<int>{0x0FF0, 0x08FF, 7, 8, 9};
        QTest::newRow("passive") << 12 << 2 << QVector<int>{0x07F0, 0x08FF, 7, 8, 9};
        QTest::newRow("beyond the words") << 12 << 3 << QVector<int>{0x0FF0, 0x00FF, 7, 8, 9};
        QTest::newRow("no mode") << 0 << 3 << QVector<int>{0x0FF0, 0x00FF, 7, 8, 9};
        QTest::newRow("negative") << 1 << -1 << QVector<int>{0x0FF0, 0x00FF, 7, 8, 9};
    }

    void integerOfAWordSetsTheStepsWords()
    {
        mModel->setSteps(std::vector<orv::MseqStep>{{.activeMask = 0x0FF0,
                                                     .passiveMask = 0x00FF,
                                                     .modulation = 7,
                                                     .code = 8,
                                                     .fifthValue = 9}});
        QFETCH(int, column);
        QFETCH(int, value);
        const QModelIndex cell = mModel->index(0, column);
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(mModel->setData(cell, value));
        const orv::MseqStep step = mModel->steps().front();
        QTEST(QVector<int>(
                  {step.activeMask, step.passiveMask, step.modulation, step.code, step.fifthValue}),
              "words");
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), cell);
        QCOMPARE(changes[0][1].toModelIndex(), cell);
        QCOMPARE(changes[0][2].value<QVector<int>>(), QVector<int>{Qt::EditRole});
    }

    void otherRolesAndForeignCellsAreRefused()
    {
        fill(1);
        QSignalSpy changes(mModel.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(!mModel->setData(mModel->index(0, 2), 1, Qt::DisplayRole));
        QVERIFY(!mModel->setData(mModel->index(0, 2), 1, Qt::BackgroundRole));
        QVERIFY(!mModel->setData({}, 1));
        QCOMPARE(changes.size(), 0);
        QCOMPARE(text(0, 2), QString("Disabled"));
    }

    void insertedStepIsEmptyAndMovesThoseBehindIt()
    {
        fill(2);
        QPersistentModelIndex second(mModel->index(1, 0));
        QSignalSpy inserted(mModel.get(), &QAbstractItemModel::rowsInserted);
        mModel->insertEmptyStep(1);
        QCOMPARE(activeMasks(), QVector<int>({1, 0, 2}));
        QCOMPARE(text(1, 0), QString("AM"));
        QCOMPARE(second.row(), 2);
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(inserted[0][1].toInt(), 1);
        QCOMPARE(inserted[0][2].toInt(), 1);
    }

    void cloneComesFirst()
    {
        fill(3);
        QPersistentModelIndex second(mModel->index(1, 0));
        mModel->cloneStep(1);
        QCOMPARE(activeMasks(), QVector<int>({1, 2, 2, 3}));
        QCOMPARE(second.row(), 2);
    }

    void cloneKeepsTheFifthWord()
    {
        mModel->setSteps(std::vector<orv::MseqStep>{{.modulation = 7, .fifthValue = 9}});
        mModel->cloneStep(0);
        QCOMPARE(mModel->steps()[0], mModel->steps()[1]);
        QCOMPARE(mModel->steps()[0].fifthValue, std::uint16_t{9});
    }

    void removedStepLeavesTheOthers()
    {
        fill(3);
        QPersistentModelIndex last(mModel->index(2, 0));
        QSignalSpy removed(mModel.get(), &QAbstractItemModel::rowsRemoved);
        mModel->removeStep(1);
        QCOMPARE(activeMasks(), QVector<int>({1, 3}));
        QCOMPARE(last.row(), 1);
        QCOMPARE(removed.size(), 1);
    }

    void rowsThatCannotBeAreRefused()
    {
        fill(2);
        mModel->insertEmptyStep(-1);
        mModel->insertEmptyStep(3);
        mModel->cloneStep(-1);
        mModel->cloneStep(2);
        mModel->removeStep(-1);
        mModel->removeStep(2);
        QCOMPARE(activeMasks(), QVector<int>({1, 2}));
    }

    void thereIsNoThirteenthStep()
    {
        fill(12);
        const QVector<int> before = activeMasks();
        mModel->insertEmptyStep(12);
        mModel->insertEmptyStep(4);
        mModel->cloneStep(11);
        QCOMPARE(activeMasks(), before);
        fill(13);
        QCOMPARE(activeMasks(), before);
    }

    void newSequenceIsAReset()
    {
        QSignalSpy resets(mModel.get(), &QAbstractItemModel::modelReset);
        fill(2);
        QCOMPARE(resets.size(), 1);
        fill(0);
        QCOMPARE(mModel->rowCount(), 0);
        QVERIFY(mModel->steps().empty());
    }

    void stepsAreValidWhateverTheyWereBefore()
    {
        fill(1);
        QVERIFY(mModel->steps().front().valid);
    }

private:
    // Step i sends with the mask i + 1.
    void fill(int count)
    {
        std::vector<orv::MseqStep> steps(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            steps[static_cast<std::size_t>(i)].activeMask = static_cast<std::uint16_t>(i + 1);
        mModel->setSteps(steps);
    }

    QVector<int> activeMasks() const
    {
        QVector<int> masks;
        for (const orv::MseqStep& step : mModel->steps())
            masks << step.activeMask;
        return masks;
    }

    QVariant header(int section, Qt::Orientation orientation) const
    {
        return mModel->headerData(section, orientation, Qt::DisplayRole);
    }

    QVariant at(int row, int column, int role) const
    {
        return mModel->data(mModel->index(row, column), role);
    }

    QString text(int row, int column) const { return at(row, column, Qt::DisplayRole).toString(); }

    std::unique_ptr<OrvgMseqStepItemModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

QTEST_MAIN(SequenceModelTest)
#include "test_sequence_model.moc"
