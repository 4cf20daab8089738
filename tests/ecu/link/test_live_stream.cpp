#include "ecu/link/LiveStream.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TestClock.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

// Two different datagrams of a kind.
template<typename T>
std::array<Bytes, 2> datagrams();

template<>
std::array<Bytes, 2> datagrams<orv::OrvMeasurementResult>()
{
    return {{{1, 0, 0, 0, 1, 0, 2, 0, 0}, {2, 0, 0, 0, 4, 0, 8, 0, 1, 3, 1, 100, 0, 7, 0}}};
}

template<>
std::array<Bytes, 2> datagrams<orv::OrvFreespacePackage>()
{
    orv::OrvFreespacePackage package;
    package.entries.resize(2);
    return {{{0}, orv::encodeFreespacePackage(package)}};
}

// A stream of either kind, for which no time goes by; a datagram that was sent over loopback is
// there at once.
template<typename T>
class EitherStream : public testing::Test
{
protected:
    void send(const Bytes& datagram) { mEcu.sendTo(mPort, datagram); }

    const std::uint16_t mPort = freeUdpPort();
    TestClock mClock;
    LoopbackPeer mEcu;
    LiveStream<T> mStream{mPort};
};

using Kinds = testing::Types<orv::OrvMeasurementResult, orv::OrvFreespacePackage>;
TYPED_TEST_SUITE(EitherStream, Kinds);

TYPED_TEST(EitherStream, handsOutOneRecordACallInTheirOrder)
{
    for (const Bytes& datagram : datagrams<TypeParam>())
        this->send(datagram);
    for (const Bytes& datagram : datagrams<TypeParam>()) {
        const TypeParam* record = this->mStream.take(0);
        ASSERT_TRUE(record);
        EXPECT_EQ(*record, orv::decodeDatagram<TypeParam>(datagram));
    }
    EXPECT_FALSE(this->mStream.take(0));
}

TYPED_TEST(EitherStream, passesOverWhatIsNoRecord)
{
    for (int i = 0; i < 50; ++i)
        this->send({1, 2, 3});
    this->send({});
    this->send(datagrams<TypeParam>()[0]);
    EXPECT_TRUE(this->mStream.take(0));
    EXPECT_FALSE(this->mStream.take(0));
}

TYPED_TEST(EitherStream, drainTellsWhetherThereWasARecord)
{
    this->send({1, 2, 3});
    EXPECT_FALSE(this->mStream.drain());
    this->send(datagrams<TypeParam>()[0]);
    this->send({1, 2, 3});
    EXPECT_TRUE(this->mStream.drain());
    EXPECT_FALSE(this->mStream.take(0));
}

TYPED_TEST(EitherStream, reopeningDropsWhatTheSystemBuffered)
{
    this->send(datagrams<TypeParam>()[0]);
    this->mStream.reopen();
    EXPECT_FALSE(this->mStream.take(0));
    this->send(datagrams<TypeParam>()[0]);
    EXPECT_TRUE(this->mStream.take(0));
}

TYPED_TEST(EitherStream, withoutItsPortHasAProblemAndNoRecords)
{
    LiveStream<TypeParam> second(this->mPort);
    EXPECT_FALSE(second.isOpen());
    EXPECT_EQ(second.problem(), (PortProblem{this->mPort, "Address already in use"}));
    this->send(datagrams<TypeParam>()[0]);
    EXPECT_FALSE(second.take(1));
    EXPECT_FALSE(this->mStream.problem());
    EXPECT_TRUE(this->mStream.take(0));
}

} // namespace
