#include "app/TarvioWindow.h"
#include "fuzz/InputFile.h"
#include "fuzz/InputScript.h"
#include "fuzz/window_properties.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/TemporaryProfile.h"
#include "tests/support/TestClock.h"
#include "tests/support/window_faults.h"

#include <QCoreApplication>

namespace {

constexpr int kMaxValues = 10;

const QStringList kKeys{"geometry", "state", "live_view", "freespaces_view", "thresholds_view"};

void keep(TemporaryProfile& profile, InputScript& script)
{
    const QString key = kKeys[static_cast<int>(script.below(5))];
    profile.setValue("main_window/" + key, byteArray(script.block()));
}

} // namespace

bool savedStatesHold(std::span<const std::uint8_t> bytes)
{
    const TestClock noProbe;
    TemporaryProfile profile;
    profile.setNetwork(freeUdpPort(), freeUdpPort(), freeUdpPort());
    InputScript script(bytes);
    for (int i = 0; i < kMaxValues && !script.isAtEnd(); ++i)
        keep(profile, script);
    TarvioWindow window;
    window.show();
    QCoreApplication::processEvents();
    return faultOf(window).isEmpty();
}
