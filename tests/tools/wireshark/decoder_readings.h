#pragma once

#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/FirmwareVersion.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cstdint>
#include <span>
#include <vector>

// What the decoder of this project reads in a datagram, as JSON. dissector_readings.py brings the
// fields of the dissector into the same form.

QJsonObject readingOfMeasurement(std::span<const std::uint8_t> datagram);
QJsonObject readingOfFreespace(std::span<const std::uint8_t> datagram);

/// `status` is the simulated ECU's. The record is there when the status is 0.
QJsonObject readingOfRequest(std::span<const std::uint8_t> datagram);

QJsonObject jsonOf(const orv::SensorThreshold& threshold);
QJsonObject jsonOf(const std::vector<orv::MseqStep>& steps);
QJsonObject jsonOf(const orv::FirmwareVersion& version);
QJsonObject jsonOf(const orv::EcuNetworkSettings& settings);
QJsonObject jsonOf(const orv::SensorMountPositions& positions);
