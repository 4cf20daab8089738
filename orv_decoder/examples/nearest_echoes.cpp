// Asks an ECU for its firmware version and prints what its sensors hear next.
//
//   nearest_echoes [ECU_ADDRESS [CONTROL_PORT [RECEIVE_PORT [RESULTS]]]]
//
// Without a vehicle: start tarvio-ecu-simulator first.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <orv_decoder/FirmwareVersion.h>
#include <orv_decoder/OrvCtrlClient.h>
#include <orv_decoder/OrvCtrlSocket.h>
#include <orv_decoder/OrvDecoder.h>
#include <orv_decoder/OrvMeasurementResult.h>
#include <orv_decoder/OrvUdpSocket.h>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kLongestWaitMs = 3000;

struct Arguments
{
    std::string ecuAddress = "127.0.0.1";
    std::uint16_t controlPort = 50002;
    std::uint16_t receivePort = 50001;
    int results = 5;
};

std::uint16_t portFrom(const char* text)
{
    return static_cast<std::uint16_t>(std::stoul(text));
}

Arguments argumentsFrom(int count, char** values)
{
    Arguments arguments;
    if (count > 1)
        arguments.ecuAddress = values[1];
    if (count > 2)
        arguments.controlPort = portFrom(values[2]);
    if (count > 3)
        arguments.receivePort = portFrom(values[3]);
    if (count > 4)
        arguments.results = std::stoi(values[4]);
    return arguments;
}

bool printFirmwareVersion(const Arguments& arguments)
{
    orv::OrvCtrlSocket socket(arguments.ecuAddress, arguments.controlPort);
    orv::OrvCtrlClient client(&socket);
    orv::FirmwareVersion version;
    if (!client.readFirmwareVersion(version)) {
        std::fprintf(stderr, "The ECU does not answer: %s\n", client.lastError().c_str());
        return false;
    }
    std::printf("firmware %s\n", version.text().c_str());
    return true;
}

void printNearestEchoes(const orv::OrvMeasurementResult& result)
{
    for (const auto& [sensorId, echoes] : result.echoes) {
        const auto nearest =
            std::ranges::min_element(echoes, {}, &orv::OrvSensorEcho::timeOfFlight);
        std::printf("  sensor %d: %d us\n", sensorId + 1, nearest->timeOfFlight);
    }
}

bool printResults(const Arguments& arguments)
{
    orv::OrvUdpSocket socket(arguments.receivePort);
    orv::OrvDecoder<orv::OrvMeasurementResult> decoder(&socket, orv::OrvDecoderMode::Synchronous);
    orv::OrvMeasurementResult result; // used again: nothing is allocated for most results
    for (int i = 1; i <= arguments.results; ++i) {
        if (!decoder.take(result, kLongestWaitMs)) {
            std::fprintf(stderr, "No measurement result: %s\n", decoder.lastError().c_str());
            return false;
        }
        std::printf("result %d\n", i);
        printNearestEchoes(result);
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Arguments arguments = argumentsFrom(argc, argv);
        return printFirmwareVersion(arguments) && printResults(arguments) ? 0 : 1;
    } catch (const std::exception&) {
        std::fputs("usage: nearest_echoes [ECU_ADDRESS [CONTROL_PORT [RECEIVE_PORT [RESULTS]]]]\n",
                   stderr);
        return 2;
    }
}
