#include "app/IPItemValidator.h"
#include "app/OrvgIpControlWidget.h"
#include "tests/support/key_batches.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

/// Types into the control as a user does: every key goes where the focus is, and what it sets off
/// has happened before the next one.
class TestIpControl : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasFourAccessibleFieldsWithDotsBetween();
    void framesItselfAsOneInput();
    void threeDigitsFitIntoEachField_data();
    void threeDigitsFitIntoEachField();
    void typingAnAddressFillsAllFourFields_data();
    void typingAnAddressFillsAllFourFields();
    void keysFasterThanTheProgramAreAllTyped_data();
    void keysFasterThanTheProgramAreAllTyped();
    void keyForAFieldGoesThereOnceTheFocusHasSettled();
    void digitMeetingAFullOctetGoesOnFirst();
    void keyThatTypesNothingNeverMovesOn_data();
    void keyThatTypesNothingNeverMovesOn();
    void dotAfterTheAutomaticMoveIsSwallowedOnce();
    void dotAfterTheAutomaticMoveAndAnotherKeyMovesOn();
    void shiftForTheDotDoesNotUndoTheSwallowing();
    void modifierLeavesTheSelectedOctetWhereItIs();
    void addressIsTypedOverAnotherWithShift();
    void dotInTheMiddleIsConsumed();
    void dotAtTheEndOfTheLastFieldIsConsumed();
    void tabInTheMiddleIsConsumed();
    void tabGoesThroughTheFieldsAndThenOut();
    void movingOnSelectsTheNextText();
    void rightAtTheEndMovesOn();
    void rightInTheMiddleMovesTheCursor();
    void leftAtTheStartMovesBackToTheEnd();
    void leftInTheMiddleMovesTheCursor();
    void leftAtTheStartOfTheFirstFieldStays();
    void otherKeysAnnounceTheirField();
    void keysOfTheTableAnnounceNothing();
    void thirdDigitBeforeOthersDoesNotMoveOn();
    void lateCallForALeftFieldChangesNothing();
    void valuesAbove255CannotBeTyped_data();
    void valuesAbove255CannotBeTyped();
    void pastedAddressFillsAllFields_data();
    void pastedAddressFillsAllFields();
    void pastedAddressFromTheMenuFillsAllFields();
    void pastedOctetGoesIntoItsField();
    void otherPastedTextIsRefused_data();
    void otherPastedTextIsRefused();
    void textIsSetByItsParts_data();
    void textIsSetByItsParts();
    void firstOctetIsTheLowestByte();
    void leadingZerosDoNotMakeAnOctalAddress();
    void validatorKnowsOctets_data();
    void validatorKnowsOctets();

private:
    QLineEdit* field(int number) const
    {
        return mControl->findChildren<QLineEdit*>().at(number - 1);
    }
    int focusedField() const;
    void type(const QString& text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void putCursor(int number, int position);

    std::unique_ptr<QWidget> mWindow;
    OrvgIpControlWidget* mControl = nullptr;
    QPushButton* mNext = nullptr;
};

void TestIpControl::init()
{
    mWindow = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(mWindow.get());
    mControl = new OrvgIpControlWidget;
    mNext = new QPushButton;
    layout->addWidget(mControl);
    layout->addWidget(mNext);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    mControl->setFocus();
    QCOMPARE(focusedField(), 1);
}

void TestIpControl::cleanup()
{
    mWindow.reset();
}

int TestIpControl::focusedField() const
{
    auto* focused = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return focused ? int(mControl->findChildren<QLineEdit*>().indexOf(focused)) + 1 : 0;
}

void TestIpControl::type(const QString& text)
{
    for (const QChar character : text) {
        QTest::keyClick(QApplication::focusWidget(), character.toLatin1());
        QCoreApplication::processEvents();
    }
}

void TestIpControl::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    QCoreApplication::processEvents();
}

void TestIpControl::putCursor(int number, int position)
{
    field(number)->setFocus();
    field(number)->setCursorPosition(position);
}

void TestIpControl::hasFourAccessibleFieldsWithDotsBetween()
{
    QCOMPARE(mControl->findChildren<QLineEdit*>().size(), 4);
    QCOMPARE(field(1)->accessibleName(), QStringLiteral("octet 1 of 4"));
    QCOMPARE(field(4)->accessibleName(), QStringLiteral("octet 4 of 4"));
    const auto dots = mControl->findChildren<QLabel*>();
    QCOMPARE(dots.size(), 3);
    for (const QLabel* dot : dots) {
        QCOMPARE(dot->text(), QStringLiteral("."));
        QVERIFY(dot->autoFillBackground());
        QCOMPARE(dot->backgroundRole(), QPalette::Base);
    }
}

