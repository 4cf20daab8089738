#include "app/octet_keys.h"

#include <QtTest>

Q_DECLARE_METATYPE(OctetKey)
Q_DECLARE_METATYPE(OctetField)
Q_DECLARE_METATYPE(OctetKeyAction)

/// What each key does, as a table: no widget, no event.
class TestOctetKeys : public QObject
{
    Q_OBJECT

private slots:
    void eachKeyDoesWhatTheTableSays_data();
    void eachKeyDoesWhatTheTableSays();
    void modifiersAreKnown();
    void octetIsFullBeforeTheCursorAtItsEnd_data();
    void octetIsFullBeforeTheCursorAtItsEnd();
};

namespace {

const OctetKey kDot{Qt::Key_Period, "."};
const OctetKey kTab{Qt::Key_Tab, "\t"};
const OctetKey kRight{Qt::Key_Right, {}};
const OctetKey kLeft{Qt::Key_Left, {}};
const OctetKey kSeven{Qt::Key_7, "7"};
const OctetKey kLetter{Qt::Key_A, "a"};

/// A field with the cursor behind the text.
OctetField field(int index, const QString& text)
{
    return {.index = index,
            .text = text,
            .cursor = int(text.size()),
            .hasSelection = false,
            .wasMovedTo = false};
}

OctetField at(int cursor, OctetField field)
{
    field.cursor = cursor;
    return field;
}

OctetField selected(OctetField field)
{
    field.hasSelection = true;
    return field;
}

OctetField movedTo(OctetField field)
{
    field.wasMovedTo = true;
    return field;
}

} // namespace

void TestOctetKeys::eachKeyDoesWhatTheTableSays_data()
{
    QTest::addColumn<OctetKey>("key");
    QTest::addColumn<OctetField>("field");
    QTest::addColumn<OctetKeyAction>("action");
    using A = OctetKeyAction;

    QTest::newRow("dot at the end") << kDot << field(0, "19") << A::MoveOn;
    QTest::newRow("dot in an empty field") << kDot << field(2, "") << A::MoveOn;
    QTest::newRow("dot at the end of the last") << kDot << field(3, "5") << A::Ignore;
    QTest::newRow("dot at the start") << kDot << at(0, field(0, "19")) << A::Ignore;
    QTest::newRow("dot in the middle") << kDot << at(1, field(0, "19")) << A::Ignore;
    QTest::newRow("dot in a selected field") << kDot << selected(field(1, "168")) << A::MoveOn;
    QTest::newRow("dot after the automatic move")
        << kDot << movedTo(selected(field(1, "168"))) << A::Ignore;

    QTest::newRow("tab at the end") << kTab << field(0, "19") << A::MoveOn;
    QTest::newRow("tab in an empty field") << kTab << field(2, "") << A::MoveOn;
    QTest::newRow("tab at the end of the last") << kTab << field(3, "5") << A::Pass;
    QTest::newRow("tab in an empty last field") << kTab << field(3, "") << A::Pass;
    QTest::newRow("tab in the middle") << kTab << at(1, field(0, "19")) << A::Ignore;
    QTest::newRow("tab in the middle of the last") << kTab << at(0, field(3, "19")) << A::Ignore;
    QTest::newRow("tab after the automatic move")
        << kTab << movedTo(selected(field(1, "168"))) << A::MoveOn;

    QTest::newRow("right at the end") << kRight << field(0, "19") << A::MoveOnAndPass;
    QTest::newRow("right in an empty field") << kRight << field(2, "") << A::MoveOnAndPass;
    QTest::newRow("right in the middle") << kRight << at(1, field(0, "19")) << A::Pass;
    QTest::newRow("right at the end of the last") << kRight << field(3, "5") << A::Pass;

    QTest::newRow("left at the start") << kLeft << at(0, field(1, "168")) << A::MoveBack;
    QTest::newRow("left in an empty field") << kLeft << field(3, "") << A::MoveBack;
    QTest::newRow("left in the middle") << kLeft << at(1, field(1, "168")) << A::Pass;
    QTest::newRow("left at the start of the first") << kLeft << at(0, field(0, "19")) << A::Pass;

    QTest::newRow("digit in an empty field") << kSeven << field(0, "") << A::Type;
    QTest::newRow("third digit") << kSeven << field(0, "19") << A::Type;
    QTest::newRow("fourth digit") << kSeven << field(0, "192") << A::MoveOnAndType;
    QTest::newRow("fourth digit in the third field")
        << kSeven << field(2, "192") << A::MoveOnAndType;
    QTest::newRow("fourth digit in the last field") << kSeven << field(3, "192") << A::Type;
    QTest::newRow("digit over a selected octet") << kSeven << selected(field(0, "192")) << A::Type;
    QTest::newRow("digit before a full octet") << kSeven << at(0, field(0, "192")) << A::Type;
    QTest::newRow("digit in a full octet") << kSeven << at(2, field(0, "192")) << A::Type;
    QTest::newRow("letter in a full octet") << kLetter << field(0, "192") << A::Type;
    const OctetKey arabicDigit{Qt::Key_unknown, QStringLiteral("\u0661")};
    QTest::newRow("digit of another script") << arabicDigit << field(0, "192") << A::Type;
    const OctetKey keypad{Qt::Key_7, "7"};
    QTest::newRow("digit of the keypad") << keypad << field(0, "192") << A::MoveOnAndType;

    const QVector<OctetKey> silentKeys{
        {Qt::Key_Shift, {}},     {Qt::Key_Control, {}}, {Qt::Key_AltGr, {}},
        {Qt::Key_End, {}},       {Qt::Key_Home, {}},    {Qt::Key_Up, {}},
        {Qt::Key_Down, {}},      {Qt::Key_F1, {}},      {Qt::Key_CapsLock, {}},
        {Qt::Key_C, "\x03"},     {Qt::Key_1, "\x01"},   {Qt::Key_Backspace, "\b"},
        {Qt::Key_Delete, "\x7f"}};
    for (const OctetKey& key : silentKeys)
        QTest::addRow("key %x in a full octet", unsigned(key.key))
            << key << field(0, "192") << A::Stay;
}

void TestOctetKeys::eachKeyDoesWhatTheTableSays()
{
    QFETCH(OctetKey, key);
    QFETCH(OctetField, field);
    QTEST(octetKeyAction(key, field), "action");
}

void TestOctetKeys::modifiersAreKnown()
{
    for (const int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr, Qt::Key_Meta})
        QVERIFY(isModifierKey(key));
    for (const int key : {Qt::Key_End, Qt::Key_Period, Qt::Key_7, Qt::Key_F1})
        QVERIFY(!isModifierKey(key));
}

void TestOctetKeys::octetIsFullBeforeTheCursorAtItsEnd_data()
{
    QTest::addColumn<OctetField>("field");
    QTest::addColumn<bool>("isFull");

    QTest::newRow("empty") << field(0, "") << false;
    QTest::newRow("two digits") << field(0, "19") << false;
    QTest::newRow("three digits") << field(0, "192") << true;
    QTest::newRow("cursor inside") << at(2, field(0, "192")) << false;
    QTest::newRow("selected") << selected(field(0, "192")) << false;
}

void TestOctetKeys::octetIsFullBeforeTheCursorAtItsEnd()
{
    QFETCH(OctetField, field);
    QTEST(isFullBeforeCursor(field), "isFull");
}

QTEST_GUILESS_MAIN(TestOctetKeys)
#include "test_octet_keys.moc"
