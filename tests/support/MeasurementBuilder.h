#pragma once

#include "orv_decoder/OrvMeasurementResult.h"

#include <cstdint>

/// Builds a valid measurement result: aMeasurement().withSender(3).withEcho(3, 5120, 7).
class MeasurementBuilder
{
public:
    MeasurementBuilder()
    {
        mResult.valid = true;
        mResult.hasMasks = true;
    }

    MeasurementBuilder& withSender(unsigned sensor)
    {
        mResult.sendMask = static_cast<std::uint16_t>(mResult.sendMask | 1U << sensor);
        return *this;
    }

    MeasurementBuilder& withReceiver(unsigned sensor)
    {
        mResult.receiveMask = static_cast<std::uint16_t>(mResult.receiveMask | 1U << sensor);
        return *this;
    }

    MeasurementBuilder& withEcho(std::uint8_t sensor, std::uint16_t timeOfFlightUs,
                                 std::uint8_t magnitude)
    {
        mResult.echoes[sensor].push_back({.magnitude = magnitude, .timeOfFlight = timeOfFlightUs});
        return *this;
    }

    operator orv::OrvMeasurementResult() const { return mResult; }

private:
    orv::OrvMeasurementResult mResult;
};

inline MeasurementBuilder aMeasurement()
{
    return {};
}
