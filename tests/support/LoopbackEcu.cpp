#include "tests/support/LoopbackEcu.h"

LoopbackEcu::LoopbackEcu(Serving serving)
{
    if (serving == Serving::FromItsThread)
        mThread = std::thread(&LoopbackEcu::serve, this);
}

LoopbackEcu::~LoopbackEcu()
{
    mStop = true;
    if (mThread.joinable())
        mThread.join();
}

void LoopbackEcu::setHandler(Handler handler)
{
    const std::scoped_lock lock(mMutex);
    mHandler = std::move(handler);
}

void LoopbackEcu::answerAll(const Frame& payload, std::uint8_t status)
{
    setHandler([payload, status](const orv::ControlRequest& request) {
        return orv::encodeReply(request.code, payload, status);
    });
}

std::vector<orv::ControlRequest> LoopbackEcu::requests() const
{
    const std::scoped_lock lock(mMutex);
    return mRequests;
}

void LoopbackEcu::forgetRequests()
{
    const std::scoped_lock lock(mMutex);
    mRequests.clear();
}

void LoopbackEcu::stream(std::uint16_t port, const Frame& datagram)
{
    mStreamPeer.sendTo(port, datagram);
}

void LoopbackEcu::serve()
{
    while (!mStop) {
        if (const auto frame = mPeer.receive(10))
            answer(*frame);
    }
}

void LoopbackEcu::serveWaiting()
{
    while (const auto frame = mPeer.receive(0))
        answer(*frame);
}

void LoopbackEcu::answer(const Frame& frame)
{
    const auto request = orv::decodeRequest(frame);
    if (!request)
        return;
    std::optional<Frame> reply;
    {
        const std::scoped_lock lock(mMutex);
        mRequests.push_back(*request);
        if (mHandler)
            reply = mHandler(*request);
    }
    if (reply)
        mPeer.reply(*reply);
}