void TestIpControl::framesItselfAsOneInput()
{
    QCOMPARE(mControl->frameShape(), QFrame::StyledPanel);
    QCOMPARE(mControl->frameShadow(), QFrame::Sunken);
    QCOMPARE(mControl->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(mControl->focusProxy(), field(1));
    QCOMPARE(mControl->maximumWidth(), 120);
    QVERIFY(!field(2)->hasFrame());
    QCOMPARE(field(2)->alignment(), Qt::AlignCenter);
}

void TestIpControl::threeDigitsFitIntoEachField_data()
{
    QTest::addColumn<int>("pointSize");

    for (const int pointSize : {7, 9, 12, 18})
        QTest::addRow("%d points", pointSize) << pointSize;
}

void TestIpControl::threeDigitsFitIntoEachField()
{
    QFETCH(int, pointSize);
    const QFont systemFont = QApplication::font();
    QFont font = systemFont;
    font.setPointSize(pointSize);
    QApplication::setFont(font);
    OrvgIpControlWidget control(nullptr, QStringLiteral("255.255.255.255"));
    control.resize(120, 30);
    control.show();
    QApplication::setFont(systemFont);
    for (const QLineEdit* edit : control.findChildren<QLineEdit*>())
        QVERIFY(edit->fontMetrics().horizontalAdvance(QStringLiteral("255")) + 2 <= edit->width());
}

void TestIpControl::typingAnAddressFillsAllFourFields_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("as in the manual") << "192.168.1.5"
                                      << "192.168.1.5";
    QTest::newRow("without the dots after three digits") << "1921681.5"
                                                         << "192.168.1.5";
    QTest::newRow("short octets") << "10.0.0.1"
                                  << "10.0.0.1";
    QTest::newRow("full octets") << "255.255.255.255"
                                 << "255.255.255.255";
    QTest::newRow("full octets without a dot") << "255255255255"
                                               << "255.255.255.255";
    QTest::newRow("dot behind the last octet") << "192.168.100.200."
                                               << "192.168.100.200";
    QTest::newRow("fifth octet") << "1.2.3.4.5"
                                 << "1.2.3.45";
}

void TestIpControl::typingAnAddressFillsAllFourFields()
{
    QFETCH(QString, typed);
    type(typed);
    QTEST(mControl->text(), "expected");
}

void TestIpControl::keysFasterThanTheProgramAreAllTyped_data()
{
    QTest::addColumn<bool>("toTheWindow");
    QTest::addColumn<QString>("former");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    for (const bool toTheWindow : {true, false}) {
        const char* receiver = toTheWindow ? "window" : "field";
        QTest::addRow("without dots, %s", receiver) << toTheWindow << ""
                                                    << "192168100200"
                                                    << "192.168.100.200";
        QTest::addRow("with dots, %s", receiver) << toTheWindow << ""
                                                 << "192.168.1.5"
                                                 << "192.168.1.5";
        QTest::addRow("some dots, %s", receiver) << toTheWindow << ""
                                                 << "1921681.5"
                                                 << "192.168.1.5";
        QTest::addRow("short octets, %s", receiver) << toTheWindow << ""
                                                    << "10.0.0.1"
                                                    << "10.0.0.1";
        QTest::addRow("over another address, %s", receiver) << toTheWindow << "127.127.127.127"
                                                            << "192168100200"
                                                            << "192.168.100.200";
        QTest::addRow("shorter over another address, %s", receiver)
            << toTheWindow << "255.255.255.255"
            << "10.0.0.1"
            << "10.0.0.1";
    }
}

void TestIpControl::keysFasterThanTheProgramAreAllTyped()
{
    QFETCH(bool, toTheWindow);
    QFETCH(QString, former);
    QFETCH(QString, typed);
    mControl->setText(former);
    field(1)->selectAll();
    QObject* receiver = QApplication::focusWidget();
    if (toTheWindow)
        receiver = mWindow->windowHandle();
    typeAtOnce(receiver, typed);
    QTEST(mControl->text(), "expected");
    QCOMPARE(focusedField(), 4);
}

