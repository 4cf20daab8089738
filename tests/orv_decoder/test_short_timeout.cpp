#include "orv_decoder/ShortTimeout.h"
#include "tests/support/ScriptedControlSocket.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using Timeouts = std::vector<std::uint32_t>;

TEST(ShortTimeout, endsWithTheConfiguredOne)
{
    ScriptedControlSocket socket;
    {
        const orv::ShortTimeout probing(socket, 100);
        EXPECT_EQ(socket.timeouts(), (Timeouts{100}));
    }
    EXPECT_EQ(socket.timeouts(), (Timeouts{100, 500}));
}

TEST(ShortTimeout, endsAlsoWhenTheProbeIsLeftByAnException)
{
    ScriptedControlSocket socket;
    try {
        const orv::ShortTimeout probing(socket, 100);
        throw std::runtime_error("probe");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(socket.timeouts(), (Timeouts{100, 500}));
}

TEST(ShortTimeout, leavesTheConfiguredOneAlone)
{
    ScriptedControlSocket socket;
    const orv::ShortTimeout probing(socket, 100);
    EXPECT_EQ(socket.receiveTimeoutMs(), 500U);
}

} // namespace
