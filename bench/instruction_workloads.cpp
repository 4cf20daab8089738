#include "bench/full_datagrams.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/OrvCtrlSocketBase.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/Freespace.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"
#include "views/live/OrvgLiveView.h"
#include "views/plot/OrvgPlotWidget.h"

#include <QApplication>
#include <QImage>

#include <cstdio>
#include <functional>
#include <gnu/libc-version.h>
#include <map>
#include <memory>
#include <string>

// One workload a run, for bench/instructions, which counts what happens in countedWorkload().
// usage: instruction_workloads WORKLOAD

namespace {

using Workload = std::function<void()>;

constexpr int kWarmUps = 3;

Workload decode()
{
    return [measurement = orv::OrvMeasurementResult(), package = orv::OrvFreespacePackage(),
            measurementDatagram = fullMeasurementDatagram(),
            freespaceDatagram = fullFreespaceDatagram()]() mutable {
        for (int i = 0; i < 100; ++i) {
            decodeInto(measurementDatagram, measurement);
            decodeInto(freespaceDatagram, package);
        }
    };
}

// The simulated ECU without a network.
class EcuInMemory : public orv::OrvCtrlSocketBase
{
public:
    bool sendReceive(std::vector<std::uint8_t>& buffer) override
    {
        std::vector<std::uint8_t>& reply = mReplies[buffer.front()];
        if (reply.empty())
            reply = mCommands.answer(buffer, 0).reply;
        buffer.assign(reply.begin(), reply.end());
        return true;
    }

    bool setReceiveTimeout(std::uint32_t) override { return true; }

private:
    ecusim::EcuState mEcu = ecusim::defaultEcuState();
    ecusim::EcuCommands mCommands{mEcu, {}};
    std::map<std::uint8_t, std::vector<std::uint8_t>> mReplies; // by command, answered before
};

Workload controlExchange()
{
    auto socket = std::make_shared<EcuInMemory>();
    return [socket, client = orv::OrvCtrlClient(socket.get()), firmware = orv::FirmwareVersion(),
            threshold = orv::SensorThreshold(), positions = orv::SensorMountPositions()]() mutable {
        for (int i = 0; i < 50; ++i) {
            client.readFirmwareVersion(firmware);
            client.readThresholds(5, threshold);
            client.readSensorPositions(positions);
        }
    };
}

Workload plotAddAndPaint()
{
    auto plot = std::make_shared<OrvgPlotWidget>();
    plot->resize(800, 300);
    plot->setThresholds({0x5F, 0x5C, 0x56, 0x70, 0x6C, 0x8A, 0x88, 0x86, 0xA5, 0xA4, 0xA3, 0xC2});
    plot->setThresholdsShown(true);
    auto picture = std::make_shared<QImage>(plot->size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<orv::OrvSensorEcho> echoes;
    for (unsigned time = 1; time <= 200; ++time)
        echoes.push_back({.magnitude = static_cast<std::uint8_t>(time % 16),
                          .timeOfFlight = static_cast<std::uint16_t>(time * 102)});
    return [plot, picture, echoes] {
        for (int i = 0; i < 10; ++i) {
            plot->addData(echoes);
            plot->render(picture.get());
        }
    };
}

// As the event loop of the program paints: through the window's backing store.
Workload liveViewResultAndPaint()
{
    auto view = std::make_shared<OrvgLiveView>();
    view->resize(1037, 388);
    view->show();
    return [view, result = fullMeasurement()] {
        for (int i = 0; i < 10; ++i) {
            view->onNewMeasResult(result);
            QCoreApplication::processEvents();
        }
    };
}

Workload freespacePackageAndPaint()
{
    auto view = std::make_shared<OrvgFreespaceGraphicsView>();
    view->resize(900, 600);
    view->show();
    const ecusim::EcuState ecu = ecusim::defaultEcuState();
    const ecusim::Scene scene(ecusim::SceneKind::Car);
    std::vector<orv::OrvFreespacePackage> packages;
    for (int seconds = 0; seconds < 10; seconds += 2)
        packages.push_back(ecusim::freespacePackage(ecu, scene, 0, seconds));
    return [view, packages] {
        for (const orv::OrvFreespacePackage& package : packages) {
            view->onNewFreespacePackage(package);
            QCoreApplication::processEvents();
        }
    };
}

// Counts depend on all of this, and on whether the processor has wide registers.
void printVersions()
{
    const bool hasWideRegisters = __builtin_cpu_supports("avx2");
    std::printf("compiler: %s\nQt: %s\nlibc: %s\navx2: %s\n", __VERSION__, qVersion(),
                gnu_get_libc_version(), hasWideRegisters ? "yes" : "no");
}

} // namespace

extern "C" __attribute__((noinline)) void countedWorkload(const Workload& workload)
{
    workload();
}

int main(int argc, char** argv)
{
    const std::map<std::string, std::function<Workload()>> workloads = {
        {"decode", decode},
        {"control-exchange", controlExchange},
        {"plot-add-and-paint", plotAddAndPaint},
        {"live-view-result-and-paint", liveViewResultAndPaint},
        {"freespace-package-and-paint", freespacePackageAndPaint},
    };
    const QApplication application(argc, argv);
    const std::string name = argc == 2 ? argv[1] : "";
    if (!workloads.contains(name))
        return 1;
    printVersions();
    const Workload workload = workloads.at(name)();
    for (int i = 0; i < kWarmUps; ++i)
        workload();
    countedWorkload(workload);
}