void TestIpControl::keyForAFieldGoesThereOnceTheFocusHasSettled()
{
    type(QStringLiteral("10."));
    QCOMPARE(focusedField(), 2);
    QTest::keyClick(field(4), '7');
    QCOMPARE(mControl->text(), QStringLiteral("10...7"));
}

void TestIpControl::digitMeetingAFullOctetGoesOnFirst()
{
    mControl->setText(QStringLiteral("192.168.1.5"));
    putCursor(1, 3);
    QTest::keyClick(field(1), '7');
    QCOMPARE(mControl->text(), QStringLiteral("192.7.1.5"));
    QCOMPARE(focusedField(), 2);
    putCursor(4, 1);
    type(QStringLiteral("678"));
    QCOMPARE(mControl->text(), QStringLiteral("192.7.1.56"));
}

void TestIpControl::keyThatTypesNothingNeverMovesOn_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("Shift") << Qt::Key_Shift;
    QTest::newRow("Control") << Qt::Key_Control;
    QTest::newRow("Alt") << Qt::Key_Alt;
    QTest::newRow("End") << Qt::Key_End;
    QTest::newRow("Up") << Qt::Key_Up;
    QTest::newRow("Down") << Qt::Key_Down;
    QTest::newRow("F1") << Qt::Key_F1;
    QTest::newRow("Caps Lock") << Qt::Key_CapsLock;
}

void TestIpControl::keyThatTypesNothingNeverMovesOn()
{
    QFETCH(Qt::Key, key);
    mControl->setText(QStringLiteral("192.168.100.200"));
    putCursor(1, 3);
    press(key);
    QCOMPARE(focusedField(), 1);
    QCOMPARE(field(1)->cursorPosition(), 3);
    QCOMPARE(mControl->text(), QStringLiteral("192.168.100.200"));
}

void TestIpControl::dotAfterTheAutomaticMoveIsSwallowedOnce()
{
    type(QStringLiteral("192"));
    QCOMPARE(focusedField(), 2);
    type(QStringLiteral("."));
    QCOMPARE(focusedField(), 2);
    type(QStringLiteral("."));
    QCOMPARE(focusedField(), 3);
}

void TestIpControl::dotAfterTheAutomaticMoveAndAnotherKeyMovesOn()
{
    type(QStringLiteral("1921."));
    QCOMPARE(focusedField(), 3);
}

void TestIpControl::shiftForTheDotDoesNotUndoTheSwallowing()
{
    type(QStringLiteral("192"));
    press(Qt::Key_Shift);
    type(QStringLiteral("."));
    QCOMPARE(focusedField(), 2);
}

void TestIpControl::modifierLeavesTheSelectedOctetWhereItIs()
{
    mControl->setText(QStringLiteral("10.168.100.200"));
    putCursor(1, 2);
    type(QStringLiteral("."));
    press(Qt::Key_Control);
    QCOMPARE(focusedField(), 2);
    QCOMPARE(field(2)->selectedText(), QStringLiteral("168"));
}

void TestIpControl::addressIsTypedOverAnotherWithShift()
{
    mControl->setText(QStringLiteral("192.168.100.200"));
    field(1)->selectAll();
    for (const QChar character : QStringLiteral("127.0.0.1")) {
        press(Qt::Key_Shift);
        type(character);
    }
    QCOMPARE(mControl->text(), QStringLiteral("127.0.0.1"));
}

void TestIpControl::dotInTheMiddleIsConsumed()
{
    mControl->setText(QStringLiteral("12.0.0.1"));
    putCursor(1, 1);
    type(QStringLiteral("."));
    QCOMPARE(focusedField(), 1);
    QCOMPARE(mControl->text(), QStringLiteral("12.0.0.1"));
}

void TestIpControl::dotAtTheEndOfTheLastFieldIsConsumed()
{
    mControl->setText(QStringLiteral("12.0.0.1"));
    putCursor(4, 1);
    type(QStringLiteral("."));
    QCOMPARE(focusedField(), 4);
    QCOMPARE(mControl->text(), QStringLiteral("12.0.0.1"));
}

void TestIpControl::tabInTheMiddleIsConsumed()
{
    mControl->setText(QStringLiteral("12.0.0.1"));
    putCursor(1, 1);
    press(Qt::Key_Tab);
    QCOMPARE(focusedField(), 1);
    QCOMPARE(field(1)->cursorPosition(), 1);
}

