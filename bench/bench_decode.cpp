#include "bench/KaitaiReading.h"
#include "bench/full_datagrams.h"

#include <benchmark/benchmark.h>

namespace {

void decodeMeasurement(benchmark::State& state)
{
    const auto datagram = fullMeasurementDatagram();
    orv::OrvMeasurementResult result;
    for (auto _ : state) {
        bool isRecord = decodeInto(datagram, result);
        benchmark::DoNotOptimize(isRecord);
        benchmark::DoNotOptimize(result);
        benchmark::ClobberMemory();
    }
    if (result != fullMeasurement())
        state.SkipWithError("wrongly decoded");
}
BENCHMARK(decodeMeasurement);

void generatedReader(benchmark::State& state)
{
    const auto datagram = fullMeasurementDatagram();
    KaitaiReading reading;
    if (const auto reason = KaitaiReading::missing(); !reason.empty())
        state.SkipWithError(("left out: " + reason).c_str());
    else if (reading.result(datagram) != fullMeasurement())
        state.SkipWithError("wrongly read");
    for (auto _ : state)
        benchmark::DoNotOptimize(reading.read(datagram));
}
BENCHMARK(generatedReader);

void decodeFreespace(benchmark::State& state)
{
    const auto datagram = fullFreespaceDatagram();
    orv::OrvFreespacePackage package;
    for (auto _ : state) {
        bool isRecord = decodeInto(datagram, package);
        benchmark::DoNotOptimize(isRecord);
        benchmark::DoNotOptimize(package);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(decodeFreespace);

} // namespace

BENCHMARK_MAIN();
