#include "app/octet_keys.h"

#include "ecu/store/ip_address.h"

namespace {

bool isAtEnd(const OctetField& field)
{
    return field.cursor == field.text.size();
}

bool isLast(const OctetField& field)
{
    return field.index + 1 == kOctetCount;
}

// Control characters, of Backspace or Ctrl+C for example, are texts as well.
bool typesText(const OctetKey& key)
{
    return !key.typed.isEmpty() && key.typed.front().isPrint();
}

bool typesDigit(const OctetKey& key)
{
    return key.typed.size() == 1 && key.typed >= QLatin1String("0") &&
           key.typed <= QLatin1String("9");
}

// A dot is never typed into a field. One that follows the automatic move has had its effect.
OctetKeyAction dotAction(const OctetField& field)
{
    const bool isLeaving = isAtEnd(field) && !isLast(field) && !field.wasMovedTo;
    return isLeaving ? OctetKeyAction::MoveOn : OctetKeyAction::Ignore;
}

OctetKeyAction tabAction(const OctetField& field)
{
    if (!isAtEnd(field))
        return OctetKeyAction::Ignore;
    return isLast(field) ? OctetKeyAction::Pass : OctetKeyAction::MoveOn;
}

OctetKeyAction rightAction(const OctetField& field)
{
    const bool isLeaving = isAtEnd(field) && !isLast(field);
    return isLeaving ? OctetKeyAction::MoveOnAndPass : OctetKeyAction::Pass;
}

OctetKeyAction leftAction(const OctetField& field)
{
    const bool isLeaving = field.cursor == 0 && field.index > 0;
    return isLeaving ? OctetKeyAction::MoveBack : OctetKeyAction::Pass;
}

// The third digit moves on by itself, but a fourth may be faster.
OctetKeyAction otherAction(const OctetKey& key, const OctetField& field)
{
    if (!typesText(key))
        return OctetKeyAction::Stay;
    const bool isLeaving = typesDigit(key) && isFullBeforeCursor(field) && !isLast(field);
    return isLeaving ? OctetKeyAction::MoveOnAndType : OctetKeyAction::Type;
}

} // namespace

OctetKeyAction octetKeyAction(const OctetKey& key, const OctetField& field)
{
    switch (key.key) {
    case Qt::Key_Period:
        return dotAction(field);
    case Qt::Key_Tab:
        return tabAction(field);
    case Qt::Key_Right:
        return rightAction(field);
    case Qt::Key_Left:
        return leftAction(field);
    default:
        return otherAction(key, field);
    }
}

bool isModifierKey(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_AltGr || key == Qt::Key_Meta;
}

bool isFullBeforeCursor(const OctetField& field)
{
    return field.text.size() == kMaxOctetDigits && isAtEnd(field) && !field.hasSelection;
}
