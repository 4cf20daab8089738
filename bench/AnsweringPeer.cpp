#include "bench/AnsweringPeer.h"

#include "orv_decoder/constants.h"

#include <algorithm>

AnsweringPeer::AnsweringPeer(Replies replies)
    : mReplies(std::move(replies)), mThread(&AnsweringPeer::serve, this)
{}

AnsweringPeer::~AnsweringPeer()
{
    // Nothing but this is no request.
    BareSocket().send({}, mSocket.address());
    mThread.join();
}

void AnsweringPeer::serve()
{
    Frame request;
    while (true) {
        sockaddr_in sender{};
        request.resize(orv::kMaxDatagramSize);
        request.resize(mSocket.receiveFrom(sender, request).size());
        if (request.empty())
            return;
        const auto reply = std::ranges::find(mReplies, request, &Replies::value_type::first);
        if (reply != mReplies.end())
            mSocket.send(reply->second, sender);
    }
}
