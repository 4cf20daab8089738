#pragma once

#include "app/TarvioWindow.h"
#include "tests/support/LoopbackEcu.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tools/ecu_simulator/EcuCommands.h"
#include "tools/ecu_simulator/EcuState.h"

#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

/// The whole window with an ECU that answers it, live data that the test sends and a clock that
/// nobody waits for: whatever a user can come to see is shown within moments.
class Stage
{
public:
    enum class Mood { Answers, Refuses, AbortsCalibration, CalibratesForEver };

    /// Looks at a window, a dialog or a box that is shown.
    using Look = std::function<void(QWidget& shown)>;
    /// Does in a dialog what leads on, closing it at last.
    using Answer = std::function<void(QWidget& dialog)>;

    /// @param size of the window; none for the one of its own
    explicit Stage(const QSize& size = {});
    ~Stage();

    TarvioWindow& window() { return *mWindow; }
    TemporaryProfile& profile() { return mProfile; }
    QString path(const QString& name) const { return mFolder.filePath(name); }
    std::uint16_t receivePort() const { return mReceivePort; }
    std::uint16_t freespacePort() const { return mFreespacePort; }
    std::uint16_t controlPort() const { return mEcu.port(); }

    void setMood(Mood mood) { mMood = mood; }

    /// One result with echoes of all sensors, and one package with all freespaces.
    void showLiveData();

    /// Lets everything happen that is due within this time.
    void pass(int milliseconds);

    void trigger(const char* action);
    void click(const char* button);

    template<typename Part>
    Part& part(const char* name)
    {
        return *mWindow->findChild<Part*>(QLatin1String(name));
    }

    /// Does what opens dialogs. Each that opens is looked at and then answered, in turn; one
    /// without an answer is dismissed. Returns when none is left.
    void play(const std::function<void()>& act, const Look& look,
              const QVector<Answer>& answers = {});

    /// Presses a button of a box or a dialog with a button box.
    static Answer press(QMessageBox::StandardButton button);
    static Answer dismiss();

private:
    std::optional<LoopbackEcu::Frame> reply(const orv::ControlRequest& request);

    QTemporaryDir mFolder;
    TemporaryProfile mProfile;
    TestClock mClock;
    LoopbackEcu mEcu{LoopbackEcu::Serving::OnDemand};
    ecusim::EcuState mState = ecusim::defaultEcuState();
    ecusim::EcuCommands mCommands{mState, {}};
    Mood mMood = Mood::Answers;
    std::uint16_t mReceivePort;
    std::uint16_t mFreespacePort;
    std::unique_ptr<TarvioWindow> mWindow;
};
