#include "tests/views/sequence/SequenceViewFixture.h"
#include "views/sequence/OrvgStepItemDelegate.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QXmlStreamWriter>

class SequenceEditingTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFixture = std::make_unique<SequenceViewFixture>();
        mFixture->model().setSteps(SequenceViewFixture::steps(3));
    }

    void cleanup() { mFixture.reset(); }

    void keyPressedOnceTooOftenDeletesNothing_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("a new step") << QByteArray("addStepTb");
        QTest::newRow("a copied step") << QByteArray("cloneStepTb");
    }

    // At twelve steps the button cannot be used any more.
    void keyPressedOnceTooOftenDeletesNothing()
    {
        QFETCH(QByteArray, button);
        mFixture->model().setSteps(SequenceViewFixture::steps(9));
        mFixture->view.show();
        mFixture->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&mFixture->view));
        mFixture->table().setCurrentIndex(mFixture->model().index(8, 0));
        mFixture->click("addStepTb");
        mFixture->button(button.constData()).setFocus();
        for (int press = 0; press < 4; ++press)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(mFixture->model().rowCount(), 12);
        std::vector<orv::MseqStep> former = mFixture->model().steps();
        former.resize(9);
        QCOMPARE(former, SequenceViewFixture::steps(9));
    }

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

    void editorLeftUntouchedChangesNothing_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("way");
        for (const QString way : {"Enter", "Tab", "Backtab", "focus loss", "click elsewhere"}) {
            QTest::newRow(qPrintable("mode, " + way)) << 0 << way;
            QTest::newRow(qPrintable("sending sensor, " + way)) << 1 << way;
            QTest::newRow(qPrintable("listening sensor, " + way)) << 2 << way;
        }
    }

    // The ECU's own words mean the same as ours and are more than we know.
    void editorLeftUntouchedChangesNothing()
    {
        QFETCH(int, column);
        QFETCH(QString, way);
        const std::vector<orv::MseqStep> steps = {{.valid = true,
                                                   .activeMask = 0x0001, // and does not listen
                                                   .passiveMask = 0x0002,
                                                   .modulation = 1,
                                                   .code = 7,
                                                   .fifthValue = 0x1234}};
        mFixture->model().setSteps(steps);
        mFixture->view.show();
        mFixture->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&mFixture->view));
        QSignalSpy changes(&mFixture->model(), &QAbstractItemModel::dataChanged);
        const QPointer<QComboBox> editor = mFixture->openEditor(0, column);
        QVERIFY(editor);
        leave(*editor, way);
        QTRY_VERIFY(!editor);
        QCOMPARE(mFixture->model().steps(), steps);
        QVERIFY(changes.isEmpty());
    }

    void listOpensWithTheDoubleClickAndTakesNothingByItself()
    {
        const std::vector<orv::MseqStep> steps = mFixture->model().steps();
        mFixture->doubleClick(1, 5);
        QPointer<QComboBox> editor = mFixture->editor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->view()->isVisible());
        QTest::keyClick(editor->view(), Qt::Key_Escape);
        QTRY_VERIFY(!editor->view()->isVisible());
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!editor);
        QCOMPARE(mFixture->model().steps(), steps);
    }

    void choiceByMouseIsTakenAtOnce()
    {
        mFixture->doubleClick(0, 5);
        clickInList(*mFixture->editor(), 2);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(0, 5), QString("Passive"));
        QCOMPARE(mFixture->model().steps()[0].passiveMask, std::uint16_t{0x0013});
    }

    void choiceOfTheShownWordChangesNothing()
    {
        std::vector<orv::MseqStep> steps = SequenceViewFixture::steps(1);
        steps[0].fifthValue = 0x1234;
        mFixture->model().setSteps(steps);
        mFixture->doubleClick(0, 0);
        clickInList(*mFixture->editor(), 0);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->model().steps(), steps);
    }

    void listOpensWithAClickOnTheClosedEditorToo()
    {
        QComboBox* editor = mFixture->openEditor(0, 5);
        QVERIFY(!editor->view()->isVisible());
        openList(*editor);
        clickInList(*editor, 2);
        QTRY_VERIFY(!mFixture->editor());
        QCOMPARE(mFixture->text(0, 5), QString("Passive"));
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
        mFixture->section("MSEQ");
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

    void leave(QComboBox& editor, const QString& way)
    {
        if (way == "Enter")
            QTest::keyClick(&editor, Qt::Key_Return);
        else if (way == "Tab")
            QTest::keyClick(&editor, Qt::Key_Tab);
        else if (way == "Backtab")
            QTest::keyClick(&editor, Qt::Key_Backtab);
        else if (way == "focus loss")
            mFixture->button("readMseqTb").setFocus();
        else
            QTest::mouseClick(mFixture->table().viewport(), Qt::LeftButton, {},
                              mFixture->table().visualRect(mFixture->model().index(0, 8)).center());
    }

    void showAt(int row, int column)
    {
        mFixture->view.show();
        mFixture->setCurrent(row, column);
        mFixture->table().setFocus();
    }

    static void openList(QComboBox& box)
    {
        // For so long the list takes a release for that of the click that opened it.
        const int interval = QApplication::doubleClickInterval();
        QApplication::setDoubleClickInterval(0);
        QTest::mouseClick(&box, Qt::LeftButton);
        QApplication::setDoubleClickInterval(interval);
        QVERIFY(box.view()->isVisible());
    }

    static void clickInList(QComboBox& box, int item)
    {
        QTRY_VERIFY(box.view()->isVisible());
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