void TestIpControl::tabGoesThroughTheFieldsAndThenOut()
{
    for (const int expected : {2, 3, 4}) {
        press(Qt::Key_Tab);
        QCOMPARE(focusedField(), expected);
    }
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), mNext);
}

void TestIpControl::movingOnSelectsTheNextText()
{
    mControl->setText(QStringLiteral("12.34.0.1"));
    putCursor(1, 2);
    type(QStringLiteral("."));
    QCOMPARE(field(2)->selectedText(), QStringLiteral("34"));
    type(QStringLiteral("7"));
    QCOMPARE(mControl->text(), QStringLiteral("12.7.0.1"));
}

void TestIpControl::rightAtTheEndMovesOn()
{
    mControl->setText(QStringLiteral("12.34.0.1"));
    putCursor(1, 2);
    press(Qt::Key_Right);
    QCOMPARE(focusedField(), 2);
    QCOMPARE(field(2)->selectedText(), QStringLiteral("34"));
    putCursor(4, 1);
    press(Qt::Key_Right);
    QCOMPARE(focusedField(), 4);
}

void TestIpControl::rightInTheMiddleMovesTheCursor()
{
    mControl->setText(QStringLiteral("12.34.0.1"));
    putCursor(1, 0);
    press(Qt::Key_Right);
    QCOMPARE(focusedField(), 1);
    QCOMPARE(field(1)->cursorPosition(), 1);
}

void TestIpControl::leftAtTheStartMovesBackToTheEnd()
{
    mControl->setText(QStringLiteral("12.34.0.1"));
    putCursor(2, 0);
    press(Qt::Key_Left);
    QCOMPARE(focusedField(), 1);
    QCOMPARE(field(1)->cursorPosition(), 2);
    QVERIFY(!field(1)->hasSelectedText());
}

void TestIpControl::leftInTheMiddleMovesTheCursor()
{
    mControl->setText(QStringLiteral("12.34.0.1"));
    putCursor(2, 2);
    press(Qt::Key_Left);
    QCOMPARE(focusedField(), 2);
    QCOMPARE(field(2)->cursorPosition(), 1);
}

void TestIpControl::leftAtTheStartOfTheFirstFieldStays()
{
    press(Qt::Key_Left);
    QCOMPARE(focusedField(), 1);
}

void TestIpControl::otherKeysAnnounceTheirField()
{
    const QSignalSpy spy(mControl, &OrvgIpControlWidget::signalTextChanged);
    type(QStringLiteral("7"));
    press(Qt::Key_Backspace);
    press(Qt::Key_Home);
    QCOMPARE(spy.size(), 3);
    for (const QList<QVariant>& announced : spy)
        QCOMPARE(announced.at(0).value<QLineEdit*>(), field(1));
}

void TestIpControl::keysOfTheTableAnnounceNothing()
{
    const QSignalSpy spy(mControl, &OrvgIpControlWidget::signalTextChanged);
    press(Qt::Key_Period);
    press(Qt::Key_Tab);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    QCOMPARE(spy.size(), 0);
}

void TestIpControl::thirdDigitBeforeOthersDoesNotMoveOn()
{
    mControl->setText(QStringLiteral("12"));
    putCursor(1, 0);
    type(QStringLiteral("1"));
    QCOMPARE(field(1)->text(), QStringLiteral("112"));
    QCOMPARE(focusedField(), 1);
}

void TestIpControl::lateCallForALeftFieldChangesNothing()
{
    mControl->setText(QStringLiteral("192.1"));
    putCursor(1, 3);
    putCursor(2, 1);
    mControl->slotTextChanged(field(1));
    QCOMPARE(focusedField(), 2);
    QVERIFY(!field(2)->hasSelectedText());
}

void TestIpControl::valuesAbove255CannotBeTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("256") << "256"
                         << "25...";
    QTest::newRow("999") << "999"
                         << "99...";
    QTest::newRow("letters") << "1a2"
                             << "12...";
    QTest::newRow("signs and blanks") << "+-1 2"
                                      << "12...";
    QTest::newRow("255") << "255"
                         << "255...";
}

void TestIpControl::valuesAbove255CannotBeTyped()
{
    QFETCH(QString, typed);
    type(typed);
    QTEST(mControl->text(), "expected");
}

