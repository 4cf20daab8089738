#pragma once

#include "tests/tools/wireshark/RandomRecords.h"

#include <QJsonObject>

#include <string>
#include <vector>

/// What the control client says of one reply that came while it waited for another, or the right
/// one.
struct ReplyReading
{
    Bytes datagram;
    std::string error = {};  ///< empty when the reply was accepted
    QJsonObject record = {}; ///< what was read
    bool isStray = false;    ///< passed over
    bool isUnasked = false;  ///< came when the wait had ended
};

/// One operation of the control client: what it sent, and what it made of each reply.
struct ExchangeReading
{
    Bytes request;
    std::vector<ReplyReading> replies;
};

/// Any of the client's operations with none to three replies, of which about half are right.
ExchangeReading randomExchange(RandomRecords& records);

/// A right request.
Bytes randomRequest(RandomRecords& records);
