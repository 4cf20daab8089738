#include "tests/support/ScriptedControlSocket.h"

#include "orv_decoder/ControlFrame.h"

#include <utility>

void ScriptedControlSocket::queueReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                                       std::uint8_t status)
{
    queueRaw(orv::encodeReply(code, payload, status));
}

void ScriptedControlSocket::queueRaw(std::vector<std::uint8_t> frame)
{
    mExchanges.push_back({std::move(frame)});
}

void ScriptedControlSocket::queueTimeout()
{
    mExchanges.emplace_back();
}

void ScriptedControlSocket::alsoReply(std::uint8_t code, const std::vector<std::uint8_t>& payload,
                                      std::uint8_t status)
{
    alsoRaw(orv::encodeReply(code, payload, status));
}

void ScriptedControlSocket::alsoRaw(std::vector<std::uint8_t> frame)
{
    mExchanges.back().push_back(std::move(frame));
}

bool ScriptedControlSocket::sendReceive(std::vector<std::uint8_t>& buffer)
{
    mRequests.push_back(buffer);
    mArrived.clear();
    if (!mExchanges.empty()) {
        mArrived = std::move(mExchanges.front());
        mExchanges.pop_front();
    }
    return receiveAnother(buffer);
}

bool ScriptedControlSocket::receiveAnother(std::vector<std::uint8_t>& buffer)
{
    buffer.clear();
    if (mArrived.empty())
        return fail("receive timeout");
    buffer = std::move(mArrived.front());
    mArrived.pop_front();
    return true;
}

bool ScriptedControlSocket::setReceiveTimeout(std::uint32_t timeoutMs)
{
    mTimeouts.push_back(timeoutMs);
    return true;
}