void TestIpControl::pastedAddressFillsAllFields_data()
{
    QTest::addColumn<int>("into");
    QTest::addColumn<QString>("pasted");

    for (int number = 1; number <= 4; ++number)
        QTest::addRow("into field %d", number) << number << "192.168.1.5";
    QTest::newRow("with blanks around") << 2 << " 192.168.1.5\n";
}

void TestIpControl::pastedAddressFillsAllFields()
{
    QFETCH(int, into);
    QFETCH(QString, pasted);
    mControl->setText(QStringLiteral("10.20.30.40"));
    QApplication::clipboard()->setText(pasted);
    putCursor(into, 1);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(mControl->text(), QStringLiteral("192.168.1.5"));
    QCOMPARE(focusedField(), 4);
    QCOMPARE(field(4)->cursorPosition(), 1);
}

void TestIpControl::pastedAddressFromTheMenuFillsAllFields()
{
    QApplication::clipboard()->setText(QStringLiteral("192.168.1.5"));
    const QPoint place(2, 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, field(3)->mapToGlobal(place));
    QApplication::sendEvent(field(3), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction* action : menu->actions()) {
        if (action->text().contains(QStringLiteral("Paste")))
            action->trigger();
    }
    menu->close();
    QCOMPARE(mControl->text(), QStringLiteral("192.168.1.5"));
}

void TestIpControl::pastedOctetGoesIntoItsField()
{
    QApplication::clipboard()->setText(QStringLiteral("42"));
    putCursor(2, 0);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(mControl->text(), QStringLiteral(".42.."));
}

void TestIpControl::otherPastedTextIsRefused_data()
{
    QTest::addColumn<QString>("pasted");

    QTest::newRow("three octets") << "192.168.1";
    QTest::newRow("five octets") << "1.2.3.4.5";
    QTest::newRow("octet too large") << "192.168.1.256";
    QTest::newRow("empty octet") << "192..1.5";
    QTest::newRow("words") << "localhost";
}

void TestIpControl::otherPastedTextIsRefused()
{
    QFETCH(QString, pasted);
    mControl->setText(QStringLiteral("10.20.30.40"));
    QApplication::clipboard()->setText(pasted);
    putCursor(2, 1);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(mControl->text(), QStringLiteral("10.20.30.40"));
}

void TestIpControl::textIsSetByItsParts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("address") << "192.168.1.5"
                             << "192.168.1.5";
    QTest::newRow("nothing") << ""
                             << "...";
    QTest::newRow("two parts") << "10.1"
                               << "10.1..";
    QTest::newRow("empty parts are dropped") << "10..1"
                                             << "10.1..";
    QTest::newRow("five parts") << "1.2.3.4.5"
                                << "1.2.3.4";
    QTest::newRow("no octets") << "host.256.-1.7"
                               << "...7";
}

void TestIpControl::textIsSetByItsParts()
{
    QFETCH(QString, text);
    const OrvgIpControlWidget control(nullptr, text);
    QTEST(control.text(), "expected");
}

void TestIpControl::firstOctetIsTheLowestByte()
{
    mControl->setText(QStringLiteral("192.168.1.5"));
    QCOMPARE(mControl->value(), 0x0501A8C0U);
    mControl->setValue(0x04030201U);
    QCOMPARE(mControl->text(), QStringLiteral("1.2.3.4"));
    mControl->setText(QString());
    QCOMPARE(mControl->value(), 0U);
}

void TestIpControl::leadingZerosDoNotMakeAnOctalAddress()
{
    type(QStringLiteral("192.168.010.001"));
    QCOMPARE(mControl->text(), QStringLiteral("192.168.10.1"));
}

void TestIpControl::validatorKnowsOctets_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QValidator::State>("expected");

    QTest::newRow("empty") << "" << QValidator::Intermediate;
    QTest::newRow("0") << "0" << QValidator::Acceptable;
    QTest::newRow("255") << "255" << QValidator::Acceptable;
    QTest::newRow("256") << "256" << QValidator::Invalid;
    QTest::newRow("four digits") << "0001" << QValidator::Invalid;
    QTest::newRow("digits of another script") << QStringLiteral("\u0661") << QValidator::Invalid;
}

void TestIpControl::validatorKnowsOctets()
{
    QFETCH(QString, text);
    int position = 0;
    QTEST(IPItemValidator().validate(text, position), "expected");
}

QTEST_MAIN(TestIpControl)
#include "test_ip_control.moc"
