#pragma once

#include "tests/support/ScriptedControlSocket.h"

#include <QApplication>
#include <QCursor>

#include <vector>

/// A scripted channel that notes for each exchange whether the wait cursor was shown.
class CursorWatchingSocket : public ScriptedControlSocket
{
public:
    bool sendReceive(std::vector<std::uint8_t>& buffer) override
    {
        const QCursor* cursor = QApplication::overrideCursor();
        hadWaitCursor.push_back(cursor && cursor->shape() == Qt::WaitCursor);
        return ScriptedControlSocket::sendReceive(buffer);
    }

    std::vector<bool> hadWaitCursor;
};
