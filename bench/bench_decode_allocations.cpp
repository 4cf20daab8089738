#include "bench/full_datagrams.h"
#include "tests/support/AllocationCounter.h"
#include "tools/ecu_simulator/Echoes.h"
#include "tools/ecu_simulator/Freespace.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace {

using Datagrams = std::vector<std::vector<std::uint8_t>>;

constexpr int kRecords = 900; // ten seconds of a stream

// What the simulated ECU reports: sensors and echoes come and go.
Datagrams simulatedMeasurements()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    const ecusim::Echoes echoes(ecusim::Scene(ecusim::SceneKind::Car), 0, 1);
    Datagrams datagrams;
    for (std::uint32_t index = 0; index < kRecords; ++index)
        datagrams.push_back(orv::encodeMeasurementResult(echoes.measure(ecu, index, index / 90.0)));
    return datagrams;
}

Datagrams simulatedFreespaces()
{
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    const ecusim::Scene scene(ecusim::SceneKind::Car);
    Datagrams datagrams;
    for (int index = 0; index < kRecords; ++index)
        datagrams.push_back(
            orv::encodeFreespacePackage(ecusim::freespacePackage(ecu, scene, 0, index / 90.0)));
    return datagrams;
}

std::size_t partsOf(const orv::OrvMeasurementResult& result)
{
    return result.echoes.size();
}

std::size_t partsOf(const orv::OrvFreespacePackage& package)
{
    return package.entries.size();
}

template<typename Record>
std::size_t decodeAll(const Datagrams& datagrams, Record& record)
{
    std::size_t parts = 0;
    for (const auto& datagram : datagrams) {
        decodeInto(datagram, record);
        parts += partsOf(record);
    }
    return parts;
}

// The datagrams went through the record once before the counting begins.
template<typename Record>
void decodeWarm(benchmark::State& state, const Datagrams& datagrams)
{
    Record record;
    decodeAll(datagrams, record);
    std::size_t parts = 0;
    std::size_t allocations = 0;
    for (auto _ : state) {
        const AllocationCounter counter;
        parts += decodeAll(datagrams, record);
        allocations += counter.count();
    }
    if (parts == 0)
        state.SkipWithError("nothing was decoded");
    state.counters["allocations_a_datagram"] =
        static_cast<double>(allocations) /
        static_cast<double>(state.iterations() * static_cast<std::int64_t>(datagrams.size()));
    state.counters["allocations_a_block"] =
        static_cast<double>(allocations) / static_cast<double>(parts);
}

void measurements(benchmark::State& state, const Datagrams& datagrams)
{
    decodeWarm<orv::OrvMeasurementResult>(state, datagrams);
}
BENCHMARK_CAPTURE(measurements, full, Datagrams{fullMeasurementDatagram()});
BENCHMARK_CAPTURE(measurements, ofSimulatedEcu, simulatedMeasurements());

void freespaces(benchmark::State& state, const Datagrams& datagrams)
{
    decodeWarm<orv::OrvFreespacePackage>(state, datagrams);
}
BENCHMARK_CAPTURE(freespaces, full, Datagrams{fullFreespaceDatagram()});
BENCHMARK_CAPTURE(freespaces, ofSimulatedEcu, simulatedFreespaces());

} // namespace

BENCHMARK_MAIN();
