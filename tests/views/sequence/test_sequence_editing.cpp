#include "tests/views/sequence/SequenceViewFixture.h"
#include "views/sequence/OrvgStepItemDelegate.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QXmlStreamWriter>

class SequenceEditingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Nor does the list take a release for a double click's.
        QApplication::setDoubleClickInterval(0);
    }

    void init()
    {
        mFixture = std::make_unique<SequenceViewFixture>();
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
    }

    void cleanup() { mFixture.reset(); }

    void editorOffersTheWordsOfItsColumn()
    {
        QCOMPARE(words(0), QStringList({"AM", "BPSK0", "BPSK1"}));
        QCOMPARE(words(1), QStringList({"Disabled", "Active", "Passive"}));
        QCOMPARE(words(12), QStringList({"Disabled", "Active", "Passive"}));
    }

    void editorStartsWithTheCellsWord()
    {
        QCOMPARE(mFixture->openEditor(0, 2)->currentText(), QString("Passive"));
        QCOMPARE(mFixture->openEditor(0, 1)->currentText(), QString("Active"));
    }

    void editorIsWideEnoughForItsWordsAndStaysInTheTable()
    {
        mFixture->view.resize(600, 320);
        for (const int column : {1, 12}) {
            const QComboBox* editor = mFixture->openEditor(0, column);
            QVERIFY(editor->width() >= editor->sizeHint().width());
            QVERIFY(mFixture->table().viewport()->rect().contains(editor->geometry()));
        }
    }

    void choiceByMouseIsTakenAtOnce()
    {
        QComboBox* editor = mFixture->openEditor(0, 5);
        openList(*editor);
        clickInList(*editor, 2);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(0, 5), QString("Passive"));
        QCOMPARE(mFixture->model().steps()[0].passiveMask, std::uint16_t{0x0013});
    }

    void listOpensAndChoosesByKeyboardAlone()
    {
        showAt(0, 5);
        QTest::keyClick(&mFixture->table(), Qt::Key_Space);
        QComboBox* editor = mFixture->editor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->view()->isVisible());
        QTest::keyClick(editor->view(), Qt::Key_Down);
        QTest::keyClick(editor->view(), Qt::Key_Return);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(0, 5), QString("Active"));
    }

    void initialLetterAndEnterChooseByKeyboardAlone()
    {
        showAt(1, 0);
        QTest::keyClick(&mFixture->table(), Qt::Key_Right);
        QTest::keyClick(&mFixture->table(), Qt::Key_D);
        QComboBox* editor = mFixture->editor();
        QVERIFY(editor);
        QCOMPARE(editor->currentText(), QString("Disabled"));
        QCOMPARE(mFixture->text(1, 1), QString("Passive"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(1, 1), QString("Disabled"));
    }

    void arrowKeysWalkThroughTheWordsUntilTabTakesOne()
    {
        QComboBox* editor = mFixture->openEditor(0, 0);
        QTest::keyClick(editor, Qt::Key_Down);
        QTest::keyClick(editor, Qt::Key_Down);
        QCOMPARE(mFixture->text(0, 0), QString("AM"));
        QTest::keyClick(editor, Qt::Key_Tab);
        QCOMPARE(mFixture->text(0, 0), QString("BPSK1"));
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(0, 1));
    }

    void escapeKeepsTheCell()
    {
        QComboBox* editor = mFixture->openEditor(0, 5);
        QTest::keyClick(editor, Qt::Key_Down);
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(0, 5), QString("Disabled"));
    }

    void closedListLeavesTheEditorOpen()
    {
        QComboBox* editor = mFixture->openEditor(0, 5);
        openList(*editor);
        QTest::keyClick(editor->view(), Qt::Key_Escape);
        QTRY_VERIFY(!editor->view()->isVisible());
        QTest::keyClick(editor, Qt::Key_Down);
        QCOMPARE(mFixture->editor(), editor);
        QCOMPARE(mFixture->text(0, 5), QString("Disabled"));
    }

    void openEditorAndCurrentCellSurviveARowAbove()
    {
        QComboBox* editor = mFixture->openEditor(1, 5);
        QTest::keyClick(editor, Qt::Key_Down);
        mFixture->model().insertEmptyStep(0);
        QCOMPARE(mFixture->editor(), editor);
        QCOMPARE(mFixture->table().currentIndex(), mFixture->model().index(2, 5));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(2, 5), QString("Active"));
        QCOMPARE(mFixture->text(1, 5), QString("Disabled"));
    }

    void cloneTakesWhatIsShown()
    {
        mFixture->view.addStep(); // enables the button
        QTest::keyClick(mFixture->openEditor(0, 5), Qt::Key_Down);
        mFixture->click("cloneStepTb");
        QCOMPARE(mFixture->text(0, 5), QString("Active"));
        QCOMPARE(mFixture->text(1, 5), QString("Active"));
        QTRY_VERIFY(!mFixture->editor());
    }

    void writeTakesWhatIsShown()
    {
        mFixture->socket.queueReply(0, {});
        QTest::keyClick(mFixture->openEditor(0, 12), Qt::Key_Down);
        mFixture->click("writeMseqTb");
        QCOMPARE(mFixture->socket.requests().size(), 1U);
        // code, access and count come before the masks
        QCOMPARE(mFixture->socket.requests()[0][4], std::uint8_t{0x08});
    }

    void settingsFileTakesWhatIsShown()
    {
        QCOMPARE(mFixture->text(0, 5), QString("Disabled"));
        QTest::keyClick(mFixture->openEditor(0, 5), Qt::Key_Down);
        QString text;
        QXmlStreamWriter writer(&text);
        mFixture->view.writeXml(writer);
        QCOMPARE(mFixture->text(0, 5), QString("Active"));
    }

    void removedRowTakesItsEditorAlong()
    {
        QVERIFY(mFixture->openEditor(1, 5));
        mFixture->view.removeStep();
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->model().rowCount(), 2);
    }

    void otherEditorsAreLeftToTheBaseDelegate()
    {
        OrvgStepItemDelegate delegate;
        QLineEdit lineEdit;
        delegate.setEditorData(&lineEdit, mFixture->model().index(0, 1));
        QCOMPARE(lineEdit.text(), QString("Active"));
        lineEdit.setText("2");
        delegate.setModelData(&lineEdit, &mFixture->model(), mFixture->model().index(0, 1));
        QCOMPARE(mFixture->text(0, 1), QString("Passive"));
    }

    void wordIsFoundInAnyCaseAndAnUnknownOneKeepsTheFirst()
    {
        OrvgStepItemDelegate delegate;
        QComboBox box;
        box.addItems({"first", "PASSIVE", "active"});
        delegate.setEditorData(&box, mFixture->model().index(0, 1));
        QCOMPARE(box.currentIndex(), 2);
        box.clear();
        box.addItems({"first", "second"});
        delegate.setEditorData(&box, mFixture->model().index(0, 1));
        QCOMPARE(box.currentIndex(), 0);
    }

private:
    QStringList words(int column)
    {
        const QComboBox* editor = mFixture->openEditor(0, column);
        QStringList result;
        for (int i = 0; i < editor->count(); ++i)
            result << editor->itemText(i);
        return result;
    }

    void showAt(int row, int column)
    {
        mFixture->view.show();
        mFixture->setCurrent(row, column);
        mFixture->table().setFocus();
    }

    static void openList(QComboBox& box)
    {
        QTest::mouseClick(&box, Qt::LeftButton);
        QVERIFY(box.view()->isVisible());
    }

    // Without the move the list takes the release for that of the click that opened it.
    static void clickInList(QComboBox& box, int item)
    {
        const QModelIndex index = box.model()->index(item, 0);
        QWidget* list = box.view()->viewport();
        const QPoint position(list->rect().center().x(),
                              box.view()->visualRect(index).center().y());
        QMouseEvent move(QEvent::MouseMove, position, list->mapToGlobal(position), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(list, &move);
        QTest::mouseClick(list, Qt::LeftButton, {}, position);
    }

    std::unique_ptr<SequenceViewFixture> mFixture;
};

QTEST_MAIN(SequenceEditingTest)
#include "test_sequence_editing.moc"
