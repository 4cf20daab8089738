#pragma once

#include "orv_decoder/OrvMeasurementResult.h"
#include "orv_decoder/SensorThreshold.h"

#include <cstdint>
#include <optional>
#include <vector>

/// What the user chose for a recording.
struct RecordingSettings
{
    std::uint8_t sensor = 0;      ///< 0..11
    std::uint8_t windowLeft = 0;  ///< time index 0..7 of the open window
    std::uint8_t windowRight = 2; ///< time index 0..7 of the high segment behind it
    std::uint8_t samplesPerStep = 3;
    std::uint8_t positionStep = 1;
};

/// Results that a recording takes at its last position, but for the one that completes it.
inline constexpr std::uint32_t kTailResults = 16;

/// Slides the receive window of a recording over the time of flight, one result after the other.
///
/// The settings may change between two results: sensor, window and step count from the next
/// pattern or advance on, the samples from the next position on.
class RecordingSweep
{
public:
    /// What one result asks for.
    struct Step
    {
        /// The echoes to keep, borrowed from the result; null when the sensor heard nothing.
        const std::vector<orv::OrvSensorEcho>* echoes = nullptr;
        /// What the ECU has to use from now on, when the window has moved.
        std::optional<orv::SensorThreshold> threshold;
        /// Where the window stands, in units of 204.8 microseconds.
        std::uint32_t position = 0;
        bool complete = false;
    };

    /// @param tailResultsLeft counts the results at the last position down and is set back by a
    ///        completed recording only; borrowed. By default the one of the process: a recording
    ///        that follows an abandoned one goes on with what that left.
    explicit RecordingSweep(std::uint32_t& tailResultsLeft = processTailResultsLeft());

    void start(std::uint8_t samplesPerStep);
    Step take(const orv::OrvMeasurementResult& result, const RecordingSettings& settings);

    static std::uint32_t& processTailResultsLeft();

private:
    bool advance(const RecordingSettings& settings);

    std::uint32_t mPosition = 0;
    std::int32_t mSamplesLeft = 0; // at this position; runs below 0 at the last one
    std::uint32_t& mTailResultsLeft;
};
