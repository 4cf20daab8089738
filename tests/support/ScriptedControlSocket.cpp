#include "tests/support/ScriptedControlSocket.h"

#include "orv_decoder/ControlFrame.h"

void ScriptedControlSocket::queueReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                                       std::uint8_t status)
{
    queueRaw(orv::encodeReply(code, payload, status));
}

void ScriptedControlSocket::queueRaw(std::vector<std::uint8_t> frame)
{
    mReplies.emplace_back(std::move(frame));
}

void ScriptedControlSocket::queueTimeout()
{
    mReplies.emplace_back(std::nullopt);
}

bool ScriptedControlSocket::sendReceive(std::vector<std::uint8_t>& buffer)
{
    mRequests.push_back(buffer);
    buffer.clear();
    if (mReplies.empty())
        return fail("receive timeout");
    const auto reply = std::move(mReplies.front());
    mReplies.pop_front();
    if (!reply)
        return fail("receive timeout");
    buffer = *reply;
    return true;
}

bool ScriptedControlSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    mTimeouts.push_back(timeoutMs);
    return true;
}
