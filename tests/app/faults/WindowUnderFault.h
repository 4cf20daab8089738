#pragma once

#include "app/TarvioWindow.h"
#include "tests/app/faults/ecu_data.h"
#include "tests/support/FaultyEcu.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

class OrvgConnectionSettingsDialog;

/// The whole window at work with an ECU that spoils exchanges, with the time in the hand of the
/// test. Every question is answered with Yes.
class WindowUnderFault
{
public:
    WindowUnderFault();
    ~WindowUnderFault();

    FaultyEcu& ecu() { return mEcu; }
    TarvioWindow& window() { return *mWindow; }

    /// Starts the program, up to and with the first probe and what follows it.
    void open();

    /// Gives the ECU a configuration and network settings that no former call gave it.
    void renewEcu();

    void pass(int milliseconds);
    void click(const char* button);
    void trigger(const char* action);
    void selectSensor(std::uint8_t sensor);

    /// Presses a button of the connection dialog and keeps what its fields show after that.
    void inConnectionDialog(const char* button);
    const QString& dialogFields() const { return mDialogFields; }
    /// What they show when it opens.
    QString storedFields() const;

    /// Starts the recording of a sensor's curve, lets it take some windows and stops it.
    void record(std::uint8_t sensor, int windowCount);
    /// Starts a calibration and waits until its dialog has gone.
    void calibrate();

    /// Clears the status bar, and no box has been seen.
    void forgetTold();

    /// The boxes since the last call, title and text each.
    QStringList takeBoxes();
    QString statusMessage() const;
    /// What the LED tells.
    QString linkState() const;
    /// What the three views hold, in the text of a settings file.
    QString configuration() const;
    /// The bytes of the settings store.
    QByteArray storeFile() const;

    /// What keeps the user from going on, empty if nothing.
    QString blockade();

private:
    void streamRecord();

    TemporaryProfile mProfile;
    FaultyEcu mEcu;
    std::uint16_t mReceivePort;
    std::uint16_t mFreespacePort;
    TestClock mClock;
    MessageBoxWatcher mWatcher{QMessageBox::Yes};
    std::unique_ptr<TarvioWindow> mWindow;
    QString mDialogFields;
    int mEcuSeed = 0;
};
