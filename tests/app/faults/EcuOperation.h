#pragma once

#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/constants.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

class WindowUnderFault;

/// One request and its reply.
struct Exchange
{
    orv::ControlCommand command = orv::ControlCommand::FirmwareVersion;
    orv::ControlAccess access = orv::ControlAccess::Read;
    std::uint8_t sensor = orv::kNoSensor; ///< where the request names one

    bool isProbe() const { return command == orv::ControlCommand::FirmwareVersion; }
    bool isWrite() const { return !isProbe() && access != orv::ControlAccess::Read; }
    /// The request without the record that a write carries.
    orv::ControlRequest request() const;

    bool operator==(const Exchange&) const = default;
};

/// The thresholds of all sensors in their order.
std::vector<Exchange> ofEachSensor(orv::ControlAccess access);

/// What a request is, but for the record that it carries.
Exchange exchangeOf(const orv::ControlRequest& request);

/// Exchanges of one part of the configuration.
struct ExchangeGroup
{
    std::vector<Exchange> exchanges;
    bool endsWithFailure = false; ///< the rest of the group is left out
};

/// How one exchange of an operation goes.
struct CarriedOut
{
    Exchange exchange;
    std::size_t group = 0;
    QString reason;         ///< as the client tells it, empty for success
    bool isExecuted = true; ///< by the ECU
};

/// What the user is told.
struct Told
{
    QStringList boxes; ///< title and text, in their order
    QString status;    ///< in the status bar
    QString link = QStringLiteral("ECU online, but not sending live data.");
};

/// The exchanges that a fault may hit.
struct Hits
{
    std::size_t first = 0;
    std::size_t count = 1;
};

/// Something that the user does with the ECU.
struct EcuOperation
{
    QString name;
    std::vector<ExchangeGroup> groups;
    std::function<void(WindowUnderFault&)> run;
    std::function<Told(const std::vector<CarriedOut>&)> tell;
    Hits hits = {};
    bool opensWindow = false; ///< it is a part of the program's start
};

/// "R", "W" and the like of the views, each of one sensor or of all.
std::vector<EcuOperation> readOperations(std::uint8_t sensor);
std::vector<EcuOperation> writeOperations(std::uint8_t sensor);
/// What the link does by itself, and what takes all parts in one go.
std::vector<EcuOperation> wholeOperations(std::uint8_t sensor);
/// What goes on for a while: calibration and recording.
std::vector<EcuOperation> runOperations(std::uint8_t sensor);

/// Reads the part that the command is about, to see what the view holds after that.
EcuOperation followUpOf(orv::ControlCommand command, std::uint8_t sensor);
