#pragma once

#include "orv_decoder/OrvMeasurementResult.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

/// Measurement datagrams read by the code that the Kaitai Struct compiler generates from
/// kaitai/orv_measurement.ksy, over the stand-in for its runtime. The stream is used again for each
/// datagram: nothing is made anew but what the generated code makes.
class KaitaiReading
{
public:
    KaitaiReading();
    ~KaitaiReading();

    /// Why nothing was generated when this was built; empty when something was.
    static std::string missing();

    /// Reads a datagram.
    /// @return something of what was read, so that it has to be
    std::uint32_t read(std::span<const std::uint8_t> datagram);

    /// What was read of the datagram, in our own record.
    std::optional<orv::OrvMeasurementResult> result(std::span<const std::uint8_t> datagram);

private:
    class Stream;
    std::unique_ptr<Stream> mStream;
};
