#pragma once

#include "orv_decoder/EcuNetworkSettings.h"
#include "orv_decoder/MseqStep.h"
#include "orv_decoder/SensorMountPosition.h"
#include "orv_decoder/SensorThreshold.h"
#include "tools/ecu_simulator/SeededRandom.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// Makes records and datagrams of every kind, right ones and wrong ones. The same seed gives the
/// same bytes.
class RandomRecords
{
public:
    explicit RandomRecords(std::uint64_t seed) : mRandom(seed) {}

    bool chance(double share) { return mRandom.chance(share); }
    std::uint32_t below(std::uint32_t limit);
    std::uint8_t byte() { return static_cast<std::uint8_t>(below(256)); }
    std::uint16_t word() { return static_cast<std::uint16_t>(below(65536)); }
    /// Any byte, but most often the first that is too much, or one of its neighbours.
    std::uint8_t around(std::size_t limit);
    Bytes bytes(std::size_t count);

    std::uint8_t sensorId() { return static_cast<std::uint8_t>(below(orv::kSensorCount)); }
    orv::SensorThreshold threshold();
    std::vector<orv::MseqStep> steps();
    orv::EcuNetworkSettings network();
    orv::SensorMountPositions positions();

    /// As the ECU sends them: some with blocks of a sensor that came before, without echoes, of
    /// sensors that do not exist, or longer than a socket reads.
    Bytes measurement();
    Bytes freespace();

    /// One to three damages: bytes changed, taken out, put in, cut off.
    Bytes damaged(Bytes bytes);

private:
    Bytes damagedOnce(Bytes bytes);
    void appendBlock(Bytes& datagram);
    void appendEntry(Bytes& datagram, bool hasPosition);

    ecusim::SeededRandom mRandom;
};

/// `count` (u8) and the steps.
Bytes payloadOf(const std::vector<orv::MseqStep>& steps);
