#pragma once

#include <QString>

/// A key that is pressed in one of the fields of an address.
struct OctetKey
{
    int key;       ///< Qt::Key
    QString typed; ///< the text it types, as the key event gives it
};

/// What the key finds in its field.
struct OctetField
{
    int index; ///< 0..3, from the left
    QString text;
    int cursor;
    bool hasSelection;
    bool wasMovedTo; ///< the third digit of the field before has just moved on to this one
};

enum class OctetKeyAction {
    Type,          ///< the field takes it; when that fills the field, the next one follows
    Stay,          ///< the field takes it and is never left
    Pass,          ///< as if it had no meaning here
    Ignore,        ///< nothing happens
    MoveOn,        ///< the next field follows and its text is selected
    MoveOnAndPass, ///< the same, and the key does what else it means
    MoveOnAndType, ///< the next field follows and takes the key
    MoveBack,      ///< to the end of the field before, and the key does what else it means
};

OctetKeyAction octetKeyAction(const OctetKey& key, const OctetField& field);

/// True for keys that are pressed for the sake of another one.
bool isModifierKey(int key);

/// True when an octet has all its digits and more are to be typed behind them.
bool isFullBeforeCursor(const OctetField& field);
