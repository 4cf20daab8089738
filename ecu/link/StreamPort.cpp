#include "ecu/link/StreamPort.h"

#include "orv_decoder/DatagramSocket.h"

namespace {

// What the system says to a bind that does not share the address; empty for a port that is free.
std::string objectionTo(std::uint16_t port)
{
    orv::DatagramSocket trial;
    if (!trial.startUp() || !trial.create() || trial.bindToAnyAddress(port))
        return {};
    return orv::DatagramSocket::systemError();
}

} // namespace

bool StreamPort::open()
{
    if (isOpen())
        return true;
    const std::string objection = objectionTo(port());
    return objection.empty() ? OrvUdpSocket::open() : failToBind(objection);
}
