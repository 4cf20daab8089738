#pragma once

#include "ecu/recording/RecordingRun.h"
#include "orv_decoder/ControlFrame.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/MeasurementBuilder.h"
#include "tests/support/ScriptedControlSocket.h"
#include "tests/support/TestClock.h"

#include <QCoreApplication>
#include <QVector>

#include <chrono>
#include <memory>

/// Up to the last one of a recording with the defaults: one starts it, 145 positions take three
/// each, the last one takes sixteen and one completes it.
inline constexpr int kResultsOfRecording = 1 + 145 * 3 + 16 + 1;

/// A run, what it tells, and the time in the hand of the test.
struct RecordingBench
{
    /// Without an ECU and without a queued reply each exchange fails.
    explicit RecordingBench(orv::OrvCtrlSocketBase* ecu = nullptr) : client(ecu ? ecu : &socket)
    {
        const auto* told = run.get();
        QObject::connect(told, &RecordingRun::stateChanged, &context,
                         [this] { states.append(run->state()); });
        QObject::connect(told, &RecordingRun::started, &context, [this] { ++starts; });
        QObject::connect(told, &RecordingRun::heard, &context, [this](const auto& echoes) {
            for (const orv::OrvSensorEcho& echo : echoes)
                heard.append(int{echo.timeOfFlight});
        });
        QObject::connect(told, &RecordingRun::windowMoved, &context,
                         [this](const orv::SensorThreshold& threshold, std::uint32_t position) {
                             thresholds.append(threshold);
                             positions.append(static_cast<int>(position));
                         });
        QObject::connect(told, &RecordingRun::ended, &context,
                         [this](RecordingRun::Ending how) { endings.append(how); });
    }

    void take(int count, const orv::OrvMeasurementResult& result = aMeasurement())
    {
        for (int i = 0; i < count; ++i)
            run->take(result, settings);
    }

    /// Starts it and takes this many results besides the one that starts it.
    void record(int count)
    {
        run->start();
        take(1 + count);
    }

    /// Lets time go by and runs what is due then.
    void pass(int milliseconds)
    {
        clock.advance(std::chrono::milliseconds(milliseconds));
        QCoreApplication::processEvents();
    }

    int writes() const { return static_cast<int>(socket.requests().size()); }

    orv::ControlRequest request(int index) const
    {
        return *orv::decodeRequest(socket.requests().at(static_cast<std::size_t>(index)));
    }

    ScriptedControlSocket socket;
    orv::OrvCtrlClient client;
    TestClock clock;
    RecordingSettings settings;
    std::uint32_t tailResultsLeft = 16;
    std::unique_ptr<RecordingRun> run =
        std::make_unique<RecordingRun>(&client, nullptr, tailResultsLeft);
    QVector<RecordingRun::State> states;
    QVector<int> heard; // times of flight
    QVector<orv::SensorThreshold> thresholds;
    QVector<int> positions;
    QVector<RecordingRun::Ending> endings;
    int starts = 0;
    QObject context;
};
