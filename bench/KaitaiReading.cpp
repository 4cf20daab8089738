#include "bench/KaitaiReading.h"

#include "kaitai_state.h"

#if __has_include("orv_measurement.cpp")

#include "orv_measurement.cpp"

#include <istream>
#include <streambuf>

namespace {

// Lets a stream read bytes where they lie.
class BorrowedBytes : public std::streambuf
{
public:
    void borrow(std::span<const std::uint8_t> bytes)
    {
        auto* begin = const_cast<char*>(reinterpret_cast<const char*>(bytes.data()));
        setg(begin, begin, begin + bytes.size());
    }
};

} // namespace

class KaitaiReading::Stream
{
public:
    orv_measurement_t read(std::span<const std::uint8_t> datagram)
    {
        mBytes.borrow(datagram);
        return orv_measurement_t(&mReader);
    }

private:
    BorrowedBytes mBytes;
    std::istream mStream{&mBytes};
    kaitai::kstream mReader{&mStream};
};

std::uint32_t KaitaiReading::read(std::span<const std::uint8_t> datagram)
{
    return mStream->read(datagram).blocks()->back()->echoes()->back()->raw_time();
}

std::optional<orv::OrvMeasurementResult>
KaitaiReading::result(std::span<const std::uint8_t> datagram)
{
    const orv_measurement_t read = mStream->read(datagram);
    orv::OrvMeasurementResult result;
    result.measurementWord = read.measurement_word();
    result.sendMask = read.send_mask();
    result.receiveMask = read.receive_mask();
    result.hasMasks = true;
    for (const auto* block : *read.blocks())
        for (const auto* echo : *block->echoes())
            result.echoes[block->sensor_id()].push_back(
                {.magnitude = echo->magnitude(),
                 .secondValue = echo->second_value(),
                 .timeOfFlight = static_cast<std::uint16_t>(echo->raw_time() * 512 / 10)});
    return result;
}

#else

class KaitaiReading::Stream
{};

std::uint32_t KaitaiReading::read(std::span<const std::uint8_t>)
{
    return 0;
}

std::optional<orv::OrvMeasurementResult> KaitaiReading::result(std::span<const std::uint8_t>)
{
    return std::nullopt;
}

#endif

KaitaiReading::KaitaiReading() : mStream(std::make_unique<Stream>()) {}

KaitaiReading::~KaitaiReading() = default;

std::string KaitaiReading::missing()
{
    return kWhyThereIsNoKaitaiReader;
}
