#include "ecu/link/other_ecu.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"

namespace {

/// Lends a client another socket for as long as it lives.
class SocketLoan
{
public:
    SocketLoan(orv::OrvCtrlClient& client, orv::OrvCtrlSocketBase& socket)
        : mClient(client), mOwnSocket(client.socket())
    {
        mClient.setSocket(&socket);
    }
    ~SocketLoan() { mClient.setSocket(mOwnSocket); }
    SocketLoan(const SocketLoan&) = delete;
    SocketLoan& operator=(const SocketLoan&) = delete;

private:
    orv::OrvCtrlClient& mClient;
    orv::OrvCtrlSocketBase* mOwnSocket;
};

} // namespace

bool readNetworkSettingsAt(const std::string& address, std::uint16_t controlPort,
                           orv::OrvCtrlClient& client, orv::EcuNetworkSettings& settings)
{
    if (!dynamic_cast<orv::OrvCtrlSocket*>(client.socket()))
        return client.readNetworkSettings(settings);
    orv::OrvCtrlSocket socket(address, controlPort);
    const SocketLoan loan(client, socket);
    return client.readNetworkSettings(settings);
}
