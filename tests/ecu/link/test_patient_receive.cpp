#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocket.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/PatientReceive.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;

TEST(PatientReceive, HearsTheReplyOfAnEcuThatIsSlowerThanTheTimeout)
{
    LoopbackEcu ecu;
    ecu.setHandler([](const orv::ControlRequest& request) {
        std::this_thread::sleep_for(400ms);
        return orv::encodeReply(request.code, LoopbackEcu::Frame{2, 14, 0}, 0);
    });
    orv::OrvCtrlSocket socket("127.0.0.1", ecu.port());
    socket.setReceiveTimeout(100);
    orv::OrvCtrlClient client(&socket);
    orv::FirmwareVersion version;
    const PatientReceive patience;
    EXPECT_TRUE(client.readFirmwareVersion(version)) << client.lastError();
}

TEST(PatientReceive, LeavesAShortWaitAsItIs)
{
    LoopbackEcu silent;
    orv::OrvCtrlSocket socket("127.0.0.1", silent.port());
    socket.setReceiveTimeout(20);
    orv::OrvCtrlClient client(&socket);
    orv::FirmwareVersion version;
    const PatientReceive patience;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(client.readFirmwareVersion(version));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

} // namespace
