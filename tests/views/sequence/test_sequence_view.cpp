#include "ecu/qt_compatibility.h"
#include "tests/views/sequence/SequenceViewFixture.h"

#include <QFrame>
#include <QHeaderView>
#include <QIcon>
#include <QLayout>
#include <QScrollArea>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

class SequenceViewTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qt_compatibility::followScreenScale(); }
    void init() { mFixture = std::make_unique<SequenceViewFixture>(); }
    void cleanup() { mFixture.reset(); }

    void buttonsHaveTheirTexts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("accessibleName");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<bool>("enabled");
        const auto row = [](const char* name, const char* text, const char* toolTip,
                            const char* accessibleName, const char* icon, bool enabled) {
            QTest::newRow(name) << name << text << toolTip << accessibleName << icon << enabled;
        };
        row("readMseqTb", "R", "Read sequence", "Read sequence", "receive.png", true);
        row("writeMseqTb", "W", "Write sequence", "Write sequence", "send.png", true);
        row("addStepTb", "+", "Add step", "Add step", "add.png", true);
        row("cloneStepTb", "C", "Clone step", "Clone step", "copy.png", false);
        row("removeStepTb", "-", "Remove step", "Remove step", "remove.png", false);
    }

    void buttonsHaveTheirTexts()
    {
        QFETCH(QString, name);
        const auto* button = mFixture->view.findChild<QToolButton*>(name);
        QTEST(button->text(), "text");
        QFETCH(QString, icon);
        const QIcon expected(":/icons/icons/" + icon);
        QVERIFY(!expected.pixmap(16).isNull());
        QCOMPARE(button->icon().pixmap(16).toImage(), expected.pixmap(16).toImage());
        QTEST(button->isEnabled(), "enabled");
        QTEST(button->accessibleName(), "accessibleName");
        QTEST(button->toolTip(), "toolTip");
    }

    void formHasItsParts()
    {
        QCOMPARE(mFixture->view.windowTitle(), QString("Form"));
        QVERIFY(mFixture->view.findChild<QScrollArea*>("scrollArea"));
        QVERIFY(mFixture->view.findChild<QWidget*>("scrollAreaWidgetContents"));
        QVERIFY(mFixture->view.findChild<QFrame*>("frame"));
        for (const char* layout : {"verticalLayout", "verticalLayout_4", "horizontalLayout"})
            QVERIFY(mFixture->view.findChild<QLayout*>(layout));
        const QTableView& table = mFixture->table();
        QCOMPARE(table.editTriggers(), QAbstractItemView::DoubleClicked |
                                           QAbstractItemView::SelectedClicked |
                                           QAbstractItemView::AnyKeyPressed);
        QCOMPARE(table.selectionMode(), QAbstractItemView::NoSelection);
        QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectRows);
        QCOMPARE(table.horizontalHeader()->sectionResizeMode(12), QHeaderView::Stretch);
    }

    void tabKeyLeavesTheTable()
    {
        mFixture->view.show();
        mFixture->table().setFocus();
        QTest::keyClick(&mFixture->table(), Qt::Key_Tab);
        QVERIFY(!mFixture->table().hasFocus());
    }

    void columnsKeepTheirWordsReadableInANarrowDock()
    {
        mFixture->view.show();
        mFixture->view.resize(300, 300);
        const QTableView& table = mFixture->table();
        QVERIFY(table.columnWidth(1) > table.fontMetrics().horizontalAdvance("Disabled"));
    }

    void addAppendsWithoutACurrentRow()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(2));
        mFixture->click("addStepTb");
        QCOMPARE(mFixture->model().rowCount(), 3);
        QCOMPARE(mFixture->model().steps()[2], orv::MseqStep{});
    }

    void addInsertsBehindTheCurrentRow()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(6));
        mFixture->setCurrent(3, 2);
        mFixture->click("addStepTb");
        QCOMPARE(mFixture->model().rowCount(), 7);
        QCOMPARE(mFixture->model().steps()[4], orv::MseqStep{});
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(3, 2));
    }

    void clonePutsTheCopyFirst()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
        mFixture->setCurrent(1, 2);
        mFixture->view.cloneStep();
        const std::vector<orv::MseqStep> steps = mFixture->model().steps();
        QCOMPARE(steps.size(), 4U);
        QCOMPARE(steps[1], steps[2]);
        QCOMPARE(steps[1].activeMask, std::uint16_t{2});
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(2, 2));
    }

    void removeTakesTheCurrentRow()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
        mFixture->setCurrent(1);
        mFixture->view.removeStep();
        QCOMPARE(mFixture->model().rowCount(), 2);
        QCOMPARE(mFixture->model().steps()[1].activeMask, std::uint16_t{4});
    }

    void cloneAndRemoveNeedACurrentRow()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
        mFixture->view.cloneStep();
        mFixture->view.removeStep();
        QCOMPARE(mFixture->model().rowCount(), 3);
    }

    void buttonsFollowTheNumberOfSteps()
    {
        expectButtons(true, false, false, true); // as the form has them
        mFixture->view.removeStep();
        expectButtons(true, false, false, false);
        mFixture->click("addStepTb");
        expectButtons(true, true, true, true);
        for (int count = 2; count < 12; ++count)
            mFixture->click("addStepTb");
        QCOMPARE(mFixture->model().rowCount(), 11);
        expectButtons(true, true, true, true);
        mFixture->setCurrent(5);
        mFixture->click("cloneStepTb");
        expectButtons(false, false, true, true);
        for (int count = 12; count > 0; --count)
            mFixture->click("removeStepTb");
        QCOMPARE(mFixture->model().rowCount(), 0);
        expectButtons(true, false, false, false);
    }

    void thirteenthStepIsRefusedThoughTheButtonsAreEnabled()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(12));
        mFixture->setCurrent(3);
        mFixture->view.addStep();
        mFixture->view.cloneStep();
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(12));
    }

    void settingsFileRestoresTheSequence()
    {
        std::vector<orv::MseqStep> steps = SequenceViewFixture::steps(12);
        steps[7].fifthValue = 0x1234;
        mFixture->model().setSteps(steps);
        SequenceViewFixture other;
        QCOMPARE(other.importError(mFixture->section("MSEQ")), QString());
        QCOMPARE(other.model().steps(), steps);
    }

    void importLeavesTheButtonsAlone()
    {
        mFixture->view.removeStep();
        QCOMPARE(mFixture->importError("<MSEQ><Step id='0'>AAAAAAAAAAAAAA==</Step></MSEQ>"),
                 QString());
        QCOMPARE(mFixture->model().rowCount(), 1);
        expectButtons(true, false, false, false);
    }

    void refusedImportChangesNothing()
    {
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
        QCOMPARE(mFixture->importError("<MSEQ><Step id='1'>AAAAAAAAAAAAAA==</Step></MSEQ>"),
                 QString("wrong id value"));
        QCOMPARE(mFixture->model().steps(), SequenceViewFixture::steps(3));
    }

private:
    void expectButtons(bool add, bool clone, bool remove, bool write)
    {
        QCOMPARE(mFixture->button("addStepTb").isEnabled(), add);
        QCOMPARE(mFixture->button("cloneStepTb").isEnabled(), clone);
        QCOMPARE(mFixture->button("removeStepTb").isEnabled(), remove);
        QCOMPARE(mFixture->button("writeMseqTb").isEnabled(), write);
        QVERIFY(mFixture->button("readMseqTb").isEnabled());
    }

    std::unique_ptr<SequenceViewFixture> mFixture;
};

QTEST_MAIN(SequenceViewTest)
#include "test_sequence_view.moc"
