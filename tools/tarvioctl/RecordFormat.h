#pragma once

#include "orv_decoder/OrvFreespacePackage.h"
#include "orv_decoder/OrvMeasurementResult.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarvioctl {

/// What is known of a record beside its contents.
struct Arrival
{
    std::uint64_t number = 0; ///< counted from 1 over both streams
    std::chrono::system_clock::time_point time;
    QString sender; ///< "192.168.1.3:50002"
};

/// How live records are written. Sensors are numbered as they are shown, 1 to 12; names of fields
/// end in their unit. The texts have no line end.
class RecordFormat
{
public:
    virtual ~RecordFormat() = default;

    /// What stands above the first record; empty = nothing.
    virtual QString header() const { return {}; }

    virtual QString text(const Arrival& arrival, const orv::OrvMeasurementResult& result) const = 0;
    virtual QString text(const Arrival& arrival, const orv::OrvFreespacePackage& package) const = 0;
};

/// One line a record, for people.
std::unique_ptr<RecordFormat> textFormat();

/// One JSON object a line and record, with everything that the record holds.
std::unique_ptr<RecordFormat> jsonLinesFormat();

/// One line an echo or a distance, and one for a record that has none.
std::unique_ptr<RecordFormat> csvFormat();

/// The arrival in ISO 8601, UTC, to the microsecond.
QString timeText(std::chrono::system_clock::time_point time);

/// The sensors that send, and those that only listen, as they are shown.
std::vector<int> sendingSensors(const orv::OrvMeasurementResult& result);
std::vector<int> listeningSensors(const orv::OrvMeasurementResult& result);

/// A sensor as it is shown.
constexpr int shownSensor(std::uint8_t sensorId)
{
    return sensorId + 1;
}

/// "left", "middle" or "right", by the index of a distance.
QString wedgeName(std::size_t index);

} // namespace tarvioctl
